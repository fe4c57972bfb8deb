#include "platform/qt/binder.h"

#include "platform/bars.h"
#include "platform/containers.h"
#include "platform/qt/double_press.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/scale.h"
#include "platform/qt/views.h"
#include "platform/timer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>

namespace tarvello::qt {

namespace {

/// Of all windows: the first press may bring up the one that meets the second.
DoublePress double_press;

} // namespace

WindowBinder::WindowBinder(std::shared_ptr<Form> form, QWidget& window, const RegionalSettings& regional)
    : form_(std::move(form)), window_(window), regional_(regional) {
    QHash<QString, QObject*> named;
    for (QObject* object : window.findChildren<QObject*>()) {
        if (!object->objectName().isEmpty()) named.insert(object->objectName(), object);
    }
    const Following following(*this);
    grow_with_font(window);
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
        // Enter belongs to the form's key preview and to the button that has the focus, never to another one.
        button->setAutoDefault(false);
    }
    for (Control* control : form_->controls()) {
        if (QObject* widget = named.value(to_qt(control->name()))) {
            bind(*control, *widget);
        } else if (dynamic_cast<Timer*>(control)) {
            auto* timer = new QTimer(this);
            bind(*control, *timer);
        } else {
            missing_.push_back(control->name());
        }
    }
    for (const auto& view : views_) view->show_all();
    set_tab_order();
    name_what_has_no_words();
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        widget->setMouseTracking(true);
        widget->installEventFilter(this);
    }
    window.setMouseTracking(true);
    window.installEventFilter(this);
    form_->view = this;
    follow(*form_, FormAspect::caption);
}

WindowBinder::~WindowBinder() { part(); }

void WindowBinder::part() {
    if (parted_) return;
    parted_ = true;
    form_->view = nullptr;
    for (const auto& view : views_) {
        view->control().view = nullptr;
        view->part();
    }
}

void WindowBinder::bind(Control& control, QObject& widget) {
    auto view = make_view(*this, control, widget);
    if (!view) {
        missing_.push_back(control.name());
        return;
    }
    control.view = view.get();
    by_widget_.insert(&widget, view.get());
    by_control_.insert(&control, view.get());
    if (QWidget* on_screen = view->widget()) {
        if (control.takes_focus()) {
            on_screen->setFocusPolicy(Qt::StrongFocus);
        } else if (!qobject_cast<QMenu*>(on_screen)) {
            on_screen->setFocusPolicy(Qt::NoFocus);
        }
    }
    views_.push_back(std::move(view));
}

void WindowBinder::set_tab_order() {
    QWidget* before = nullptr;
    for (const auto& view : views_) {
        QWidget* stop = view->widget();
        if (!stop || !view->control().takes_focus()) continue;
        // What lies on its pages counts as part of a tab widget: its own stop is the bar alone.
        if (const auto* tabs = qobject_cast<QTabWidget*>(stop)) stop = tabs->tabBar();
        if (before) QWidget::setTabOrder(before, stop);
        before = stop;
    }
}

namespace {

/// True if a screen reader finds words by itself: those on the widget, or those of the label beside it.
bool has_words(const QWidget& window, const QWidget& widget) {
    if (!widget.accessibleName().isEmpty()) return true;
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return !button->text().isEmpty();
    const QList<QLabel*> labels = window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
        return !label->text().isEmpty() && (label == &widget || label->buddy() == &widget);
    });
}

} // namespace

void WindowBinder::name_what_has_no_words() {
    for (const auto& view : views_) {
        QWidget* widget = view->widget();
        if (!widget || has_words(window_, *widget)) continue;
        const auto* tool = dynamic_cast<ToolButton*>(&view->control());
        widget->setAccessibleName(to_qt(tool ? tool->key() : view->control().tool_tip()));
    }
    // The toolkit tells the chosen text of a combo box in place of its name. What the box is for comes from a
    // label, and where the look has none there is one that only a screen reader finds.
    for (QComboBox* combo : window_.findChildren<QComboBox*>()) {
        if (combo->accessibleName().isEmpty()) continue;
        auto* label = new QLabel(combo->accessibleName(), combo->parentWidget());
        label->setBuddy(combo);
        label->hide();
    }
}

