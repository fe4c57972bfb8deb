#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

#include <string>

namespace tarvello {

class Program;

/// Draws a picture into another picture control: as large as it fits there, its proportions kept, centred.
/// Nothing happens if the origin has no picture.
void RidimensionaImmagine(const Picture& origin, Picture& destination);

/// The letterhead: who issues the invoices, the bank, the logo, the layout of the print report, and the
/// template of word processor documents.
///
/// Command1[0] enabled means that the letterhead has unsaved changes.
class frmIntestazioneFatture : public Form {
public:
    explicit frmIntestazioneFatture(Program& program);

    TabControl SSTab1{*this, "SSTab1"};

    // Dati Anagrafici.
    /// 0 name (the session's, never changed here), 1 address, 2 phone, 3 fiscal code, 4 e-mail, 6 VAT number,
    /// 7 fax. 5 is not in use.
    ControlArray<TextBox, 8> Text1{*this, "Text1"};
    TextBox txtDescrizione{*this, "txtDescrizione"};
    CommandButton Command3{*this, "Command3"};
    CommandButton Command2{*this, "Command2"};
    Frame FrameBanca{*this, "FrameBanca"};
    /// 0 bank, 1 ABI, 2 CAB, 3 account.
    ControlArray<TextBox, 4> txtBanca{FrameBanca, "txtBanca"};

    // Impostazioni di Stampa.
    Frame FrameLogo{*this, "FrameLogo"};
    /// What the report shows of the logo.
    Picture PicDest{FrameLogo, "PicDest"};
    /// The logo at its own size; never in view.
    Picture PicOrigine{FrameLogo, "PicOrigine"};
    CommandButton Command7{FrameLogo, "Command7"};
    CommandButton Command8{FrameLogo, "Command8"};
    CheckBox CheckAdattaLogo{FrameLogo, "CheckAdattaLogo"};
    Frame FrameStampa{*this, "FrameStampa"};
    Label Label14{FrameStampa, "Label14"};
    ListBox ListModelliReport{FrameStampa, "ListModelliReport"};
    CommandButton Command6{FrameStampa, "Command6"};

    // Impostazioni file WORD.
    Frame FrameWord{*this, "FrameWord"};
    OptionButton Option1{FrameWord, "Option1"};
    OptionButton Option2{FrameWord, "Option2"};
    /// The templates of the format in force.
    ListBox File1{FrameWord, "File1"};
    TextBox txtModello{FrameWord, "txtModello"};
    CommandButton Command5{FrameWord, "Command5"};
    TextBox txtModelloAttuale{FrameWord, "txtModelloAttuale"};
    CommandButton cmdAnteprimaModelli{FrameWord, "cmdAnteprimaModelli"};
    CommandButton cmdNuovoModello{FrameWord, "cmdNuovoModello"};
    CommandButton ImportaModello{FrameWord, "ImportaModello"};
    CommandButton cmdInfoModelli{FrameWord, "cmdInfoModelli"};

    /// 0 saves, 1 closes, 2 helps.
    ControlArray<CommandButton, 3> Command1{*this, "Command1"};

protected:
    void on_load() override;
    bool on_query_unload(UnloadReason reason) override;

private:
    void connect();

    // Letterhead.
    void load_letterhead();
    bool may_be_saved();
    void save_letterhead();
    void show_help();

    // Logo and layout.
    void load_logo(const std::string& path);
    void fit_logo();
    void choose_logo();
    void remove_logo();
    void choose_layout();
    void save_layout();

    // Templates.
    std::string in_templates(const std::string& name) const;
    /// The path of a working copy, in a folder that exists when this returns.
    std::string working_copy(const std::string& name);
    void list_templates(const std::string& pattern);
    void save_template();
    void preview_template();
    void start_template();
    void import_template();
    void read_template_in_force();

    /// Runs a step; its failure is shown to the user and ends there.
    void or_show_failure(const std::function<void()>& step);

    Program& program_;
};

} // namespace tarvello
