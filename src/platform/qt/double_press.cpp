#include "platform/qt/double_press.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QStyleHints>

namespace tarvello::qt {

bool DoublePress::is_on_another(QWidget& widget, const QMouseEvent& press) {
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const QString words = button ? button->text() : QString();
    const QPoint place = press.globalPosition().toPoint();
    // When the presses were made counts, not when the program came to them.
    const auto soon = static_cast<unsigned long long>(QApplication::doubleClickInterval());
    const bool second =
        time_ != 0 && press.timestamp() - time_ < soon &&
        (place - place_).manhattanLength() <= QApplication::styleHints()->mouseDoubleClickDistance();
    if (second && button && (widget_ != &widget || words_ != words)) return true;
    widget_ = &widget;
    words_ = words;
    place_ = place;
    time_ = press.timestamp();
    return false;
}

} // namespace tarvello::qt
