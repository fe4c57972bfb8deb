#include "platform/displays.h"

#include <algorithm>

namespace tarvello {

void Label::set_underline(bool underline) {
    if (underline_ == underline) return;
    underline_ = underline;
    changed(Aspect::look);
}

void Label::click() {
    if (!reachable() || !on_click) return;
    act([&] {
        if (form().move_focus(this)) on_click();
    });
}

void Picture::set_picture(std::string picture) {
    if (picture_ == picture && !painted_) return;
    picture_ = std::move(picture);
    painted_.reset();
    changed(Aspect::look);
}

void Picture::paint_picture(std::string picture, const PictureBox& box) {
    picture_ = std::move(picture);
    painted_ = box;
    changed(Aspect::look);
}

void Picture::set_size(float width, float height) {
    width_ = width;
    height_ = height;
    changed(Aspect::size);
}

void Picture::click() {
    if (reachable() && on_click) act(on_click);
}

void ProgressBar::set_value(int value) {
    value_ = std::clamp(value, 0, 100);
    changed(Aspect::value);
}

std::string StatusBar::panel(std::size_t place) const {
    return place >= 1 && place <= panels_.size() ? panels_[place - 1] : std::string();
}

void StatusBar::set_panel(std::size_t place, std::string text) {
    if (panels_.size() < place) panels_.resize(place);
    panels_.at(place - 1) = std::move(text);
    changed(Aspect::text);
}

} // namespace tarvello
