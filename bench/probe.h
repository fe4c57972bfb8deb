#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

namespace tarvello::bench {

/// Ends the process as soon as a window of its own has been painted: what a process costs up to its first
/// picture.
class EndOnFirstPicture : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint || !static_cast<QWidget*>(watched)->isWindow()) return false;
        qApp->removeEventFilter(this);
        QCoreApplication::sendEvent(watched, event);
        std::_Exit(0);
    }
};

} // namespace tarvello::bench
