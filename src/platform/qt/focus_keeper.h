#pragma once

#include <qnamespace.h>

class QWidget;

namespace tarvello::qt {

class WidgetView;
class WindowBinder;

/// Keeps the focus of a form and the keyboard of its window in one place, whichever of the two has moved.
class FocusKeeper {
public:
    /// @param binder  of the form and its window
    explicit FocusKeeper(WindowBinder& binder) : binder_(binder) {}

    /// Gives the keyboard to the control that has the focus in the form, or else to the first one that takes
    /// it.
    void show_first();
    /// Gives the keyboard to the control that has the focus in the form.
    void show(Qt::FocusReason reason);
    /// The keyboard now goes to that widget: the form is told.
    void arrived(QWidget* widget);
    /// Once the events that are waiting are through, the place of the focus in the form is put on the screen.
    /// Ends the difference that arises where the toolkit moves the keyboard by itself, away from a widget
    /// that has been disabled or hidden.
    void settle_soon();
    /// True if the press must not reach that widget: its control did not get the focus, or the user has been
    /// elsewhere since the button went down.
    bool swallows_press(QWidget* widget);

private:
    void settle();

    WindowBinder& binder_;
    bool moving_ = false;      // the focus is on its way because of the user
    bool settling_ = false;    // settle() has been posted
    bool interrupted_ = false; // a box came while the focus moved for the press that is being delivered
};

} // namespace tarvello::qt
