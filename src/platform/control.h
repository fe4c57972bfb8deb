#pragma once

#include "platform/color.h"
#include "platform/form.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

/// What all controls of a form share: plain state plus events; nothing here draws.
///
/// Setting `text`, `value`, `list_index` or `selected` from code raises the same event as the user's act, and
/// only when it changes. `enabled` and `locked` stop the user, never the code. The methods under "user acts"
/// are what a person can do: the windows call them and so do tests.
namespace tarvello {

/// What about a control has changed, so that its picture can follow.
enum class Aspect : std::uint8_t {
    text,
    caption,
    value,
    items,
    rows,
    selection,
    enabled,
    locked,
    visible,
    look, // colours, underline, picture, tool tip
    size
};

/// The picture of a control on the screen.
class ControlView {
public:
    virtual void follow(Control& control, Aspect aspect) = 0;

protected:
    ~ControlView() = default;
};

using Event = std::function<void()>;
/// A key as the code of its character; 0 on return cancels it.
using KeyEvent = std::function<void(int& key)>;

namespace keys {
inline constexpr int backspace = 8;
inline constexpr int enter = 13;
inline constexpr int escape = 27;
} // namespace keys

class Frame;

class Control {
public:
    /// A control that lies on the form itself.
    Control(Form& form, std::string name);
    /// A control inside a frame: reachable only while the frame is.
    Control(Frame& frame, std::string name);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return name_; }
    Form& form() const { return form_; }
    /// The frame that it lies in; null on the form itself.
    Frame* frame() const { return frame_; }

    bool enabled() const { return enabled_; }
    void set_enabled(bool enabled);
    void flip_enabled() { set_enabled(!enabled_); }
    bool visible() const { return visible_; }
    void set_visible(bool visible);
    void flip_visible() { set_visible(!visible_); }
    const std::string& tool_tip() const { return tool_tip_; }
    void set_tool_tip(std::string tool_tip);
    /// None: the colours of the desktop.
    std::optional<Color> back_color() const { return back_color_; }
    void set_back_color(std::optional<Color> color);
    std::optional<Color> fore_color() const { return fore_color_; }
    void set_fore_color(std::optional<Color> color);
    /// A text of the form's own that is nowhere shown.
    const std::string& tag() const { return tag_; }
    void set_tag(std::string tag) { tag_ = std::move(tag); }

    /// True if the user can act on it: it and everything that it lies in is enabled and visible.
    bool reachable() const;
    virtual bool takes_focus() const { return false; }
    /// It is pressed, and nothing is entered into it.
    virtual bool is_command() const { return false; }
    bool has_focus() const { return form_.focus() == this; }
    /// Gives it the focus; see Form::move_focus.
    void set_focus() { form_.move_focus(this); }

    Event on_got_focus;
    Event on_lost_focus;
    /// The pointer moves over it.
    Event on_mouse_move;

    // User acts.
    void enter();
    void leave();
    void move_mouse();
    /// Presses a command.
    virtual void press() {}

    ControlView* view = nullptr;

protected:
    friend class Form;

    /// The focus is about to go: what the control holds back until then counts now. It may take the focus
    /// back.
    virtual void leaving() {}
    void changed(Aspect aspect);
    /// Runs an event as one act of the user.
    void act(const std::function<void()>& event);
    static void raise(const Event& event) {
        if (event) event();
    }

private:
    Form& form_;
    Frame* frame_ = nullptr;
    std::string name_;
    std::string tool_tip_;
    std::string tag_;
    std::optional<Color> back_color_;
    std::optional<Color> fore_color_;
    bool enabled_ = true;
    bool visible_ = true;
};

/// A control with words on it.
class Captioned : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);

private:
    std::string caption_;
};

/// Elements `name_0` to `name_(N-1)`. Their tab order is that of their numbers, unless the form says
/// otherwise with Form::order_tabs.
template <typename T, std::size_t N>
class ControlArray {
public:
    template <typename Parent>
    ControlArray(Parent& parent, const std::string& name)
        : ControlArray(parent, name, std::make_index_sequence<N>()) {}
    /// Elements that lie in different frames: one for each.
    ControlArray(const std::array<Frame*, N>& frames, const std::string& name)
        : ControlArray(frames, name, std::make_index_sequence<N>()) {}

    T& operator[](std::size_t index) { return elements_.at(index); }
    const T& operator[](std::size_t index) const { return elements_.at(index); }
    T& operator()(std::size_t index) { return elements_.at(index); }
    static constexpr std::size_t size() { return N; }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }

    /// Calls `visit(index, element)` for each.
    template <typename Visit>
    void each(Visit visit) {
        for (std::size_t i = 0; i < N; ++i) visit(i, elements_[i]);
    }

private:
    template <typename Parent, std::size_t... I>
    ControlArray(Parent& parent, const std::string& name, std::index_sequence<I...>)
        : elements_{{T(parent, name + "_" + std::to_string(I))...}} {}
    template <std::size_t... I>
    ControlArray(const std::array<Frame*, N>& frames, const std::string& name, std::index_sequence<I...>)
        : elements_{{T(*frames[I], name + "_" + std::to_string(I))...}} {}

    std::array<T, N> elements_;
};

} // namespace tarvello
