#include "platform/containers.h"
#include "platform/displays.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/scale.h"
#include "platform/qt/views.h"
#include "platform/timer.h"

#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>

#include <vector>

namespace tarvello::qt {

namespace {

class FrameView final : public WidgetView {
public:
    FrameView(WindowBinder& binder, Frame& frame, QWidget& widget)
        : WidgetView(binder, frame, widget, {Aspect::size}), frame_(frame),
          group_(qobject_cast<QGroupBox*>(&widget)) {}

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::caption:
            if (group_) group_->setTitle(to_qt(frame_.caption()));
            break;
        case Aspect::size:
            if (frame_.height() > 0) widget()->setFixedHeight(pixels(*widget(), frame_.height()));
            break;
        default:
            WidgetView::show(aspect);
        }
    }

private:
    Frame& frame_;
    QGroupBox* group_;
};

/// The mark behind a field: a rounded area, a little larger than the field that lies on it, or a bar beside
/// it.
class ShapeView final : public WidgetView {
public:
    ShapeView(WindowBinder& binder, Control& control, QWidget& widget) : WidgetView(binder, control, widget) {
        // A mark that comes and goes must not move what stands around it.
        QSizePolicy policy = widget.sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget.setSizePolicy(policy);
    }

    bool other_event(QObject& watched, QEvent& event) override {
        if (event.type() != QEvent::Paint || &watched != widget()) return false;
        QPainter painter(widget());
        painter.setRenderHint(QPainter::Antialiasing);
        QColor edge = widget()->palette().color(QPalette::Highlight);
        QColor ground = edge;
        edge.setAlpha(150);
        ground.setAlpha(60);
        if (control().back_color()) ground = widget()->palette().color(QPalette::Window);
        painter.setPen(edge);
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(widget()->rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        return true;
    }
};

class ProgressView final : public WidgetView {
public:
    ProgressView(WindowBinder& binder, ProgressBar& control, QProgressBar& bar)
        : WidgetView(binder, control, bar, {Aspect::value}), control_(control), bar_(bar) {
        bar_.setRange(0, 100);
    }

protected:
    void show(Aspect aspect) override {
        if (aspect == Aspect::value) return bar_.setValue(control_.value());
        WidgetView::show(aspect);
    }

private:
    ProgressBar& control_;
    QProgressBar& bar_;
};

class StatusView final : public WidgetView {
public:
    StatusView(WindowBinder& binder, StatusBar& control, QStatusBar& bar)
        : WidgetView(binder, control, bar, {Aspect::text}), control_(control), bar_(bar) {}

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::text) return WidgetView::show(aspect);
        for (std::size_t place = 1; place <= control_.panels(); ++place) {
            if (place > panels_.size()) {
                auto* panel = new QLabel(&bar_);
                panel->setTextFormat(Qt::PlainText);
                bar_.addWidget(panel);
                panels_.push_back(panel);
            }
            panels_[place - 1]->setText(to_qt(control_.panel(place)));
        }
    }

private:
    StatusBar& control_;
    QStatusBar& bar_;
    std::vector<QLabel*> panels_;
};

class TabView final : public WidgetView {
public:
    TabView(WindowBinder& binder, TabControl& control, QTabWidget& tabs)
        : WidgetView(binder, control, tabs, {Aspect::value}), control_(control), tabs_(tabs) {
        QObject::connect(&tabs_, &QTabWidget::currentChanged, &binder,
                         [this](int tab) { by_user([&] { control_.choose(tab); }, Aspect::value); });
    }

protected:
    void show(Aspect aspect) override {
        if (aspect == Aspect::value) return tabs_.setCurrentIndex(control_.tab());
        WidgetView::show(aspect);
    }

private:
    TabControl& control_;
    QTabWidget& tabs_;
};

class TimerView final : public WidgetView {
public:
    TimerView(WindowBinder& binder, Timer& control, QTimer& timer)
        : WidgetView(binder, control, timer), control_(control), timer_(timer) {
        timer_.setInterval(control_.interval_ms());
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &binder, [this] { tick(); });
    }
    void part() override { timer_.stop(); }

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::enabled) return;
        if (control_.enabled()) timer_.start();
        if (!control_.enabled()) timer_.stop();
    }

private:
    void tick() {
        if (ticking_ || binder().parted())
            return; // a handler that shows a window is not entered again under it
        ticking_ = true;
        control_.tick();
        ticking_ = false;
    }

    Timer& control_;
    QTimer& timer_;
    bool ticking_ = false;
};

} // namespace

std::unique_ptr<WidgetView> make_plain_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView makers[] = {
        make_if_fits<FrameView, Frame, QWidget>,
        make_if_fits<ShapeView, Shape, QWidget>,
        make_if_fits<ProgressView, ProgressBar, QProgressBar>,
        make_if_fits<StatusView, StatusBar, QStatusBar>,
        make_if_fits<TabView, TabControl, QTabWidget>,
        make_if_fits<TimerView, Timer, QTimer>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
