#include "platform/displays.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/scale.h"
#include "platform/qt/views.h"
#include "platform/twips.h"

#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace tarvello::qt {

namespace {

/// A label, or a picture: both can be commands of their own, which the mouse and the keyboard press.
class LabelView : public WidgetView {
public:
    LabelView(WindowBinder& binder, Control& control, QLabel& label, std::initializer_list<Aspect> own = {})
        : WidgetView(binder, control, label, own), label_(label) {
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
        : LabelView(binder, control, label, {Aspect::size}), control_(control) {}

    bool other_event(QObject& watched, QEvent& event) override {
        if (event.type() == QEvent::Resize) draw();
        return LabelView::other_event(watched, event);
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
        const auto& painted = control_.painted();
        const QRectF place = painted ? QRectF(painted->left, painted->top, painted->width, painted->height)
                                     : QRectF(QPointF(), QSizeF(image.size()) * twips_per_dot);
        const qreal scale = size.width() / qreal(control_.width());
        QPainter painter(&area);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.scale(scale, scale);
        painter.drawImage(place, image);
        return area;
    }

    Picture& control_;
    QSize drawn_;
};

} // namespace

std::unique_ptr<WidgetView> make_label_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView makers[] = {
        make_if_fits<TextLabelView, Label, QLabel>,
        make_if_fits<PictureView, Picture, QLabel>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
