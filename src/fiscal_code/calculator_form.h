#pragma once

#include "failure.h"
#include "fiscal_code/municipalities.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvello {

class Program;

/// Works out the fiscal code of a person and writes it into the box of the form that opened it. A caller sets
/// `txtCognome` and `txtNome`, says where the code goes, and shows the form modally.
class frmCalcolaCF : public Form {
public:
    explicit frmCalcolaCF(Program& program);

    Frame Frame1{*this, "Frame1"};
    TextBox txtCognome{Frame1, "txtCognome"};
    TextBox txtNome{Frame1, "txtNome"};
    DatePicker DTPicker1{Frame1, "DTPicker1"};
    ComboBox cboSesso{Frame1, "cboSesso"};
    TextBox txtComune{Frame1, "txtComune"};
    TextBox txtProvincia{Frame1, "txtProvincia"};
    TextBox txtCodice{Frame1, "txtCodice"};
    TextBox txtCodiceFiscale{Frame1, "txtCodiceFiscale"};
    /// Who has asked for the code: "Clienti" or "Fatture"; empty where it goes nowhere.
    TextBox txtparam{*this, "txtparam"};
    CommandButton cmdElabora{*this, "cmdElabora"};
    /// Copies the code for wherever the user wants it, and to the form that takes it on demand.
    CommandButton cmdCopia{*this, "cmdCopia"};
    CommandButton cmdExit{*this, "cmdExit"};

    /// From now on the code goes there too.
    void hand_over_to(const std::string& caller, std::shared_ptr<TextBox> code);
    /// The code goes there when the user copies it.
    void copy_to(std::function<void(const std::string& code)> taker) { copy_taker_ = std::move(taker); }

protected:
    void on_load() override;

private:
    /// Completes what the user has made of txtComune to the first name that begins with it.
    void search_municipality();
    /// Takes over the place that the typed text begins, or tells once that there is none.
    /// @param added  something was put in, and nothing only taken away
    /// @return the colour that the text in txtComune is to have; none is that of the desktop
    std::optional<Color> show_match(const std::string& typed, bool added);
    /// Province and code of a place; those of no place are empty.
    void show_place(const Municipality& place);
    void compute();
    void tell_no_date();
    void copy();
    /// Runs a step that reads the municipalities; its failure is shown, and the form stays open.
    void telling_failures(const std::function<void()>& step);

    Program& program_;
    std::shared_ptr<TextBox> code_target_;
    std::function<void(const std::string&)> copy_taker_;
    std::string before_; // what stood in txtComune after the last search
    std::string place_;  // whose province and code are on view
    bool character_typed_ = false;
    std::optional<Municipalities> municipalities_;
    std::optional<Failure> not_opened_; // why there are no municipalities
};

} // namespace tarvello
