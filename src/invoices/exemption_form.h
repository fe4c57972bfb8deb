#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <memory>
#include <optional>
#include <string>

namespace tarvello {

class Program;

/// The invoice whose anticipated expenses are outside VAT.
class ExemptionTarget {
public:
    /// The expenses stay. @param article  the one chosen; none leaves the article as it was
    virtual void exempt_expenses(const std::optional<std::string>& article) = 0;
    /// The invoice carries no expenses after all.
    virtual void drop_expenses() = 0;

protected:
    ~ExemptionTarget() = default;
};

/// Asks under which article the anticipated expenses of an invoice are outside VAT.
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

    /// Where the answer goes; before it is shown.
    void ask_for(std::shared_ptr<ExemptionTarget> target) { target_ = std::move(target); }

private:
    void allow_own_words(bool allowed);
    void accept();
    void cancel();

    std::shared_ptr<ExemptionTarget> target_;
};

} // namespace tarvello
