#pragma once

#include "platform/form.h"
#include "text/dates.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The controls of a form: plain state plus events; nothing here draws.
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
    size,
    focus
};

/// The picture of a control on the screen.
class ControlView {
public:
    virtual void follow(Control& control, Aspect aspect) = 0;
    /// The control is being left: what the picture holds back until then is handed over now.
    virtual void commit() {}

protected:
    ~ControlView() = default;
};

using Event = std::function<void()>;
/// A key as the code of its character; 0 on return cancels it.
using KeyEvent = std::function<void(int& key)>;

namespace keys {
inline constexpr int backspace = 8;
inline constexpr int tab = 9;
inline constexpr int enter = 13;
inline constexpr int escape = 27;
} // namespace keys

/// A colour as red, green and blue from 0 to 255 each.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    /// The colour that the desktop gives its buttons, whatever that is, instead of the three numbers.
    bool button_face = false;
    bool operator==(const Color&) const = default;

    /// From a number with blue, green and red from high to low: 0x800000 is dark blue.
    static constexpr Color from_bgr(std::uint32_t bgr) {
        return {static_cast<std::uint8_t>(bgr & 0xFF), static_cast<std::uint8_t>(bgr >> 8 & 0xFF),
                static_cast<std::uint8_t>(bgr >> 16 & 0xFF)};
    }
};

namespace colors {
inline constexpr Color white{255, 255, 255};
inline constexpr Color grey{0xE0, 0xE0, 0xE0};
inline constexpr Color button_face{0xF0, 0xF0, 0xF0, true};
} // namespace colors

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

    ControlView* view = nullptr;

protected:
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

/// Holds other controls. Disabled or hidden, it stops the user on all of them.
class Frame : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    /// Height in twips for a frame that folds; 0 leaves it to the layout.
    int height() const { return height_; }
    void set_height(int height);

private:
    std::string caption_;
    int height_ = 0;
};

class Label : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    bool underline() const { return underline_; }
    void set_underline(bool underline);

    /// A label with this event is a command of its own: the user clicks it, or reaches it with Tab and
    /// presses Enter.
    Event on_click;
    bool takes_focus() const override { return static_cast<bool>(on_click); }

    // User act.
    void click();

private:
    std::string caption_;
    bool underline_ = false;
};

/// What text boxes and combo boxes share: one text, a caret, the keys.
class TextEntry : public Control {
public:
    using Control::Control;

    const std::string& text() const { return text_; }
    /// Sets the text and puts the caret at its start.
    virtual void set_text(std::string text);
    bool empty() const { return text_.empty(); }
    void clear() { set_text({}); }

    /// The user can select and copy but not change the text.
    bool locked() const { return locked_; }
    void set_locked(bool locked);
    /// Most characters that the user can enter; 0 for no limit. Code may set a longer text.
    std::size_t max_length() const { return max_length_; }
    void set_max_length(std::size_t characters) { max_length_ = characters; }

    /// Caret position, or the start of the selection, in characters from 0.
    std::size_t selection_start() const { return selection_start_; }
    std::size_t selection_length() const { return selection_length_; }
    void select(std::size_t start, std::size_t length);

    bool takes_focus() const override { return true; }

    /// The text has changed, by code or by the user.
    Event on_change;
    /// Asked before an edit of the user counts, also one that comes without a key, such as pasting.
    /// Returns true to refuse it.
    std::function<bool()> on_query_edit;
    /// A character key, before it has any effect.
    KeyEvent on_key_press;
    /// A key has been let go, after its effect.
    Event on_key_up;

    // User acts.

    /// Reaches the control if need be, and enters the characters one by one at the caret.
    void type(std::string_view characters);
    /// One key with all that it does: a character, Backspace or Enter.
    void press_key(int key);
    /// The Delete key: takes the selection, or the character after the caret.
    void press_delete();
    /// Puts a text in the place of the selection without passing the key filter.
    void paste(std::string_view text);
    /// Puts the caret, or selects.
    void place_caret(std::size_t start, std::size_t length = 0);

    // The steps of a key for a widget that does its own editing.

    /// Offers a key to the form and to the filter. @return the key to go on with, 0 if it was cancelled
    int offer_key(int key);
    /// The user's editing has come to this text and caret. Refused where the user may not change it.
    /// @return false if it was refused: the widget goes back to text()
    bool edit(std::string text, std::size_t caret);
    /// The key has been let go.
    void release_key();

protected:
    virtual bool user_may_edit() const { return !locked_; }
    /// The user is about to enter another text.
    virtual void text_typed() {}
    /// Sets the text without an event. @return true if it is another one
    bool assign_text(std::string text);
    /// Sets the text and raises on_change if it is another one.
    void put_text(std::string text);

private:
    std::string text_;
    bool locked_ = false;
    std::size_t max_length_ = 0;
    std::size_t selection_start_ = 0;
    std::size_t selection_length_ = 0;
};

