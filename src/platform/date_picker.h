#pragma once

#include "platform/control.h"
#include "text/dates.h"

#include <functional>
#include <optional>
#include <string>

namespace tarvello {

/// A date that is typed, or picked from a calendar. While it is being typed the form hears nothing: the text
/// is read when the field is left, with Enter, and so before any command of the form runs. What cannot be
/// read never becomes another date: the user is told, the old date comes back and the focus stays.
class DatePicker : public Control {
public:
    /// Starts at today: see Control, and set_date by the form's load.
    using Control::Control;

    const Date& date() const { return date_; }
    /// Sets the date and raises on_change if it is another one. What was being typed is given up.
    void set_date(const Date& date);
    /// What stands in the field: the text that is being typed, else the date in its short form.
    std::string text() const;
    /// True while a typed text has not been read yet.
    bool typing() const { return typed_.has_value(); }
    bool takes_focus() const override { return true; }

    Event on_change;
    /// The typed text is no date: tells the user, in place of the field's own words.
    Event on_no_date;

    // User acts.
    /// The text of the field is now this one.
    void type(std::string text);
    /// Enter: the typed text counts.
    void press_enter();
    /// Picks a day in the calendar.
    void pick(const Date& date);
    /// The arrow and page keys: so many days and months on. A day that the month lacks becomes its last.
    void step(int days, int months);
    void pick_today();

protected:
    void leaving() override;

private:
    /// Takes over what has been typed. @return false if it is no date: the user has been told
    bool read();

    Date date_ = make_date(1900, 1, 1);
    std::optional<std::string> typed_;
};

} // namespace tarvello
