#pragma once

#include "platform/control.h"
#include "text/regional_settings.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace tarvello::qt {

class WidgetView;

/// Ties a form to its window: finds the widget of each control by its name, puts the control's state on it,
/// follows every change, and turns what the user does to the widget into the user acts of the control.
///
/// While it lives it keeps the form alive, so that a form may unload itself in the midst of its own handler:
/// the windows part the two at once (part()) and destroy the binder and its window when all handlers have
/// returned.
class WindowBinder final : public QObject, public FormView {
public:
    WindowBinder(std::shared_ptr<Form> form, QWidget& window, const RegionalSettings& regional);
    ~WindowBinder() override;

    Form& form() const { return *form_; }
    QWidget& window() const { return window_; }
    const RegionalSettings& regional() const { return regional_; }

    /// True once the form has left the program: events are no longer passed on.
    bool parted() const { return parted_; }
    void part();

    /// Puts on the screen what still waits to be put there.
    void flush();
    /// The form wants another size: that of the frame around the window.
    std::function<void()> on_size;

    /// Gives the focus to the control that has it in the form, or else to the first one that takes it.
    void show_first_focus();
    /// The keyboard now goes to that widget.
    void focus_arrived(QWidget* widget);
    /// The place of the focus in the form is put on the screen. Ends the difference that arises where the
    /// toolkit moves the focus by itself, away from a widget that has been disabled or hidden.
    void settle_focus();

    /// Names of the form's controls that have no widget.
    const std::vector<std::string>& missing() const { return missing_; }

    /// True while a change made by the program is being put on the screen: what the widgets report meanwhile
    /// is no act of the user.
    bool following() const { return following_ > 0; }
    class Following {
    public:
        explicit Following(WindowBinder& binder) : binder_(binder) { ++binder_.following_; }
        ~Following() { --binder_.following_; }
        Following(const Following&) = delete;
        Following& operator=(const Following&) = delete;

    private:
        WindowBinder& binder_;
    };

    // FormView
    void follow(Form& form, FormAspect aspect) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class WidgetView;

    void bind(Control& control, QObject& widget);
    /// The look states sizes for the usual font.
    void grow_with_font();
    void set_tab_order();
    /// What a screen reader says of icons.
    void name_what_has_no_words();
    void show_focus(Qt::FocusReason reason);
    /// The view of the widget, or of the nearest one around it that has a view.
    WidgetView* view_of(const QWidget* widget) const;
    WidgetView* view_of(const Control& control) const;
    void mouse_moved(QWidget* widget, const QPoint& at);
    /// True if the press must not reach the widget: its control did not get the focus, or the user has been
    /// elsewhere since the button went down.
    bool swallows_press(QWidget* widget);
    bool offer_key_to_form(Control& control, int key);

    std::shared_ptr<Form> form_;
    QWidget& window_;
    const RegionalSettings& regional_;
    std::vector<std::unique_ptr<WidgetView>> views_;
    QHash<const QObject*, WidgetView*> by_widget_;
    QHash<const Control*, WidgetView*> by_control_;
    std::vector<std::string> missing_;
    int following_ = 0;
    bool parted_ = false;
    bool moving_ = false;      // the focus is on its way because of the user
    bool settling_ = false;    // settle_focus() has been posted
    bool interrupted_ = false; // a box came while the focus moved for the press that is being delivered
    WidgetView* last_focus_ = nullptr;
};

/// The picture of one control: its widget.
class WidgetView : public ControlView {
public:
    WidgetView(WindowBinder& binder, Control& control, QObject& widget);
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
    virtual bool key_pressed(class QKeyEvent&) { return false; }
    virtual void key_released(class QKeyEvent&) {}
    /// Text that comes from an input method, such as a composed accent. As key_pressed.
    virtual bool text_composed(class QInputMethodEvent&) { return false; }
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
    /// Shows one aspect. The base class knows enabled, visible and look.
    virtual void show(Aspect aspect);
    /// Colours of the control on the widget's palette.
    void show_colors();

private:
    WindowBinder& binder_;
    Control& control_;
    QWidget* widget_;
};

/// Makes the view that fits control and widget; null if they do not fit each other.
std::unique_ptr<WidgetView> make_view(WindowBinder& binder, Control& control, QObject& widget);

// One function a family of controls; null if the control is of another family or the widget of another kind.
std::unique_ptr<WidgetView> make_text_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_combo_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_button_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_list_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_list_box_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_date_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_browser_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_document_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_plain_view(WindowBinder& binder, Control& control, QObject& widget);

/// The code of the character that a key writes, or of Backspace, Enter or Escape; 0 for every other key, and
/// for every key pressed together with Ctrl, Alt or Meta.
int key_code(const class QKeyEvent& event);

/// Pixels of this screen for a length in twips: 15 twips to a pixel at 96 dpi, growing with the font.
int pixels(const QWidget& widget, int twips);
int twips(const QWidget& widget, int pixels);

} // namespace tarvello::qt
