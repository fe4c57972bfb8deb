#pragma once

#include "platform/control.h"
#include "text/dates.h"

namespace tarvello {

class DatePicker : public Control {
public:
    /// Starts at today: see Control, and set_date by the form's load.
    using Control::Control;

    const Date& date() const { return date_; }
    /// Sets the date and raises on_change if it is another one.
    void set_date(const Date& date);
    bool takes_focus() const override { return true; }

    Event on_change;

    // User act.
    void pick(const Date& date);

private:
    Date date_ = make_date(1900, 1, 1);
};

} // namespace tarvello
