#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// The defaults of an invoice: the surcharge (rivalsa) and its wording, the VAT rate, the withholding. It
/// computes nothing and checks nothing: it moves texts into the holder fields of the main window. The labels
/// of what is in use are filled by the load alone, so they show a save the next time the form is opened.
class frmImpostazioni : public Form {
public:
    explicit frmImpostazioni(Program& program);

    TabControl SSTab1{*this, "SSTab1"};

    // Rivalsa
    Label Label1{*this, "Label1"};
    Frame Frame1{*this, "Frame1"};
    OptionButton Option1{Frame1, "Option1"};
    OptionButton Option2{Frame1, "Option2"};
    /// The wording of the surcharge, while Option2 is chosen.
    TextBox Text1{Frame1, "Text1"};
    Label Label4{Frame1, "Label4"};
    Label Label13{Frame1, "Label13"};
    Frame Frame2{*this, "Frame2"};
    ComboBox ComboRivalsa{Frame2, "ComboRivalsa"};
    Label Label5{Frame2, "Label5"};
    Label Label18{Frame2, "Label18"};
    /// A surcharge of 4% enters the base of the withholding.
    CheckBox Check1{Frame2, "Check1"};
    /// The surcharge stays out of the taxable amount.
    CheckBox CheckEscludiRivalsaImponibile{Frame2, "CheckEscludiRivalsaImponibile"};
    CommandButton Command1{*this, "Command1"};

    // I.V.A.
    Label Label2{*this, "Label2"};
    Frame Frame3{*this, "Frame3"};
    ComboBox ComboIVAApplicata{Frame3, "ComboIVAApplicata"};
    Label Label14{Frame3, "Label14"};
    CommandButton Command3{*this, "Command3"};

    // Ritenuta
    Label Label3{*this, "Label3"};
    Frame Frame4{*this, "Frame4"};
    ComboBox ComboRitenuta{Frame4, "ComboRitenuta"};
    ComboBox ComboRitenutaSu{Frame4, "ComboRitenutaSu"};
    Label Label6{Frame4, "Label6"};
    Label Label17{Frame4, "Label17"};
    CommandButton Command4{*this, "Command4"};

    CommandButton Command2{*this, "Command2"};

protected:
    void on_load() override;

private:
    void set_texts();
    void connect();
    void show_values_in_use();
    void rate_changed();
    void save_surcharge();
    void save_vat();
    void save_withholding();

    Program& program_;
};

} // namespace tarvello
