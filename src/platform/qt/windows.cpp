#include "platform/qt/windows.h"

#include "failure.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/modal_turns.h"
#include "platform/qt/scale.h"
#include "platform/qt/window_frames.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

#include <algorithm>
#include <cstdlib>

namespace tarvello::qt {

QtWindows::QtWindows(const RegionalSettings& regional) : regional_(regional) {
    QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (!now) return;
        // A window in the multi-document area lies inside the main window, which was opened before it.
        for (auto open = open_.rbegin(); open != open_.rend(); ++open) {
            if (open->root == now || open->root->isAncestorOf(now)) return open->binder->focus().arrived(now);
        }
    });
    ModalTurn::on_last_end = [this] { destroy_closed_later(); };
}

QtWindows::~QtWindows() {
    ModalTurn::on_last_end = nullptr;
    clear();
}

QtWindows::Open::~Open() {
    binder.reset();
    delete frame.data();
}

void QtWindows::clear() {
    for (auto* list : {&open_, &closed_}) {
        for (Open& open : *list) open.binder->part();
    }
    // Those in the multi-document area go before the main window around them.
    while (!open_.empty()) open_.pop_back();
    closed_.clear();
    waiting_.clear();
    main_ = nullptr;
}

QtWindows::Open* QtWindows::find(const Form& form) {
    for (Open& open : open_) {
        if (open.form.get() == &form) return &open;
    }
    return nullptr;
}

const QtWindows::Open* QtWindows::find(const Form& form) const {
    return const_cast<QtWindows*>(this)->find(form);
}

QWidget* QtWindows::window(const Form& form) const {
    const Open* open = find(form);
    return open ? open->root : nullptr;
}

QWidget* QtWindows::parent_of_dialogs() const {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (main_ && main_->isVisible()) return main_;
    return nullptr;
}

// Showing

QtWindows::Open& QtWindows::open(Form& form, bool modal) {
    auto root = make_window(form.name());
    if (!root) throw Failure(0, "Finestre", "La finestra " + form.name() + " non esiste.");
    Open& open = open_.emplace_back();
    open.form = form.shared_from_this();
    open.root = root.get();
    open.binder = std::make_unique<WindowBinder>(open.form, *open.root, regional_);
    for (const std::string& name : open.binder->missing()) {
        qWarning("%s has no widget for %s", form.name().c_str(), name.c_str());
    }
    if (auto* main = qobject_cast<QMainWindow*>(open.root)) main_ = main;
    open.frame = put_in_frame(std::move(root), form, modal, area(), parent_of_dialogs());
    open.frame->installEventFilter(this);
    open.binder->on_size = [&open] { open.fit(); };
    open.fit();
    return open;
}

void QtWindows::Open::fit() {
    sized = false;
    size_frame(*frame, *root, *form);
    sized = true;
}

QMdiArea* QtWindows::area() const { return main_ ? area_of(*main_) : nullptr; }

void QtWindows::bring_up(Open& open) {
    QWidget& frame = *open.frame;
    const auto alive = open.form;
    const bool first_time = !frame.isVisible();
    if (first_time) {
        place_frame(frame, *open.root, *open.form, area());
        frame.show();
    }
    if (frame.isMinimized()) frame.showNormal();
    if (auto* sub = qobject_cast<QMdiSubWindow*>(&frame)) {
        if (first_time)
            place_frame(frame, *open.root, *open.form, area()); // the area has put it where it likes
        if (QMdiArea* around = sub->mdiArea()) around->setActiveSubWindow(sub);
    } else {
        frame.raise();
        frame.activateWindow();
    }
    // Newer toolkits send the events of a dialog's showing again if it is shown twice.
    if (open.root != &frame) open.root->show();
    if (Open* still = find(*alive)) still->binder->focus().show_first();
}

void QtWindows::show(Form& form) {
    Open* known = find(form);
    if (!known && !main_ && form.name() != splash_form && form.name() != main_form) {
        if (!awaits_main(form)) waiting_.push_back(form.shared_from_this());
        return;
    }
    bring_up(known ? *known : open(form, false));
    if (waiting_.empty()) return;
    // When the main window has its size, and its area with it.
    QMetaObject::invokeMethod(
        this, [this] { show_waiting(); }, Qt::QueuedConnection);
}

void QtWindows::show_waiting() {
    while (main_ && !waiting_.empty()) {
        const auto next = waiting_.front();
        waiting_.pop_front();
        bring_up(open(*next, false));
    }
}

bool QtWindows::awaits_main(const Form& form) const {
    return std::any_of(waiting_.begin(), waiting_.end(), [&](const auto& it) { return it.get() == &form; });
}

