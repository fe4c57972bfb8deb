#include "platform/qt/window_frames.h"

#include "platform/qt/scale.h"

#include <QDialog>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>

#include <algorithm>

namespace tarvello::qt {

QMdiArea* area_of(const QWidget& main_window) {
    return main_window.findChild<QMdiArea*>(QStringLiteral("ui_mdi"));
}

// Making

namespace {

QWidget* in_area(std::unique_ptr<QWidget> root, QMdiArea& area) {
    auto* sub = new QMdiSubWindow;
    sub->setWidget(root.release());
    sub->setAttribute(Qt::WA_DeleteOnClose, false);
    area.addSubWindow(sub, Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                               Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    return sub;
}

} // namespace

QWidget* put_in_frame(std::unique_ptr<QWidget> root, const Form& form, bool modal, QMdiArea* area,
                      QWidget* owner) {
    if (qobject_cast<QMainWindow*>(root.get())) {
        if (QMdiArea* ground = area_of(*root)) {
            ground->setBackground(root->palette().color(QPalette::Window).darker(108));
        }
        return root.release();
    }
    if (area && !modal && !qobject_cast<QDialog*>(root.get())) return in_area(std::move(root), *area);
    if (form.name() == splash_form) {
        root->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
        if (const QScreen* screen = root->screen()) {
            root->adjustSize();
            root->move(screen->availableGeometry().center() - root->rect().center());
        }
    } else {
        root->setParent(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        if (modal) root->setWindowModality(Qt::ApplicationModal);
    }
    return root.release();
}

// Sizes

namespace {

/// Before a window is shown its layouts do not hear of texts that have come since they were last asked.
void refresh_layouts(const QWidget& frame) {
    for (QLayout* layout : frame.findChildren<QLayout*>()) layout->invalidate();
    for (QWidget* widget : frame.findChildren<QWidget*>()) widget->updateGeometry();
}

/// The size of a frame that its form and its content want.
QSize wanted_size(const QWidget& frame, const QWidget& root, const Form& form) {
    QSize size(pixels(frame, form.width()), pixels(frame, form.height()));
    const bool free = size.isEmpty();
    if (free) size = frame.sizeHint();
    for (const QScrollArea* area : root.findChildren<QScrollArea*>()) {
        if (!area->widget() || !area->widgetResizable()) continue;
        const QSize edges = 2 * QSize(area->frameWidth(), area->frameWidth());
        // What can be scrolled asks for less room than it would like.
        if (free) size += (area->widget()->sizeHint() + edges - area->sizeHint()).expandedTo({0, 0});
        // A bar across, if it must come, brings none along.
        const int bar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const QMargins around = root.layout()->contentsMargins();
        const int least = area->widget()->minimumSizeHint().width() + edges.width() + around.left() +
                          around.right() + frame.sizeHint().width() - root.sizeHint().width();
        size.rwidth() = free ? size.width() + bar : std::max(size.width(), least + bar);
    }
    return size;
}

/// Lets the main window grow so that a window of that size fits into its area, as far as the screen allows.
/// @return what fits
QSize make_room(const QMdiSubWindow& sub, QSize size) {
    const QMdiArea* area = sub.mdiArea();
    QWidget* const main = area ? area->window() : nullptr;
    if (!main || !main->isVisible() || !main->screen()) return size;
    size = size.expandedTo(sub.minimumSizeHint());
    const QSize missing = (size - area->viewport()->size()).expandedTo({0, 0});
    const QSize around = main->frameGeometry().size() - main->size();
    const QSize most = main->screen()->availableSize() - around;
    if (!missing.isNull() && !main->isMaximized() && !main->isFullScreen()) {
        main->resize((main->size() + missing).boundedTo(most.expandedTo(main->size())));
        main->layout()->activate(); // the area has its new size now
    }
    // Below its least size it would cut off what it shows: then the area scrolls. A window that has not been
    // shown yet leaves its content out of that size.
    const QWidget& content = *sub.widget();
    const QSize frame = sub.sizeHint() - content.sizeHint();
    const QSize least = sub.minimumSizeHint().expandedTo(content.minimumSizeHint() + frame);
    return size.boundedTo(area->viewport()->size()).expandedTo(least);
}

} // namespace

QSize most_of(const QWidget& window) {
    const QScreen* screen = window.screen();
    if (!screen) return {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    return screen->availableSize() - QSize(0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight));
}

int title_bar_of(const QWidget& frame) {
    return frame.isWindow() ? frame.frameGeometry().height() - frame.height() : 0;
}

void size_frame(QWidget& frame, const QWidget& root, const Form& form) {
    refresh_layouts(frame);
    QSize wanted = wanted_size(frame, root, form);
    if (form.height() > 0) wanted.rheight() -= title_bar_of(frame);
    const auto* sub = qobject_cast<QMdiSubWindow*>(&frame);
    frame.resize(sub ? make_room(*sub, wanted) : wanted.boundedTo(most_of(frame)));
}

// Places

void place_frame(QWidget& frame, const QWidget& root, const Form& form, const QMdiArea* area) {
    const bool inside = area && qobject_cast<QMdiSubWindow*>(&frame);
    if (form.at_top_left()) {
        frame.move(inside || !area ? QPoint(0, 0) : area->mapToGlobal(QPoint(0, 0)));
    } else if (inside) {
        const QRect room = area->viewport()->rect();
        const QSize spare = (room.size() - frame.size()).expandedTo({0, 0});
        const QPoint wanted =
            root.property("ui_centred").toBool() ? room.center() - frame.rect().center() : frame.pos();
        // As far as it has room, the window lies inside the area, which need not scroll then.
        frame.move(std::clamp(wanted.x(), 0, spare.width()), std::clamp(wanted.y(), 0, spare.height()));
    }
}

} // namespace tarvello::qt
