#pragma once

#include "platform/control.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The controls that show something and take nothing in, but for a click.
namespace tarvello {

class Label : public Captioned {
public:
    using Captioned::Captioned;

    bool underline() const { return underline_; }
    void set_underline(bool underline);

    /// A label with this event is a command of its own: the user clicks it, or reaches it with Tab and
    /// presses Enter.
    Event on_click;
    bool takes_focus() const override { return static_cast<bool>(on_click); }
    bool is_command() const override { return takes_focus(); }

    // User act.
    void click();
    void press() override { click(); }

private:
    bool underline_ = false;
};

/// A coloured area behind a field, that marks it.
class Shape : public Control {
public:
    using Control::Control;
};

/// A place inside a control, in twips.
struct PictureBox {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool operator==(const PictureBox&) const = default;
};

class Picture : public Control {
public:
    using Control::Control;

    /// Name of a picture of the program, or the path of a file; empty for none.
    const std::string& picture() const { return picture_; }
    /// Shows a picture at its own size, from the top left corner.
    void set_picture(std::string picture);
    /// Shows a picture drawn into a part of the control.
    void paint_picture(std::string picture, const PictureBox& box);
    void clear() { set_picture({}); }
    /// Where the picture has been drawn; nothing while it stands at its own size.
    const std::optional<PictureBox>& painted() const { return painted_; }

    /// Size of the control in twips, for a form that computes with it; 0 leaves it to the layout.
    float width() const { return width_; }
    float height() const { return height_; }
    void set_size(float width, float height);

    /// A picture with this event can be clicked, and reached with Tab.
    Event on_click;
    bool takes_focus() const override { return static_cast<bool>(on_click); }
    bool is_command() const override { return takes_focus(); }

    // User act.
    void click();
    void press() override { click(); }

private:
    std::string picture_;
    std::optional<PictureBox> painted_;
    float width_ = 0;
    float height_ = 0;
};

class ProgressBar : public Control {
public:
    using Control::Control;

    /// From 0 to 100.
    int value() const { return value_; }
    void set_value(int value);

private:
    int value_ = 0;
};

class StatusBar : public Control {
public:
    using Control::Control;

    /// The text of a panel, from 1; panels come into being when they are set.
    std::string panel(std::size_t place) const;
    void set_panel(std::size_t place, std::string text);
    std::size_t panels() const { return panels_.size(); }

private:
    std::vector<std::string> panels_;
};

} // namespace tarvello
