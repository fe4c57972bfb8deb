#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Asks the name of the invoicing person or company. Each keystroke is in the settings and in
/// Program::NomeIntestatario at once, so that a cancelled dialog has stored what was typed.
class frmRegister : public Form {
public:
    explicit frmRegister(Program& program);

    Label Label4{*this, "Label4"};
    Label Label2{*this, "Label2"};
    Label Label1{*this, "Label1"};
    TextBox Text1{*this, "Text1"};
    CommandButton Command1{*this, "Command1"};
    CommandButton Command2{*this, "Command2"};

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override;

private:
    void name_changed();
    void confirm();
    void cancel();

    Program& program_;
    bool emptying_ = false;
};

} // namespace tarvello
