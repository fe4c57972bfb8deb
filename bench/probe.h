#pragma once

#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

namespace tarvello::bench {

/// Ends the process when a box comes: nobody sees it here, so nobody would ever press its button.
class EndOnBox : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show) return false;
        QString text;
        if (const auto* box = qobject_cast<QMessageBox*>(watched)) text = box->text();
        if (const auto* dialog = qobject_cast<QFileDialog*>(watched)) text = dialog->windowTitle();
        if (text.isEmpty()) return false;
        std::fprintf(stderr, "A box has come that nobody can answer: %s\n", qPrintable(text));
        std::_Exit(EXIT_FAILURE);
    }
};

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
