#pragma once

#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

class QMouseEvent;

namespace tarvello::qt {

/// Tells the second press of a double click from a press of its own. Where the first press has changed what
/// lies under the pointer, the user has not seen it yet: what comes so soon after is no press on that.
class DoublePress {
public:
    /// To be told of every press that reaches a widget.
    /// @return true if this one is the second of two and meets another button than the first, or the same one
    /// with another task
    bool is_on_another(QWidget& widget, const QMouseEvent& press);

private:
    QPointer<QWidget> widget_;
    QString words_;
    QPoint place_; // on the screen
    unsigned long long time_ = 0;
};

} // namespace tarvello::qt
