#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

namespace tarvello::qt {

/// A time in which the user is busy with a box, a dialog or a modal window, or in which the program waits:
/// events are handled inside of the handler that opened it.
class ModalTurn {
public:
    ModalTurn() {
        ++count_;
        ++depth_;
    }
    ~ModalTurn() {
        if (--depth_ == 0 && on_last_end) on_last_end();
    }
    ModalTurn(const ModalTurn&) = delete;
    ModalTurn& operator=(const ModalTurn&) = delete;

    /// How many there have been since the start. Whoever runs a piece of the program in the midst of an event
    /// compares the number before and after: another one means that a mouse button which was down may be up
    /// by now.
    static int count() { return count_; }
    /// True while one lasts: handlers are running below.
    static bool lasting() { return depth_ > 0; }
    /// Called when none lasts any more, in the midst of the handler that had opened it.
    inline static std::function<void()> on_last_end;

private:
    inline static int count_ = 0;
    inline static int depth_ = 0;
};

/// Gives the keyboard back, at its end, to the window that has it now: not every desktop does so by itself
/// when the window above goes.
class ActiveAgain {
public:
    ActiveAgain();
    ~ActiveAgain();
    ActiveAgain(const ActiveAgain&) = delete;
    ActiveAgain& operator=(const ActiveAgain&) = delete;

private:
    QPointer<QWidget> window_;
};

} // namespace tarvello::qt
