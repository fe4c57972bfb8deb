#pragma once

#include "text/dates.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvello {

class Control;
class Form;

/// Why a form is being closed.
enum class UnloadReason {
    user,        ///< the close box of the window
    code,        ///< a command of the program
    main_window, ///< the main window is closing
    shut_down    ///< the desktop session is ending
};

/// What about a form has changed.
enum class FormAspect { caption, size, focus };

/// The picture of a form on the screen.
class FormView {
public:
    virtual void follow(Form& form, FormAspect aspect) = 0;

protected:
    ~FormView() = default;
};

/// What a form asks of the program that it belongs to.
class FormHost {
public:
    /// Runs one act of the user. A failure that nothing in it catches ends the process, with its description
    /// shown.
    virtual void run(const std::function<void()>& act) = 0;
    virtual void show(Form& form) = 0;
    /// Returns when the form has been unloaded.
    virtual void show_modal(Form& form) = 0;
    /// Asks the form whether it may close, and if so takes it off the screen and out of the program.
    /// @return false if the form refused
    virtual bool unload(Form& form, UnloadReason reason) = 0;
    /// How the user writes dates.
    virtual const RegionalSettings& regional() const = 0;
    virtual Date today() = 0;
    /// Shows the guide.
    virtual void help() = 0;
    /// Tells the user why something that was entered is not taken.
    virtual void warn(const std::string& text) = 0;

protected:
    ~FormHost() = default;
};

/// A window as plain C++: its controls are its members, its routines its methods. The toolkit's window is a
/// picture of it. A form may unload itself in the midst of its own handler: it stays alive until the handler
/// has returned.
class Form : public std::enable_shared_from_this<Form> {
public:
    /// @param name  the name of the form, also of its window
    Form(FormHost& host, std::string name);
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    FormHost& host() const { return host_; }

    const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);

    /// Outer size in twips (1440 to the inch, 15 to a pixel at 96 dpi); 0 leaves it to the layout.
    int width() const { return width_; }
    int height() const { return height_; }
    void set_size(int width, int height);
    /// The window opens in the top left corner of the main window's working area, not where the desktop puts
    /// it.
    bool at_top_left() const { return at_top_left_; }
    void place_top_left() { at_top_left_ = true; }

    /// All controls in the order of declaration, which is the tab order.
    const std::vector<Control*>& controls() const { return controls_; }
    /// The control of that name, or null.
    Control* find(const std::string& name) const;

    /// The control that has the focus; null before the first one was reached.
    Control* focus() const { return focus_; }

    /// Moves the focus, raising the events of leaving and reaching. Nothing happens if the control cannot be
    /// reached (disabled, hidden, or inside something that is).
    /// @return true if the control has the focus afterwards: the control left may take it back
    bool move_focus(Control* control);
    /// True while the focus goes to a command that gives up what has been entered, so that what is being left
    /// has no say.
    bool cancelling() const;

    /// Moves the focus as the Tab key does: on to the next control that takes it, from the last to the first.
    void focus_next();
    /// Moves the focus as Enter does: on to the next field, past the commands in between, which the next
    /// blank would press. After the last field it is the command that Enter presses, or else what Tab leads
    /// to.
    void focus_next_field();

    bool loaded() const { return loaded_; }

    /// The commands of Enter, where nothing else takes it, and of Escape; null for none.
    void set_keys(Control* enter, Control* escape);

    /// User act: the window's close box.
    void close_by_user();
    /// User acts: a key that nothing in the window has taken. @return false if nothing waits for it
    bool press_enter();
    virtual bool press_escape();

    /// The focus has gone from a control.
    std::function<void()> on_field_left;

    /// The pointer moves over the window itself, or over something on it that is no control or is disabled.
    std::function<void()> on_mouse_move;
    /// User act: moves the pointer so.
    void move_mouse();

    /// Shows the form, or shows it and waits until it has been unloaded.
    void show() { host_.show(*this); }
    void show_modal() { host_.show_modal(*this); }
    bool unload(UnloadReason reason = UnloadReason::code) { return host_.unload(*this, reason); }

    /// A part of this form for another window to write into: the form lives as long as the part is held.
    template <typename Part>
    std::shared_ptr<Part> share(Part& part) {
        return {shared_from_this(), &part};
    }

    FormView* view = nullptr;

protected:
    friend class Control;
    friend class FormLife;

    /// Gives these controls the order of the list in the tab order, at the place where the first of them that
    /// was declared stands. A tool bar brings its buttons along.
    void order_tabs(const std::vector<Control*>& order);

    /// The form comes to life: runs once, when it is first used, before it is shown.
    virtual void on_load() {}
    /// May keep the form open.
    /// @return true to cancel the closing
    virtual bool on_query_unload(UnloadReason) { return false; }
    /// The form goes away. It is still in the program while this runs.
    virtual void on_unload(UnloadReason) {}
    /// Sees a key before the control that has the focus. 0 in `key` cancels it. Unless a form says otherwise,
    /// Enter in a text box or a date moves on as Tab does and writes nothing.
    virtual void on_key_preview(Control& control, int& key);
    /// The size of the window has changed by the user's hand, in twips.
    virtual void on_resize(int /*width*/, int /*height*/) {}

private:
    FormHost& host_;
    std::string name_;
    std::string caption_;
    int width_ = 0;
    int height_ = 0;
    bool at_top_left_ = false;
    std::vector<Control*> controls_;
    Control* focus_ = nullptr;
    Control* enter_command_ = nullptr;
    Control* escape_command_ = nullptr;
    bool leaving_ = false;          // a lost-focus event is running
    Control* redirected_ = nullptr; // where that event wants the focus to go
    bool loaded_ = false;
};

/// The steps of a form's life, for its host, its controls and its window.
class FormLife {
public:
    static void load(Form& form);
    static bool refuses(Form& form, UnloadReason reason) { return form.on_query_unload(reason); }
    static void unload(Form& form, UnloadReason reason) { form.on_unload(reason); }
    static void preview(Form& form, Control& control, int& key) { form.on_key_preview(control, key); }
    static void resize(Form& form, int width, int height) { form.on_resize(width, height); }
};

} // namespace tarvello
