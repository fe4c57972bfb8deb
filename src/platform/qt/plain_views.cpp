#include "platform/bars.h"
#include "platform/containers.h"
#include "platform/displays.h"
#include "platform/qt/binder.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/timer.h"

#include <QAction>
#include <QFileInfo>
#include <QFrame>
#include <QGroupBox>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QStatusBar>
#include <QStyleOptionFocusRect>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include <vector>

namespace tarvello::qt {

namespace {

/// A control of which the widget shows no more than what all controls have.
class BareView final : public WidgetView {
public:
    using WidgetView::WidgetView;
};

class FrameView final : public WidgetView {
public:
    FrameView(WindowBinder& binder, Frame& frame, QWidget& widget)
        : WidgetView(binder, frame, widget), frame_(frame), group_(qobject_cast<QGroupBox*>(&widget)) {}

    void show_all() override {
        WidgetView::show_all();
        if (!frame_.caption().empty()) show(Aspect::caption); // else the words of the look stay
        if (frame_.height() > 0) show(Aspect::size);
    }

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

/// A label, or a picture: both can be commands of their own, which the mouse and the keyboard press.
class LabelView : public WidgetView {
public:
    LabelView(WindowBinder& binder, Control& control, QLabel& label)
        : WidgetView(binder, control, label), label_(label) {
        label_.setTextFormat(Qt::PlainText);
        if (control.takes_focus()) label_.setCursor(Qt::PointingHandCursor);
    }

    bool key_pressed(QKeyEvent& event) override {
        const int code = key_code(event);
        if (code != keys::enter && code != ' ') return false;
        click();
        return true;
    }

    bool other_event(QObject&, QEvent& event) override {
        if (!control().takes_focus()) return false;
        switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            down_ = true;
            return false;
        case QEvent::MouseButtonRelease: {
            const auto& release = static_cast<QMouseEvent&>(event);
            const bool clicked = down_ && release.button() == Qt::LeftButton &&
                                 label_.rect().contains(release.position().toPoint());
            down_ = false;
            if (clicked) click();
            return clicked;
        }
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            label_.update();
            return false;
        case QEvent::Paint:
            return paint(event);
        default:
            return false;
        }
    }

    void press_in_its_place() override { click(); }

protected:
    virtual void click() = 0;
    QLabel& label() const { return label_; }

private:
    /// A label does not show by itself that it has the focus.
    bool paint(QEvent& event) {
        if (!label_.hasFocus()) return false;
        static_cast<QObject&>(label_).event(&event);
        QPainter painter(&label_);
        QStyleOptionFocusRect option;
        option.initFrom(&label_);
        label_.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, &label_);
        return true;
    }

    QLabel& label_;
    bool down_ = false;
};

class TextLabelView final : public LabelView {
public:
    TextLabelView(WindowBinder& binder, Label& control, QLabel& label)
        : LabelView(binder, control, label), control_(control) {}

    void show_all() override {
        LabelView::show_all();
        if (!control_.caption().empty()) show(Aspect::caption); // else the words of the look stay
    }

protected:
    void click() override { control_.click(); }

    void show(Aspect aspect) override {
        if (aspect == Aspect::caption) return label().setText(to_qt(control_.caption()));
        if (aspect == Aspect::look) {
            QFont font = label().font();
            font.setUnderline(control_.underline());
            label().setFont(font);
        }
        LabelView::show(aspect);
    }

private:
    Label& control_;
};

class PictureView final : public LabelView {
public:
    PictureView(WindowBinder& binder, Picture& control, QLabel& label)
        : LabelView(binder, control, label), control_(control) {}

    bool other_event(QObject& watched, QEvent& event) override {
        if (event.type() == QEvent::Resize) draw();
        return LabelView::other_event(watched, event);
    }

    void show_all() override {
        LabelView::show_all();
        show(Aspect::size);
    }

protected:
    void click() override { control_.click(); }

    void show(Aspect aspect) override {
        LabelView::show(aspect);
        if (aspect == Aspect::size && control_.width() > 0 && control_.height() > 0) {
            label().setFixedSize(scaled(control_.width()), scaled(control_.height()));
        }
        if (aspect != Aspect::look) return;
        drawn_ = {};
        draw();
    }

private:
    int scaled(float twips) const { return pixels(label(), qRound(twips)); }

    /// Drawn at the size of the label, so that it is sharp on every screen.
    void draw() {
        const QSize size = label().contentsRect().size();
        if (size == drawn_ || size.isEmpty()) return;
        drawn_ = size;
        if (control_.width() > 0) return label().setPixmap(drawn_in_area(size));
        label().setPixmap(picture_icon(control_.picture()).pixmap(size, label().devicePixelRatioF()));
    }

    /// A picture of the user's in an area that the form measures: at its own size from the corner, or where
    /// the form has painted it.
    QPixmap drawn_in_area(const QSize& size) const {
        const qreal ratio = label().devicePixelRatioF();
        QPixmap area(size * ratio);
        area.setDevicePixelRatio(ratio);
        area.fill(Qt::transparent);
        const QString file = picture_file(control_.picture());
        const QImage image = file.isEmpty() ? QImage() : QImage(file);
        if (image.isNull()) return area;
        constexpr float twips_to_dot = 15;
        const PictureBox box = control_.painted().value_or(
            PictureBox{0, 0, image.width() * twips_to_dot, image.height() * twips_to_dot});
        const qreal scale = size.width() / qreal(control_.width());
        QPainter painter(&area);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.scale(scale, scale);
        painter.drawImage(QRectF(box.left, box.top, box.width, box.height), image);
        return area;
    }

