#include "platform/timer.h"

namespace tarvello {

Timer::Timer(Form& form, std::string name, int interval_ms)
    : Control(form, std::move(name)), interval_ms_(interval_ms) {
    set_enabled(false);
}

void Timer::tick() {
    if (enabled() && on_timer) act(on_timer);
}

} // namespace tarvello
