#include "platform/date_picker.h"

#include <utility>

namespace tarvello {

void DatePicker::set_date(const Date& date) {
    const bool typed = std::exchange(typed_, std::nullopt).has_value();
    const bool another = date_ != date;
    date_ = date;
    if (typed || another) changed(Aspect::value);
    if (another) raise(on_change);
}

std::string DatePicker::text() const {
    return typed_ ? *typed_ : short_date_text(date_, form().host().regional());
}

void DatePicker::type(std::string text) {
    if (!reachable()) return;
    if (!has_focus()) enter();
    if (has_focus() && text != this->text()) typed_ = std::move(text);
}

bool DatePicker::read() {
    if (!typed_) return true;
    FormHost& host = form().host();
    const std::string typed = *typed_;
    const auto date = read_typed_date(typed, host.regional());
    if (date && date->ok()) {
        set_date(*date);
        return true;
    }
    set_date(date_);
    set_focus(); // before the box: its coming and going must not undo it
    if (on_no_date) {
        on_no_date();
    } else if (typed.find_first_not_of(' ') == std::string::npos) {
        host.warn("Manca la data. Scriverla come " + text() + ".");
    } else {
        const std::string name = date ? short_date_text(*date, host.regional()) : typed;
        host.warn("La data \"" + name + "\" non esiste.");
    }
    return false;
}

void DatePicker::leaving() {
    if (form().cancelling()) return set_date(date_);
    read();
}

void DatePicker::press_enter() {
    if (!reachable()) return;
    act([&] {
        int key = keys::enter;
        FormLife::preview(form(), *this, key); // mostly moves on, which reads it
        if (has_focus()) read();
    });
}

void DatePicker::pick(const Date& date) {
    if (!reachable()) return;
    act([&] {
        if (has_focus() || form().move_focus(this)) set_date(date);
    });
}

void DatePicker::step(int days, int months) {
    if (!reachable()) return;
    act([&] {
        if (!read()) return;
        Date date = date_ + std::chrono::months(months);
        if (!date.ok()) date = date.year() / date.month() / std::chrono::last;
        date = std::chrono::sys_days(date) + std::chrono::days(days);
        if (year_of(date) >= 100 && year_of(date) <= 9999) set_date(date);
    });
}

void DatePicker::pick_today() { pick(form().host().today()); }

} // namespace tarvello
