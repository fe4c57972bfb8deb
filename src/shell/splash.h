#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <cstdint>

namespace tarvello {

class Program;

/// The first window. After about one and a half seconds it makes way for the main window.
class frmSplash : public Form {
public:
    /// Ends the process, silently, if another copy of the program is running.
    explicit frmSplash(Program& program);

    Picture Image1{*this, "Image1"};
    Label LabelAttesa{*this, "LabelAttesa"};
    Label lblversion{*this, "lblversion"};
    Timer Timer1{*this, "Timer1", 30};

protected:
    void on_load() override;
    /// The start goes on by itself: without its first window the process would live on unseen.
    bool on_query_unload(UnloadReason reason) override { return reason == UnloadReason::user; }
    void on_unload(UnloadReason reason) override;

private:
    void tick();

    Program& program_;
    std::int32_t ticks_ = 0;
};

} // namespace tarvello
