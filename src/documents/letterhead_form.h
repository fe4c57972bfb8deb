#pragma once

#include "documents/logo_page.h"
#include "documents/templates_page.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"
#include "program/drafts.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tarvello {

namespace e_invoice {
enum class Field : std::uint8_t;
} // namespace e_invoice

class Program;

/// The letterhead: who issues the invoices, the bank, the logo, the layout of the print report, and the
/// template of word processor documents.
///
/// The button that saves is enabled while the letterhead has unsaved changes.
class frmIntestazioneFatture : public Form, public DraftedForm {
public:
    // Where the letterhead stands among the boxes Text1.
    static constexpr std::size_t nome = 0; ///< the session's, never changed here
    static constexpr std::size_t indirizzo = 1;
    static constexpr std::size_t telefono = 2;
    static constexpr std::size_t codice_fiscale = 3;
    static constexpr std::size_t email = 4;
    static constexpr std::size_t unused = 5;
    static constexpr std::size_t partita_iva = 6;
    static constexpr std::size_t fax = 7;
    // Where the bank stands among the boxes txtBanca.
    static constexpr std::size_t banca = 0;
    static constexpr std::size_t abi = 1;
    static constexpr std::size_t cab = 2;
    static constexpr std::size_t conto = 3;
    // The buttons Command1.
    static constexpr std::size_t save_button = 0;
    static constexpr std::size_t close_button = 1;
    static constexpr std::size_t help_button = 2;

    explicit frmIntestazioneFatture(Program& program);

    TabControl SSTab1{*this, "SSTab1"};

    // Dati Anagrafici.
    ControlArray<TextBox, 8> Text1{*this, "Text1"};
    TextBox txtDescrizione{*this, "txtDescrizione"};
    CommandButton Command3{*this, "Command3"};
    CommandButton Command2{*this, "Command2"};
    Frame FrameBanca{*this, "FrameBanca"};
    ControlArray<TextBox, 4> txtBanca{FrameBanca, "txtBanca"};

    // Impostazioni di Stampa.
    LogoPage logo;
    // Impostazioni file WORD.
    TemplatesPage templates;

    ControlArray<CommandButton, 3> Command1{*this, "Command1"};
    CommandButton cmdElettronica{*this, "cmdElettronica"};

    /// The box in which a finding on an electronic invoice is mended.
    Control& control_of(e_invoice::Field field);

protected:
    void on_load() override;
    bool on_query_unload(UnloadReason reason) override;

private:
    void connect();
    /// The columns of the letterhead beside their boxes, in the order of the table.
    std::vector<std::pair<const char*, TextBox*>> column_boxes();
    void load_letterhead();
    bool may_be_saved();
    void save_letterhead();
    void show_help();

    // DraftedForm
    std::string draft_mode() const override;
    std::vector<Control*> draft_fields() override;
    std::string draft_words(const FormDraft&) const override { return "nell'intestazione"; }
    bool take_up(const FormDraft& draft) override;

    Program& program_;
    DraftKeeper draft_{program_, *this, *this};
};

} // namespace tarvello
