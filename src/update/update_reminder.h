#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Reminds the user to look for updates when more than 30 days, and the extra days that the user has chosen,
/// have gone by since the last look. Both settings are in the store when it returns. Failures are silent.
void ControllaAggiornamenti(Program& program);

/// The reminder. A choice of extra days delays the next one from the stored date, not from today.
class DialogAggiornamento : public Form {
public:
    explicit DialogAggiornamento(Program& program);

    Frame Frame1{*this, "Frame1"};
    Label Label1{Frame1, "Label1"};
    Label Label2{Frame1, "Label2"};
    Label Label3{Frame1, "Label3"};
    ComboBox Combo1{Frame1, "Combo1"};
    Label Label4{Frame1, "Label4"};
    CommandButton OKButton{*this, "OKButton"};
    CommandButton CancelButton{*this, "CancelButton"};
    CommandButton Command1{*this, "Command1"};

protected:
    void on_load() override;

private:
    Program& program_;
};

} // namespace tarvello
