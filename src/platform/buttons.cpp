#include "platform/buttons.h"

namespace tarvello {

void PictureButton::set_picture(std::string picture) {
    if (picture_ == picture) return;
    picture_ = std::move(picture);
    changed(Aspect::look);
}

void PictureButton::set_shortcut(std::string shortcut) {
    if (shortcut_ == shortcut) return;
    shortcut_ = std::move(shortcut);
    changed(Aspect::look);
}

void PictureButton::tell_shortcut(std::string of_another) {
    if (other_shortcut_ == of_another) return;
    other_shortcut_ = std::move(of_another);
    changed(Aspect::look);
}

void CommandButton::click() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this) && reachable()) raise(on_click);
    });
}

void CheckBox::set_checked(bool checked) {
    if (checked_ == checked) return;
    checked_ = checked;
    changed(Aspect::value);
    raise(on_click);
}

void CheckBox::click() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this) && reachable()) set_checked(!checked_);
    });
}

int CheckBox::offer_key(int key) {
    act([&] {
        FormLife::preview(form(), *this, key);
        if (key != 0 && on_key_press) on_key_press(key);
    });
    return key;
}

void CheckBox::press_key(int key) {
    if (!reachable()) return;
    enter();
    if (offer_key(key) == ' ') set_checked(!checked_);
}

void OptionButton::set_selected(bool selected) {
    if (selected_ == selected) return;
    selected_ = selected;
    changed(Aspect::value);
    if (!selected) return;
    for (Control* other : form().controls()) {
        auto* option = dynamic_cast<OptionButton*>(other);
        if (option && option != this && option->frame() == frame()) option->set_selected(false);
    }
    raise(on_click);
}

void OptionButton::click() {
    if (!reachable()) return;
    act([&] {
        if (!form().move_focus(this) || !reachable()) return;
        if (selected_) raise(on_click_again);
        set_selected(true);
    });
}

} // namespace tarvello