class TextBox : public TextEntry {
public:
    using TextEntry::TextEntry;
};

/// A text that can be chosen from a list and, unless `list_only`, also typed.
class ComboBox : public TextEntry {
public:
    using TextEntry::TextEntry;

    const std::vector<std::string>& items() const { return items_; }
    void add_item(std::string item);
    void clear_items();
    /// The chosen item, or -1 when the text was typed or is none of them.
    int list_index() const { return list_index_; }
    /// Chooses an item: its text becomes the text and on_click is raised. -1 chooses none and empties the
    /// text.
    /// @throws Failure if there is no such item
    void set_list_index(int index);
    void set_text(std::string text) override;

    bool list_only() const { return list_only_; }
    void set_list_only(bool list_only) { list_only_ = list_only; }

    /// An item has been chosen.
    Event on_click;

    // User act: chooses an item.
    void choose(int index);

protected:
    bool user_may_edit() const override { return !locked() && !list_only_; }
    void text_typed() override { list_index_ = -1; }

private:
    std::vector<std::string> items_;
    int list_index_ = -1;
    bool list_only_ = false;
};

class CommandButton : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    /// Name of a picture of the program, shown in place of the caption or beside it; empty for none.
    const std::string& picture() const { return picture_; }
    void set_picture(std::string picture);
    bool takes_focus() const override { return true; }

    Event on_click;

    // User act. The button takes the focus first; if the control left keeps it, the press is lost.
    void click();

private:
    std::string caption_;
    std::string picture_;
};

class CheckBox : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    bool checked() const { return checked_; }
    void set_checked(bool checked);
    bool takes_focus() const override { return true; }

    /// The box has been ticked or unticked, by code or by the user.
    Event on_click;
    KeyEvent on_key_press;

    // User acts.
    void click();
    void press_key(int key);
    /// Offers a key to the form and to the box. @return the key to go on with
    int offer_key(int key);

private:
    std::string caption_;
    bool checked_ = false;
};

/// One of the option buttons that lie in the same frame: choosing one frees the others.
class OptionButton : public Control {
public:
    using Control::Control;

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    bool selected() const { return selected_; }
    void set_selected(bool selected);
    bool takes_focus() const override { return true; }

    /// The button has been chosen.
    Event on_click;
    /// The user has clicked it although it is the chosen one.
    Event on_click_again;

    // User act.
    void click();

private:
    std::string caption_;
    bool selected_ = false;
};

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

    // User act.
    void click();

private:
    std::string picture_;
    std::optional<PictureBox> painted_;
    float width_ = 0;
    float height_ = 0;
};

/// Raises its event again and again while it is enabled. Timers start disabled.
class Timer : public Control {
public:
    Timer(Form& form, std::string name, int interval_ms);

    int interval_ms() const { return interval_ms_; }
    Event on_timer;

    /// One interval has gone by.
    void tick();

private:
    int interval_ms_;
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

/// What carries out the commands of a browser on the screen.
class BrowserView {
public:
    virtual void navigate(const std::string& address) = 0;
    virtual void go_back() = 0;
    virtual void go_forward() = 0;
    virtual void refresh() = 0;

protected:
    ~BrowserView() = default;
};

/// A browser of web pages. Without a view it remembers the address alone: a view that comes later starts
/// there.
class WebBrowser : public Control {
public:
    using Control::Control;

    /// The address that the program has asked for last; empty for none.
    const std::string& address() const { return address_; }
    void navigate(std::string address);
    void go_back();
    void go_forward();
    void refresh();
    /// Errors in the scripts of a page show no boxes.
    bool silent() const { return silent_; }
    void set_silent(bool silent) { silent_ = silent; }
    bool takes_focus() const override { return true; }

    BrowserView* browser = nullptr;

private:
    std::string address_;
    bool silent_ = false;
};

/// A document that was shipped with the program, which the user reads: headings, pictures, tables, links.
class Document : public Control {
public:
    using Control::Control;

    /// Its name, such as "guida"; empty for none.
    const std::string& document() const { return document_; }
    void set_document(std::string document);
    bool takes_focus() const override { return true; }

private:
    std::string document_;
};

/// Pages of which one is in view.
class TabControl : public Control {
public:
    using Control::Control;

    int tab() const { return tab_; }
    void set_tab(int tab);
    bool takes_focus() const override { return true; }

    // User act.
    void choose(int tab);

private:
    int tab_ = 0;
};

} // namespace tarvello
