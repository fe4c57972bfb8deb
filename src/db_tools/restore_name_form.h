#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <memory>

namespace tarvello {

class Program;

/// Asks for the name of the file that a backup is restored to. The name goes to a box of who asks when it
/// closes.
class frmRipristinaBackup : public Form {
public:
    explicit frmRipristinaBackup(Program& program);

    Frame Frame1{*this, "Frame1"};
    Label Label1{Frame1, "Label1"};
    TextBox Text1{Frame1, "Text1"};
    CommandButton Command1{*this, "Command1"};

    /// Gives the name up.
    bool press_escape() override;

    void hand_over_to(std::shared_ptr<TextBox> name) { name_ = std::move(name); }

protected:
    void on_unload(UnloadReason reason) override;

private:
    std::shared_ptr<TextBox> name_;
};

} // namespace tarvello
