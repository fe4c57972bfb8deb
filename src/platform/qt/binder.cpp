#include "platform/qt/binder.h"

#include "platform/bars.h"
#include "platform/date_picker.h"
#include "platform/entries.h"

#include "platform/qt/look.h"
#include "platform/qt/modal_turns.h"
#include "platform/qt/qt_text.h"
#include "platform/timer.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFontMetrics>
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

/// How much larger than the usual the font of the desktop is.
double font_scale(const QWidget& widget) {
    constexpr double usual_height = 17;
    return std::max(1.0, QFontMetrics(widget.font()).height() / usual_height);
}

} // namespace

// WidgetView

WidgetView::WidgetView(WindowBinder& binder, Control& control, QObject& widget)
    : binder_(binder), control_(control), widget_(qobject_cast<QWidget*>(&widget)) {}

void WidgetView::show_all() {
    for (const Aspect aspect : {Aspect::enabled, Aspect::look, Aspect::visible}) show(aspect);
}

void WidgetView::follow(Control&, Aspect aspect) {
    if (binder_.parted()) return;
    const WindowBinder::Following following(binder_);
    show(aspect);
}

void WidgetView::show(Aspect aspect) {
    if (!widget_) return;
    switch (aspect) {
    case Aspect::enabled:
        widget_->setEnabled(control_.enabled());
        break;
    case Aspect::visible:
        widget_->setVisible(control_.visible());
        break;
    case Aspect::look:
        if (!control_.tool_tip().empty()) widget_->setToolTip(plain_tool_tip(control_.tool_tip()));
        show_colors();
        break;
    default:
        break;
    }
    if (aspect == Aspect::enabled || aspect == Aspect::visible) {
        if (!binder_.settling_) {
            binder_.settling_ = true;
            QMetaObject::invokeMethod(
                &binder_, [&binder = binder_] { binder.settle_focus(); }, Qt::QueuedConnection);
        }
    }
}

void WidgetView::show_colors() { paint_with(*widget_, control_.back_color(), control_.fore_color()); }

std::unique_ptr<WidgetView> make_view(WindowBinder& binder, Control& control, QObject& widget) {
    for (const auto make :
         {make_text_view, make_combo_view, make_button_view, make_list_view, make_list_box_view,
          make_date_view, make_browser_view, make_document_view, make_plain_view}) {
        if (auto view = make(binder, control, widget)) return view;
    }
    return nullptr;
}

// WindowBinder

WindowBinder::WindowBinder(std::shared_ptr<Form> form, QWidget& window, const RegionalSettings& regional)
    : form_(std::move(form)), window_(window), regional_(regional) {
    QHash<QString, QObject*> named;
    for (QObject* object : window.findChildren<QObject*>()) {
        if (!object->objectName().isEmpty()) named.insert(object->objectName(), object);
    }
    const Following following(*this);
    grow_with_font();
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

void WindowBinder::grow_with_font() {
    const double scale = font_scale(window_);
    const auto grown = [scale](const QSize& size) {
        const auto length = [scale](int pixels) {
            return pixels >= QWIDGETSIZE_MAX ? pixels : static_cast<int>(pixels * scale + 0.5);
        };
        return QSize(length(size.width()), length(size.height()));
    };
    for (QWidget* widget : window_.findChildren<QWidget*>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"))) continue;
        widget->setMaximumSize(grown(widget->maximumSize()));
        widget->setMinimumSize(grown(widget->minimumSize()));
    }
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

void WindowBinder::name_what_has_no_words() {
    for (const auto& view : views_) {
        QWidget* widget = view->widget();
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        if (!widget || !widget->accessibleName().isEmpty() || (button && !button->text().isEmpty())) continue;
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
        if (widget == &window_) break;
    }
    return nullptr;
}

WidgetView* WindowBinder::view_of(const Control& control) const { return by_control_.value(&control); }

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
        show_focus(Qt::TabFocusReason);
        break;
    }
}

void WindowBinder::flush() {
    if (parted_) return;
    for (const auto& view : views_) view->flush();
}

// The focus

void WindowBinder::show_first_focus() {
    if (parted_) return;
    const auto alive = form_;
    if (!form_->focus()) form_->host().run([this] { form_->focus_next(); });
    if (!parted_) show_focus(Qt::TabFocusReason);
}

void WindowBinder::show_focus(Qt::FocusReason reason) {
    Control* control = form_->focus();
    WidgetView* view = control ? view_of(*control) : nullptr;
    if (!view || !view->widget()) return;
    const Following following(*this);
    if (!view->widget()->hasFocus()) view->widget()->setFocus(reason);
    last_focus_ = view;
    view->focus_settled();
}

