#include "platform/qt/focus_keeper.h"

#include "platform/qt/binder.h"
#include "platform/qt/modal_turns.h"

#include <QApplication>

namespace tarvello::qt {

void FocusKeeper::show_first() {
    if (binder_.parted()) return;
    Form& form = binder_.form();
    if (!form.focus()) form.host().run([&] { form.focus_next(); });
    if (!binder_.parted()) show(Qt::TabFocusReason);
}

void FocusKeeper::show(Qt::FocusReason reason) {
    const Control* control = binder_.form().focus();
    WidgetView* view = control ? binder_.view_of(*control) : nullptr;
    if (!view || !view->widget()) return;
    const WindowBinder::Following following(binder_);
    // Else what has the focus shows it from the first Tab on only, not after Enter or at the start.
    if (reason == Qt::TabFocusReason) view->widget()->window()->setAttribute(Qt::WA_KeyboardFocusChange);
    if (!view->widget()->hasFocus()) view->widget()->setFocus(reason);
    view->focus_settled();
}

void FocusKeeper::arrived(QWidget* widget) {
    // While a field is being left, a box of its own takes the keyboard and gives it back: that is no other
    // move.
    if (binder_.parted() || binder_.following() || moving_) return;
    WidgetView* view = binder_.view_of(widget);
    if (!view || !view->control().takes_focus()) return;
    const int turns = ModalTurn::count();
    moving_ = true;
    if (!view->control().has_focus()) view->control().enter();
    moving_ = false;
    if (binder_.parted()) return;
    if (ModalTurn::count() != turns) {
        interrupted_ = true;
        // The press that has moved the focus is delivered next, before any posted call.
        QMetaObject::invokeMethod(
            &binder_, [this] { interrupted_ = false; }, Qt::QueuedConnection);
    }
    show(Qt::OtherFocusReason);
}

void FocusKeeper::settle_soon() {
    if (settling_) return;
    settling_ = true;
    QMetaObject::invokeMethod(
        &binder_, [this] { settle(); }, Qt::QueuedConnection);
}

void FocusKeeper::settle() {
    settling_ = false;
    if (binder_.parted()) return;
    QWidget* has_it = QApplication::focusWidget();
    const QWidget& window = binder_.window();
    const bool here = !has_it || has_it == &window || window.isAncestorOf(has_it);
    if (!here) return;
    const Control* wanted = binder_.form().focus();
    if (wanted && wanted->reachable()) {
        const WidgetView* view = binder_.view_of(*wanted);
        if (view && view->widget() && view->widget() != has_it && !view->widget()->isAncestorOf(has_it)) {
            show(Qt::OtherFocusReason);
        }
    } else if (has_it) {
        arrived(has_it);
    }
}

bool FocusKeeper::swallows_press(QWidget* widget) {
    WidgetView* view = binder_.view_of(widget);
    if (!view || !view->control().takes_focus() || !view->control().reachable()) return false;
    const bool refused = !view->control().has_focus();
    if (!refused && !interrupted_) return false;
    interrupted_ = false;
    if (!refused) view->press_in_its_place();
    return true;
}

} // namespace tarvello::qt
