#pragma once

#include "platform/buttons.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Tool bars and menus: the commands of a window that are no buttons of its own.
namespace tarvello {

class Toolbar;

/// A button of a tool bar, named after the bar and its place, from 1: Toolbar1_1.
class ToolButton : public PictureButton {
public:
    ToolButton(Toolbar& bar, std::string name, std::string key, std::string caption, std::string picture);

    /// Names the action; never changes.
    const std::string& key() const { return key_; }

    // User act; the focus as at CommandButton::click.
    void click();
    void press() override { click(); }

private:
    Toolbar& bar_;
    std::string key_;
};

class Toolbar : public Control {
public:
    using Control::Control;

    /// Adds a button at the end; for the form's constructor.
    ToolButton& add_button(std::string key, std::string caption, std::string picture);
    std::size_t size() const { return buttons_.size(); }
    /// The button at a place, from 1.
    ToolButton& button(std::size_t place) { return *buttons_.at(place - 1); }

    /// A button has been pressed.
    std::function<void(ToolButton&)> on_button_click;

    // User act: presses the button of that key. The bar itself is not pressed.
    using Control::press;
    void press(std::string_view key);

private:
    std::vector<std::unique_ptr<ToolButton>> buttons_;
};

class MenuItem : public Captioned {
public:
    using Captioned::Captioned;

    Event on_click;
    /// The menu of this name is about to show its entries.
    Event on_open;

    // User acts.
    void click();
    void open();
};

} // namespace tarvello