WidgetView* WindowBinder::view_of(const QWidget* widget) const {
    for (; widget; widget = widget->parentWidget()) {
        if (WidgetView* view = by_widget_.value(widget)) return view;
        if (widget == &window_ || widget->isWindow()) break; // what pops up over a widget is no part of it
    }
    return nullptr;
}

void WindowBinder::follow(Form& form, FormAspect aspect) {
    if (parted_) return;
    switch (aspect) {
    case FormAspect::caption:
        window_.setWindowTitle(to_qt(form.caption()));
        break;
    case FormAspect::size:
        if (on_size) on_size();
        break;
    case FormAspect::focus:
        bring_page_of_focus_up();
        focus_.show(Qt::TabFocusReason);
        break;
    }
}

void WindowBinder::bring_page_of_focus_up() {
    const Control* control = form_->focus();
    WidgetView* view = control ? view_of(*control) : nullptr;
    if (!view || !view->widget()) return;
    for (QWidget* around = view->widget()->parentWidget(); around; around = around->parentWidget()) {
        const auto* tabs = qobject_cast<QTabWidget*>(around);
        WidgetView* pages = tabs ? by_widget_.value(around) : nullptr;
        auto* tab_control = pages ? dynamic_cast<TabControl*>(&pages->control()) : nullptr;
        for (int page = 0; tab_control && page < tabs->count(); ++page) {
            if (tabs->widget(page)->isAncestorOf(view->widget())) tab_control->set_tab(page);
        }
    }
}

void WindowBinder::flush() {
    if (parted_) return;
    for (const auto& view : views_) view->flush();
}

// Events

bool WindowBinder::eventFilter(QObject* watched, QEvent* event) {
    if (parted_) {
        // The handlers of the last event are still running: nothing more comes of this window.
        return event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress ||
               event->type() == QEvent::MouseButtonRelease;
    }
    auto* widget = static_cast<QWidget*>(watched);
    WidgetView* const own = by_widget_.value(widget);
    switch (event->type()) {
    case QEvent::MouseMove:
        mouse_moved(widget, static_cast<QMouseEvent*>(event)->position().toPoint());
        return parted_;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (double_press.is_on_another(*widget, *static_cast<QMouseEvent*>(event))) return true;
        if (focus_.swallows_press(widget)) return true;
        break;
    case QEvent::Wheel:
        // Rolling over a page must not change the choices that pass under the pointer.
        if (const WidgetView* view = view_of(widget); view && view->rolls() && !view->control().has_focus()) {
            event->ignore();
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (widget == &window_) return takes_key(*static_cast<QKeyEvent*>(event));
        if (own && own->key_pressed(*static_cast<QKeyEvent*>(event))) return true;
        break;
    case QEvent::InputMethod:
        if (own && own->text_composed(*static_cast<QInputMethodEvent*>(event))) return true;
        break;
    default:
        break;
    }
    if (parted_) return false;
    WidgetView* view = view_of(widget);
    return view && view->other_event(*watched, *event);
}

bool WindowBinder::takes_key(const QKeyEvent& key) {
    if (key.modifiers() & ~Qt::KeypadModifier) return false;
    const auto form = form_;
    if (key.key() == Qt::Key_F1) {
        form->host().run([&] { form->host().help(); });
        return true;
    }
    if (is_enter(key)) return key.isAutoRepeat() || form->press_enter();
    if (key.key() != Qt::Key_Escape) return false;
    // A dialog of the toolkit would go away on it without asking the form.
    bool taken = qobject_cast<QDialog*>(&window_);
    form->host().run([&] { taken = form->press_escape() || taken; });
    return taken;
}

void WindowBinder::mouse_moved(QWidget* widget, const QPoint& at) {
    // A move that nobody has taken goes on to the widgets around: only the innermost counts.
    if (widget->childAt(at)) return;
    for (const QWidget* around = widget; around && around != &window_; around = around->parentWidget()) {
        const WidgetView* view = by_widget_.value(around);
        if (view && view->control().enabled()) return view->control().move_mouse();
    }
    form_->move_mouse();
}

} // namespace tarvello::qt