void WindowBinder::focus_arrived(QWidget* widget) {
    // While a field is being left, a box of its own takes the keyboard and gives it back: that is no other
    // move.
    if (parted_ || following() || moving_) return;
    WidgetView* view = view_of(widget);
    if (!view || !view->control().takes_focus()) return;
    const int turns = ModalTurn::count();
    moving_ = true;
    if (!parted_ && form_->focus() != &view->control()) view->control().enter();
    moving_ = false;
    if (parted_) return;
    if (ModalTurn::count() != turns) {
        interrupted_ = true;
        // The press that has moved the focus is delivered next, before any posted call.
        QMetaObject::invokeMethod(
            this, [this] { interrupted_ = false; }, Qt::QueuedConnection);
    }
    show_focus(Qt::OtherFocusReason);
}

void WindowBinder::settle_focus() {
    settling_ = false;
    if (parted_) return;
    QWidget* has_it = QApplication::focusWidget();
    const bool here = !has_it || has_it == &window_ || window_.isAncestorOf(has_it);
    if (!here) return;
    Control* wanted = form_->focus();
    if (wanted && wanted->reachable()) {
        WidgetView* view = view_of(*wanted);
        if (view && view->widget() && view->widget() != has_it && !view->widget()->isAncestorOf(has_it)) {
            show_focus(Qt::OtherFocusReason);
        }
    } else if (has_it) {
        focus_arrived(has_it);
    }
}

// Events

bool WindowBinder::eventFilter(QObject* watched, QEvent* event) {
    if (parted_) {
        // The handlers of the last event are still running: nothing more comes of this window.
        return event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress ||
               event->type() == QEvent::MouseButtonRelease;
    }
    auto* widget = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto* move = static_cast<QMouseEvent*>(event);
        mouse_moved(widget, move->position().toPoint());
        return parted_;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (swallows_press(widget)) return true;
        break;
    case QEvent::Wheel:
        // Rolling over a page must not change the choices that pass under the pointer.
        if (const WidgetView* view = view_of(widget);
            view && !view->control().has_focus() &&
            (dynamic_cast<ComboBox*>(&view->control()) || dynamic_cast<DatePicker*>(&view->control()))) {
            event->ignore();
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto& key = *static_cast<QKeyEvent*>(event);
        if (widget == &window_) {
            // A dialog of the toolkit goes away on Escape, without asking the form.
            return key.key() == Qt::Key_Escape && qobject_cast<QDialog*>(&window_);
        }
        WidgetView* view = by_widget_.value(widget);
        if (view && view->key_pressed(key)) return true;
        break;
    }
    case QEvent::KeyRelease:
        if (WidgetView* view = by_widget_.value(widget)) view->key_released(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::InputMethod:
        if (WidgetView* view = by_widget_.value(widget);
            view && view->text_composed(*static_cast<QInputMethodEvent*>(event))) {
            return true;
        }
        break;
    default:
        break;
    }
    if (parted_) return false;
    WidgetView* view = view_of(widget);
    return view && view->other_event(*watched, *event);
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

bool WindowBinder::swallows_press(QWidget* widget) {
    WidgetView* view = view_of(widget);
    if (!view || !view->control().takes_focus() || !view->control().reachable()) return false;
    const bool refused = form_->focus() != &view->control();
    if (!refused && !interrupted_) return false;
    interrupted_ = false;
    if (!refused) view->press_in_its_place();
    return true;
}

bool WindowBinder::offer_key_to_form(Control& control, int key) {
    if (key == 0) return true;
    form_->host().run([&] { FormLife::preview(*form_, control, key); });
    return key != 0 && !parted_;
}

// Helpers

int key_code(const QKeyEvent& event) {
    // Backspace is one with Ctrl too, where the toolkit takes a whole word.
    if (event.key() == Qt::Key_Backspace) return keys::backspace;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return 0;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return keys::enter;
    case Qt::Key_Escape:
        return keys::escape;
    default:
        break;
    }
    const auto characters = event.text().toUcs4();
    if (characters.size() != 1) return 0;
    const auto code = static_cast<int>(characters.front());
    return code >= ' ' && code != 127 ? code : 0;
}

int pixels(const QWidget& widget, int twips) {
    return static_cast<int>(twips / 15.0 * font_scale(widget) + 0.5);
}

int twips(const QWidget& widget, int pixels) {
    return static_cast<int>(pixels * 15 / font_scale(widget) + 0.5);
}

} // namespace tarvello::qt
