#include "platform/qt/windows.h"

#include "failure.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/modal_turns.h"
#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cstdlib>

namespace tarvello::qt {

namespace {

/// The one window without a frame.
constexpr const char* splash = "frmSplash";
constexpr const char* main_window = "MDIForm1";

/// The largest size on its screen, under a title bar.
QSize most_of(const QWidget& window) {
    const QScreen* screen = window.screen();
    if (!screen) return {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    return screen->availableSize() - QSize(0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight));
}

} // namespace

ActiveAgain::ActiveAgain() : window_(QApplication::activeWindow()) {}

ActiveAgain::~ActiveAgain() {
    if (!window_ || !window_->isVisible()) return;
    const QWidget* modal = QApplication::activeModalWidget(); // another one may still lie above
    if (!modal || modal == window_) window_->activateWindow();
}

QtWindows::QtWindows(const RegionalSettings& regional) : regional_(regional) {
    QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (!now) return;
        // A window in the multi-document area lies inside the main window, which was opened before it.
        for (auto open = open_.rbegin(); open != open_.rend(); ++open) {
            if (open->root == now || open->root->isAncestorOf(now)) return open->binder->focus_arrived(now);
        }
    });
}

QtWindows::~QtWindows() { clear(); }

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

WindowBinder* QtWindows::binder(const Form& form) const {
    const Open* open = find(form);
    return open ? open->binder.get() : nullptr;
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
    put_in_frame(open, std::move(root), modal);
    // What has never been shown tells nobody that the words it was given take more room.
    for (QWidget* widget : open.root->findChildren<QWidget*>()) widget->updateGeometry();
    for (QLayout* layout : open.root->findChildren<QLayout*>()) layout->invalidate();
    open.frame->installEventFilter(this);
    open.binder->on_size = [this, &open] { size_frame(open); };
    size_frame(open);
    return open;
}

