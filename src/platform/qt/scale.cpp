#include "platform/qt/scale.h"

#include "platform/twips.h"

#include <QFontMetrics>
#include <QWidget>

#include <algorithm>

namespace tarvello::qt {

namespace {

/// How much larger than the usual the font of the desktop is.
double font_scale(const QWidget& widget) {
    constexpr double usual_height = 17;
    return std::max(1.0, QFontMetrics(widget.font()).height() / usual_height);
}

} // namespace

int pixels(const QWidget& widget, int twips) { return qRound(twips * font_scale(widget) / twips_per_dot); }

int twips(const QWidget& widget, int pixels) { return qRound(pixels * twips_per_dot / font_scale(widget)); }

void grow_with_font(QWidget& window) {
    const double scale = font_scale(window);
    const auto grown = [scale](const QSize& size) {
        const auto length = [scale](int pixels) {
            return pixels >= QWIDGETSIZE_MAX ? pixels : qRound(pixels * scale);
        };
        return QSize(length(size.width()), length(size.height()));
    };
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"))) continue;
        widget->setMaximumSize(grown(widget->maximumSize()));
        widget->setMinimumSize(grown(widget->minimumSize()));
    }
}

} // namespace tarvello::qt
