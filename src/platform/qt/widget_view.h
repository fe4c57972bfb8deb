#pragma once

#include "platform/control.h"

#include <functional>
#include <initializer_list>
#include <vector>

class QInputMethodEvent;
class QKeyEvent;
class QEvent;
class QObject;
class QWidget;

namespace tarvello::qt {

class WindowBinder;

/// The picture of one control: its widget.
class WidgetView : public ControlView {
public:
    /// @param own  what the widget shows besides that which all have: enabled, visible, look and caption
    WidgetView(WindowBinder& binder, Control& control, QObject& widget,
               std::initializer_list<Aspect> own = {});
    virtual ~WidgetView() = default;
    WidgetView(const WidgetView&) = delete;
    WidgetView& operator=(const WidgetView&) = delete;

    Control& control() const { return control_; }
    /// Null for a menu entry and a timer.
    QWidget* widget() const { return widget_; }
    WindowBinder& binder() const { return binder_; }

    /// Puts the whole state of the control on its widget.
    virtual void show_all();
    void follow(Control& control, Aspect aspect) final;
    /// The keyboard has reached the widget and the form agrees.
    virtual void focus_settled() {}
    /// A key, before the widget has it. @return true if it must not reach the widget
    virtual bool key_pressed(QKeyEvent&) { return false; }
    /// Text that comes from an input method, such as a composed accent. As key_pressed.
    virtual bool text_composed(QInputMethodEvent&) { return false; }
    /// True if rolling the wheel over the widget changes what is chosen in it.
    virtual bool rolls() const { return false; }
    /// A press of the mouse was taken from the widget because the user has been elsewhere, but the control
    /// has the focus: a button does what the press would have done.
    virtual void press_in_its_place() {}
    /// Other events of the widget and of what lies in it. @return true to stop the event
    virtual bool other_event(QObject&, QEvent&) { return false; }
    /// Puts on the screen what still waits for the end of the handler.
    virtual void flush() {}
    /// The form has left the program.
    virtual void part() {}

protected:
    /// Shows one aspect. The base class knows enabled, visible and look; what has a caption knows that.
    virtual void show(Aspect aspect);
    /// The widget reports something: runs the act that it is of the user. Then the widget shows that aspect
    /// as the control has it, which has the last word. What the widget reports because the program has
    /// changed it is no act, and a form that has left the program hears nothing more.
    void by_user(const std::function<void()>& act, Aspect shown);
    /// True while what the widget reports is an act of the user.
    bool hears_user() const;

private:
    WindowBinder& binder_;
    Control& control_;
    QWidget* widget_;
    std::vector<Aspect> own_;
};

} // namespace tarvello::qt
