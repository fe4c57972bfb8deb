#include "platform/bars.h"

namespace tarvello {

ToolButton::ToolButton(Toolbar& bar, std::string name, std::string key, std::string caption,
                       std::string picture)
    : PictureButton(bar.form(), std::move(name)), bar_(bar), key_(std::move(key)) {
    set_caption(std::move(caption));
    set_picture(std::move(picture));
}

void ToolButton::click() {
    if (!reachable() || !bar_.reachable()) return;
    act([&] {
        if (form().move_focus(this) && bar_.on_button_click) bar_.on_button_click(*this);
    });
}

ToolButton& Toolbar::add_button(std::string key, std::string caption, std::string picture) {
    buttons_.push_back(std::make_unique<ToolButton>(*this, name() + "_" + std::to_string(buttons_.size() + 1),
                                                    std::move(key), std::move(caption), std::move(picture)));
    return *buttons_.back();
}

void Toolbar::press(std::string_view key) {
    for (const auto& button : buttons_) {
        if (button->key() == key) return button->click();
    }
}

void MenuItem::click() {
    if (reachable() && on_click) act(on_click);
}

void MenuItem::open() {
    if (on_open) act(on_open);
}

} // namespace tarvello