void QtWindows::show_modal(Form& form) {
    const auto alive = form.shared_from_this();
    Open* known = find(form);
    if (known) make_modal(*known);
    Open& shown = known ? *known : open(form, true);
    QEventLoop loop;
    shown.waiting.push_back(&loop);
    bring_up(shown);
    if (find(form)) { // it may have been unloaded by the events of its own showing
        const ModalTurn turn;
        const ActiveAgain active_again;
        loop.exec();
    }
    if (Open* still = find(form)) std::erase(still->waiting, &loop); // the program is ending
}

void QtWindows::make_modal(Open& open) {
    if (open.frame->isModal() || open.frame == main_) return;
    if (auto* sub = qobject_cast<QMdiSubWindow*>(open.frame.data())) {
        // In the area it could stop nobody: it gets a frame of its own.
        sub->removeEventFilter(this);
        sub->setWidget(nullptr);
        sub->hide();
        sub->deleteLater();
        open.frame =
            put_in_frame(std::unique_ptr<QWidget>(open.root), *open.form, true, area(), parent_of_dialogs());
        open.frame->installEventFilter(this);
        open.fit();
    } else {
        open.frame->hide(); // shown anew it is what it has become
        open.frame->setWindowModality(Qt::ApplicationModal);
    }
}

void QtWindows::close(Form& form) {
    std::erase_if(waiting_, [&](const auto& it) { return it.get() == &form; });
    const auto closed =
        std::find_if(open_.begin(), open_.end(), [&](const Open& open) { return open.form.get() == &form; });
    if (closed == open_.end()) return;
    if (closed->frame == main_) {
        // With it go the windows that are left in its area: their forms have none from now on.
        for (auto it = open_.begin(); it != open_.end();) {
            const auto open = it++;
            if (main_->isAncestorOf(open->frame)) take_off(open);
        }
        main_ = nullptr;
    }
    take_off(closed);
    destroy_closed_later();
}

void QtWindows::take_off(std::list<Open>::iterator open) {
    open->binder->part();
    open->frame->removeEventFilter(this);
    open->frame->hide();
    for (QEventLoop* loop : open->waiting) loop->quit();
    open->waiting.clear();
    closed_.splice(closed_.end(), open_, open);
}

void QtWindows::destroy_closed_later() {
    // A posted call runs outside of all handlers, but for those below a modal window or a box: what is left
    // then goes when the last of these has.
    if (closed_.empty()) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!ModalTurn::lasting()) closed_.clear();
        },
        Qt::QueuedConnection);
}

// Events

bool QtWindows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Close && event->type() != QEvent::Resize) return false;
    for (Open& open : open_) {
        if (open.frame != watched) continue;
        if (event->type() == QEvent::Resize) {
            frame_resized(open);
            return false;
        }
        event->ignore(); // the form decides, and takes its window off the screen if it goes
        const auto form = open.form;
        form->close_by_user();
        return true;
    }
    return false;
}

void QtWindows::frame_resized(Open& open) {
    if (!open.sized || !open.frame->isVisible()) return;
    // A window that fills the screen, or a desktop that insists on its size, has the last word.
    if (open.frame->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen))
        return;
    if (open.corrected.isValid() && open.corrected.elapsed() < 500) return;
    const QSize size = open.frame->size();
    if (size.height() >= most_of(*open.frame).height()) return;
    const auto form = open.form;
    const int width = twips(*open.frame, size.width());
    // A form measures its window with the desktop's frame around it.
    const int height = twips(*open.frame, size.height() + title_bar_of(*open.frame));
    form->host().run([&] { FormLife::resize(*form, width, height); });
    if (Open* still = find(*form); still && still->frame && still->frame->size() != size) {
        still->corrected.start();
        still->frame->setMinimumHeight(still->frame->height());
    }
}

// The rest

void QtWindows::set_pointer(Pointer pointer) {
    const bool hourglass = pointer == Pointer::hourglass;
    if (hourglass == hourglass_) return;
    hourglass_ = hourglass;
    if (hourglass) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void QtWindows::repaint() {
    for (Open& open : open_) open.binder->flush();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    for (Open& open : open_) {
        if (open.frame->isWindow() && open.frame->isVisible()) {
            QCoreApplication::sendPostedEvents(open.frame, QEvent::UpdateRequest);
        }
    }
}

void QtWindows::pause(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    const ModalTurn turn;
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void QtWindows::stop_waiting() {
    deserted_ = true;
    // Their own event loops end when control comes back to them. The windows of forms go with their forms.
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(widget);
        const auto is_its = [dialog](const Open& open) { return open.frame == dialog; };
        if (dialog && dialog->isVisible() && std::none_of(open_.begin(), open_.end(), is_its))
            dialog->reject();
    }
}

void QtWindows::quit() {
    ending_ = true;
    // Not QCoreApplication::quit(), which would ask the windows that are left whether they agree.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtWindows::abort(int exit_status) { std::_Exit(exit_status); }

} // namespace tarvello::qt
