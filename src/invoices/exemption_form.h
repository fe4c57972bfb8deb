#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Asks under which article the anticipated expenses of the invoice on frmTarvello are outside VAT, and
/// writes the answer there.
class frmArticoloEsenzione : public Form {
public:
    explicit frmArticoloEsenzione(Program& program);

    Label Label1{*this, "Label1"};
    OptionButton Option1{*this, "Option1"};
    OptionButton Option2{*this, "Option2"};
    OptionButton Option3{*this, "Option3"};
    OptionButton Option4{*this, "Option4"};
    /// The article in words of the user's own.
    TextBox txtEsenzioneIVA{*this, "txtEsenzioneIVA"};
    /// "1" where the dialog was opened by the choice of a rate; nothing depends on it.
    TextBox txtparam{*this, "txtparam"};
    CommandButton OKButton{*this, "OKButton"};
    CommandButton CancelButton{*this, "CancelButton"};

private:
    void allow_own_words(bool allowed);
    void accept();
    void cancel();

    Program& program_;
};

} // namespace tarvello
