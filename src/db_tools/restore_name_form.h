#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Asks for the name of the file that a backup is restored to. The name goes to frmGestioneDatabase when it
/// closes.
class frmRipristinaBackup : public Form {
public:
    explicit frmRipristinaBackup(Program& program);

    Frame Frame1{*this, "Frame1"};
    Label Label1{Frame1, "Label1"};
    TextBox Text1{Frame1, "Text1"};
    CommandButton Command1{*this, "Command1"};

protected:
    void on_unload(UnloadReason reason) override;

private:
    Program& program_;
};

} // namespace tarvello