    Picture& control_;
    QSize drawn_;
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
        : WidgetView(binder, control, bar), control_(control), bar_(bar) {
        bar_.setRange(0, 100);
    }
    void show_all() override {
        WidgetView::show_all();
        show(Aspect::value);
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
        : WidgetView(binder, control, bar), control_(control), bar_(bar) {}
    void show_all() override {
        WidgetView::show_all();
        show(Aspect::text);
    }

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
        : WidgetView(binder, control, tabs), control_(control), tabs_(tabs) {
        QObject::connect(&tabs_, &QTabWidget::currentChanged, &binder, [this](int tab) { chosen(tab); });
    }
    void show_all() override {
        WidgetView::show_all();
        show(Aspect::value);
    }

protected:
    void show(Aspect aspect) override {
        if (aspect == Aspect::value) return tabs_.setCurrentIndex(control_.tab());
        WidgetView::show(aspect);
    }

private:
    void chosen(int tab) {
        if (binder().following() || binder().parted()) return;
        control_.choose(tab);
        if (binder().parted()) return;
        const WindowBinder::Following following(binder());
        show(Aspect::value);
    }

    TabControl& control_;
    QTabWidget& tabs_;
};

/// An entry of a menu, or a whole menu.
class MenuView final : public WidgetView {
public:
    MenuView(WindowBinder& binder, MenuItem& item, QObject& object, QAction& action)
        : WidgetView(binder, item, object), item_(item), action_(action) {
        QObject::connect(&action_, &QAction::triggered, &binder, [this] { item_.click(); });
    }
    void show_all() override {
        if (!item_.caption().empty()) show(Aspect::caption); // else the words of the look stay
        for (const Aspect aspect : {Aspect::enabled, Aspect::visible}) show(aspect);
    }

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::caption:
            action_.setText(to_qt(item_.caption()));
            break;
        case Aspect::enabled:
            action_.setEnabled(item_.enabled());
            break;
        case Aspect::visible:
            action_.setVisible(item_.visible());
            break;
        default:
            break;
        }
    }

private:
    MenuItem& item_;
    QAction& action_;
};

class TimerView final : public WidgetView {
public:
    TimerView(WindowBinder& binder, Timer& control, QTimer& timer)
        : WidgetView(binder, control, timer), control_(control), timer_(timer) {
        timer_.setInterval(control_.interval_ms());
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &binder, [this] { tick(); });
    }
    void show_all() override { show(Aspect::enabled); }
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

std::unique_ptr<WidgetView> make_plain_view(WindowBinder& binder, Control& control, QObject& object) {
    if (auto* item = dynamic_cast<MenuItem*>(&control)) {
        if (auto* menu = qobject_cast<QMenu*>(&object)) {
            return std::make_unique<MenuView>(binder, *item, object, *menu->menuAction());
        }
        auto* action = qobject_cast<QAction*>(&object);
        return action ? std::make_unique<MenuView>(binder, *item, object, *action) : nullptr;
    }
    if (auto* timer = dynamic_cast<Timer*>(&control)) {
        auto* clock = qobject_cast<QTimer*>(&object);
        return clock ? std::make_unique<TimerView>(binder, *timer, *clock) : nullptr;
    }
    auto* widget = qobject_cast<QWidget*>(&object);
    if (!widget) return nullptr;
    if (auto* label = dynamic_cast<Label*>(&control)) {
        auto* text = qobject_cast<QLabel*>(widget);
        return text ? std::make_unique<TextLabelView>(binder, *label, *text) : nullptr;
    }
    if (auto* picture = dynamic_cast<Picture*>(&control)) {
        auto* image = qobject_cast<QLabel*>(widget);
        return image ? std::make_unique<PictureView>(binder, *picture, *image) : nullptr;
    }
    if (auto* bar = dynamic_cast<ProgressBar*>(&control)) {
        auto* progress = qobject_cast<QProgressBar*>(widget);
        return progress ? std::make_unique<ProgressView>(binder, *bar, *progress) : nullptr;
    }
    if (auto* bar = dynamic_cast<StatusBar*>(&control)) {
        auto* status = qobject_cast<QStatusBar*>(widget);
        return status ? std::make_unique<StatusView>(binder, *bar, *status) : nullptr;
    }
    if (auto* tab = dynamic_cast<TabControl*>(&control)) {
        auto* tabs = qobject_cast<QTabWidget*>(widget);
        return tabs ? std::make_unique<TabView>(binder, *tab, *tabs) : nullptr;
    }
    if (dynamic_cast<Shape*>(&control)) return std::make_unique<ShapeView>(binder, control, *widget);
    if (auto* frame = dynamic_cast<Frame*>(&control))
        return std::make_unique<FrameView>(binder, *frame, *widget);
    if (dynamic_cast<Toolbar*>(&control)) return std::make_unique<BareView>(binder, control, *widget);
    return nullptr;
}

} // namespace tarvello::qt
