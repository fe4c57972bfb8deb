#pragma once

#include "platform/control.h"

#include <string>

namespace tarvello {

/// Raises its event again and again while it is enabled. Timers start disabled.
class Timer : public Control {
public:
    Timer(Form& form, std::string name, int interval_ms);

    int interval_ms() const { return interval_ms_; }
    Event on_timer;

    /// One interval has gone by.
    void tick();

private:
    int interval_ms_;
};

} // namespace tarvello
