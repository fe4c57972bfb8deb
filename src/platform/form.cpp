#include "platform/form.h"

#include "platform/bars.h"
#include "platform/buttons.h"
#include "platform/date_picker.h"
#include "platform/entries.h"

#include <algorithm>

namespace tarvello {

Form::Form(FormHost& host, std::string name) : host_(host), name_(std::move(name)) {}

void Form::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    if (view) view->follow(*this, FormAspect::caption);
}

void Form::set_size(int width, int height) {
    width_ = width;
    height_ = height;
    if (view) view->follow(*this, FormAspect::size);
}

Control* Form::find(const std::string& name) const {
    const auto found =
        std::find_if(controls_.begin(), controls_.end(), [&](const Control* c) { return c->name() == name; });
    return found == controls_.end() ? nullptr : *found;
}

bool Form::move_focus(Control* control) {
    if (control && !(control->takes_focus() && control->reachable())) return focus_ == control;
    if (leaving_) {
        redirected_ = control;
        return false;
    }
    if (focus_ == control) return true;

    Control* const wanted = control;
    Control* const left = focus_;
    if (left) {
        leaving_ = true;
        redirected_ = control;
        try {
            left->leaving();
            if (left->on_lost_focus) left->on_lost_focus();
        } catch (...) { // the flag must not outlive the event, whatever ended it
            leaving_ = false;
            throw;
        }
        leaving_ = false;
        control = redirected_;
        if (control && !control->reachable()) control = left;
    }
    focus_ = control;
    if (control && control != left && control->on_got_focus) control->on_got_focus();
    if (view) view->follow(*this, FormAspect::focus);
    if (left && left != focus_ && on_field_left) on_field_left();
    return focus_ == wanted;
}

bool Form::cancelling() const {
    const auto* command = dynamic_cast<const PictureButton*>(redirected_);
    return leaving_ && command && command->cancels();
}

void Form::focus_next() {
    const auto stops = [](const Control* c) { return c->takes_focus() && c->reachable(); };
    auto from = std::find(controls_.begin(), controls_.end(), focus_);
    if (from != controls_.end()) ++from;
    auto next = std::find_if(from, controls_.end(), stops);
    if (next == controls_.end()) next = std::find_if(controls_.begin(), from, stops);
    if (next != controls_.end()) move_focus(*next);
}

void Form::focus_next_field() {
    auto next = std::find(controls_.begin(), controls_.end(), focus_);
    if (next != controls_.end()) ++next;
    next = std::find_if(next, controls_.end(), [](const Control* c) {
        return c->takes_focus() && !c->is_command() && c->reachable();
    });
    if (next != controls_.end()) {
        move_focus(*next);
    } else if (enter_command_ && enter_command_->reachable()) {
        move_focus(enter_command_);
    } else {
        focus_next();
    }
}

void Form::set_keys(Control* enter, Control* escape) {
    enter_command_ = enter;
    escape_command_ = escape;
    if (auto* button = dynamic_cast<PictureButton*>(escape)) button->set_cancels();
}

bool Form::press_enter() {
    if (!enter_command_ || !enter_command_->reachable()) return false;
    enter_command_->press();
    return true;
}

bool Form::press_escape() {
    if (!escape_command_ || !escape_command_->reachable()) return false;
    escape_command_->press();
    return true;
}

void Form::close_by_user() {
    const auto alive = shared_from_this();
    host_.run([&] { unload(UnloadReason::user); });
}

void Form::move_mouse() {
    if (!on_mouse_move) return;
    const auto alive = shared_from_this();
    host_.run(on_mouse_move);
}

void Form::on_key_preview(Control& control, int& key) {
    if (key != keys::enter) return;
    if (!dynamic_cast<TextBox*>(&control) && !dynamic_cast<DatePicker*>(&control)) return;
    key = 0;
    auto* box = dynamic_cast<TextBox*>(&control);
    if (box && box->enter_leads_to() && box->enter_leads_to()->reachable()) {
        move_focus(box->enter_leads_to());
    } else {
        focus_next_field();
    }
}

void Form::order_tabs(const std::vector<Control*>& order) {
    std::vector<Control*> all;
    for (Control* control : order) {
        all.push_back(control);
        auto* const bar = dynamic_cast<Toolbar*>(control);
        for (std::size_t place = 1; bar && place <= bar->size(); ++place) all.push_back(&bar->button(place));
    }
    const auto listed = [&](const Control* c) { return std::find(all.begin(), all.end(), c) != all.end(); };
    const auto first = std::find_if(controls_.begin(), controls_.end(), listed);
    const auto before = first - controls_.begin();
    std::erase_if(controls_, listed);
    controls_.insert(controls_.begin() + before, all.begin(), all.end());
}

void FormLife::load(Form& form) {
    if (form.loaded_) return;
    form.loaded_ = true;
    form.on_load();
}

} // namespace tarvello
