#include "platform/date_picker.h"

namespace tarvello {

void DatePicker::set_date(const Date& date) {
    if (date_ == date) return;
    date_ = date;
    changed(Aspect::value);
    raise(on_change);
}

void DatePicker::pick(const Date& date) {
    if (!reachable()) return;
    act([&] {
        if (has_focus() || form().move_focus(this)) set_date(date);
    });
}

} // namespace tarvello
