#pragma once

#include "platform/form.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/widget_view.h"
#include "text/regional_settings.h"

#include <QHash>
#include <QObject>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvello::qt {

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
    FocusKeeper& focus() { return focus_; }

    /// True once the form has left the program: events are no longer passed on.
    bool parted() const { return parted_; }
    void part();

    /// Puts on the screen what still waits to be put there.
    void flush();
    /// The form wants another size: that of the frame around the window.
    std::function<void()> on_size;

    /// Names of the form's controls that have no widget.
    const std::vector<std::string>& missing() const { return missing_; }

    /// The view of the widget, or of the nearest one around it that has a view.
    WidgetView* view_of(const QWidget* widget) const;
    WidgetView* view_of(const Control& control) const { return by_control_.value(&control); }

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
    void bind(Control& control, QObject& widget);
    void set_tab_order();
    /// What a screen reader says of icons.
    void name_what_has_no_words();
    /// What has the focus may lie on a page that is not in view.
    void bring_page_of_focus_up();
    void mouse_moved(QWidget* widget, const QPoint& at);
    /// A key that nothing in the window has taken. @return true if it ends here
    bool takes_key(const QKeyEvent& key);

    std::shared_ptr<Form> form_;
    QWidget& window_;
    const RegionalSettings& regional_;
    FocusKeeper focus_{*this};
    std::vector<std::unique_ptr<WidgetView>> views_;
    QHash<const QObject*, WidgetView*> by_widget_;
    QHash<const Control*, WidgetView*> by_control_;
    std::vector<std::string> missing_;
    int following_ = 0;
    bool parted_ = false;
};

} // namespace tarvello::qt