void QtWindows::put_in_frame(Open& open, std::unique_ptr<QWidget> root, bool modal) {
    if (auto* main = qobject_cast<QMainWindow*>(root.get())) {
        main_ = main;
        open.frame = root.release();
        if (auto* ground = main->findChild<QMdiArea*>(QStringLiteral("ui_mdi"))) {
            ground->setBackground(main->palette().color(QPalette::Window).darker(108));
        }
        return;
    }
    auto* area = main_ && !modal ? main_->findChild<QMdiArea*>(QStringLiteral("ui_mdi")) : nullptr;
    if (area && !qobject_cast<QDialog*>(root.get())) {
        auto* sub = new QMdiSubWindow;
        sub->setWidget(root.release());
        sub->setAttribute(Qt::WA_DeleteOnClose, false);
        area->addSubWindow(sub, Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                    Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
        open.frame = sub;
        return;
    }
    if (open.form->name() == splash) {
        root->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
        if (const QScreen* screen = root->screen()) {
            root->adjustSize();
            root->move(screen->availableGeometry().center() - root->rect().center());
        }
    } else {
        root->setParent(parent_of_dialogs(), Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                                 Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        if (modal) root->setWindowModality(Qt::ApplicationModal);
    }
    open.frame = root.release();
}

void QtWindows::size_frame(Open& open) {
    QWidget& frame = *open.frame;
    auto* sub = qobject_cast<QMdiSubWindow*>(&frame);
    QSize size(pixels(frame, open.form->width()), pixels(frame, open.form->height()));
    // Before a window is shown its layouts do not hear of texts that have come since they were last asked.
    for (QLayout* layout : frame.findChildren<QLayout*>()) layout->invalidate();
    for (QWidget* widget : frame.findChildren<QWidget*>()) widget->updateGeometry();
    const bool free = size.isEmpty();
    if (free) size = frame.sizeHint();
    for (const QScrollArea* area : open.root->findChildren<QScrollArea*>()) {
        if (!area->widget() || !area->widgetResizable()) continue;
        const QSize edges = 2 * QSize(area->frameWidth(), area->frameWidth());
        // What can be scrolled asks for less room than it would like.
        if (free) size += (area->widget()->sizeHint() + edges - area->sizeHint()).expandedTo({0, 0});
        // A bar across, if it must come, brings none along.
        const int bar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const QMargins around = open.root->layout()->contentsMargins();
        const int least = area->widget()->minimumSizeHint().width() + edges.width() + around.left() +
                          around.right() + frame.sizeHint().width() - open.root->sizeHint().width();
        size.rwidth() = free ? size.width() + bar : std::max(size.width(), least + bar);
    }
    if (sub) make_room(*sub, size);
    if (!sub) size = size.boundedTo(most_of(frame));
    open.sized = false;
    frame.resize(size);
    open.sized = true;
}

void QtWindows::place_frame(Open& open) {
    const auto* area = main_ ? main_->findChild<QMdiArea*>(QStringLiteral("ui_mdi")) : nullptr;
    const bool inside = area && qobject_cast<QMdiSubWindow*>(open.frame);
    if (open.form->at_top_left()) {
        open.frame->move(inside || !area ? QPoint(0, 0) : area->mapToGlobal(QPoint(0, 0)));
    } else if (inside) {
        const QRect room = area->viewport()->rect();
        const QSize spare = (room.size() - open.frame->size()).expandedTo({0, 0});
        const QPoint wanted = open.root->property("ui_centred").toBool()
                                  ? room.center() - open.frame->rect().center()
                                  : open.frame->pos();
        // As far as it has room, the window lies inside the area, which need not scroll then.
        open.frame->move(std::clamp(wanted.x(), 0, spare.width()), std::clamp(wanted.y(), 0, spare.height()));
    }
}

void QtWindows::make_room(QMdiSubWindow& sub, QSize& size) {
    const QMdiArea* area = sub.mdiArea();
    if (!area || !main_ || !main_->isVisible() || !main_->screen()) return;
    size = size.expandedTo(sub.minimumSizeHint());
    const QSize missing = (size - area->viewport()->size()).expandedTo({0, 0});
    const QSize around = main_->frameGeometry().size() - main_->size();
    const QSize most = main_->screen()->availableSize() - around;
    if (!missing.isNull() && !main_->isMaximized() && !main_->isFullScreen()) {
        main_->resize((main_->size() + missing).boundedTo(most.expandedTo(main_->size())));
        main_->layout()->activate(); // the area has its new size now
    }
    // Below its least size it would cut off what it shows: then the area scrolls. A window that has not been
    // shown yet leaves its content out of that size.
    const QWidget& content = *sub.widget();
    const QSize frame = sub.sizeHint() - content.sizeHint();
    const QSize least = sub.minimumSizeHint().expandedTo(content.minimumSizeHint() + frame);
    size = size.boundedTo(area->viewport()->size()).expandedTo(least);
}

void QtWindows::bring_up(Open& open) {
    QWidget& frame = *open.frame;
    const auto alive = open.form;
    const bool first_time = !frame.isVisible();
    if (first_time) place_frame(open);
    frame.show();
    if (frame.isMinimized()) frame.showNormal();
    if (auto* sub = qobject_cast<QMdiSubWindow*>(&frame)) {
        if (first_time) place_frame(open); // the area has put it where it likes
        if (QMdiArea* area = sub->mdiArea()) area->setActiveSubWindow(sub);
    } else {
        frame.raise();
        frame.activateWindow();
    }
    open.root->show();
    if (WindowBinder* shown = binder(*alive)) shown->show_first_focus();
}

void QtWindows::show(Form& form) {
    Open* known = find(form);
    if (!known && !main_ && form.name() != splash && form.name() != main_window) {
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
    destroy_closed();
}

void QtWindows::close(Form& form) {
    std::erase_if(waiting_, [&](const auto& it) { return it.get() == &form; });
    for (auto it = open_.begin(); it != open_.end(); ++it) {
        if (it->form.get() != &form) continue;
        it->binder->part();
        it->frame->removeEventFilter(this);
        it->frame->hide();
        if (it->frame == main_) main_ = nullptr;
        for (QEventLoop* loop : it->waiting) loop->quit();
        it->waiting.clear();
        closed_.splice(closed_.end(), open_, it);
        QMetaObject::invokeMethod(
            this, [this] { destroy_closed(); }, Qt::QueuedConnection);
        return;
    }
}

void QtWindows::destroy_closed() {
    // Under a modal window, handlers of the windows below it are still running. A posted call of this
    // function runs outside of all handlers, and there is one for each window that was closed.
    if (ModalTurn::lasting() || closed_.empty()) return;
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
    const int height = twips(*open.frame, size.height());
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

void QtWindows::quit() {
    ending_ = true;
    // Not QCoreApplication::quit(), which would ask the windows that are left whether they agree.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtWindows::abort() { std::_Exit(EXIT_FAILURE); }

} // namespace tarvello::qt
