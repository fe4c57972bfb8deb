#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <cstdint>

namespace tarvello {

class Program;

/// The wait before the update page: a bar that fills and closes the window, with no work behind it.
class frmAttesaControlloAggiornamenti : public Form {
public:
    explicit frmAttesaControlloAggiornamenti(Program& program);

    Label Label2{*this, "Label2"};
    Label Label1{*this, "Label1"};
    ProgressBar ProgressBar1{*this, "ProgressBar1"};
    Timer Timer1{*this, "Timer1", 30};

protected:
    void on_load() override;

private:
    void tick();

    std::int16_t waited_ = 0;
};

} // namespace tarvello
