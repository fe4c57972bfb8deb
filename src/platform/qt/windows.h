#pragma once

#include "platform/platform.h"
#include "platform/qt/binder.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <vector>

class QEventLoop;
class QMainWindow;
class QMdiArea;

namespace tarvello::qt {

/// The windows on the screen. The main window holds a multi-document area, in which the other windows live
/// that are shown and not waited for; those that are waited for are dialogs of their own. What is shown
/// before there is a main window, and is not the splash, comes up in the area when that window does.
class QtWindows final : public QObject, public Windows {
public:
    explicit QtWindows(const RegionalSettings& regional);
    ~QtWindows() override;

    // Windows
    void show(Form& form) override;
    void show_modal(Form& form) override;
    void close(Form& form) override;
    void set_pointer(Pointer pointer) override;
    void repaint() override;
    void pause(int milliseconds) override;
    void quit() override;
    /// The process is about to end: what still runs should not begin anything long.
    bool ending() const { return ending_ || deserted_; }
    void stop_waiting() override;
    bool deserted() const override { return deserted_; }
    [[noreturn]] void abort(int exit_status) override;

    /// The window of a form that is on the screen, without what the desktop or the multi-document area puts
    /// around it; null if there is none.
    QWidget* window(const Form& form) const;
    /// What a box or a dialog that comes up now belongs to.
    QWidget* parent_of_dialogs() const;
    /// Takes all windows off the screen, without a word to their forms.
    void clear();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// A form on the screen. Destroyed only when no handler is running any more.
    struct Open {
        std::shared_ptr<Form> form;
        QPointer<QWidget>
            frame; ///< the window itself, or what stands around it; owned, and perhaps by a window too
        QWidget* root = nullptr; ///< the window made from the .ui file
        std::unique_ptr<WindowBinder> binder;
        std::vector<QEventLoop*> waiting; ///< calls of show_modal() that have not returned
        bool sized = false;               ///< its size is no longer being set by the program
        QElapsedTimer corrected;          ///< since the form last wanted another size than it was given

        Open() = default;
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open();

        /// Gives the frame the size that the form wants.
        void fit();
    };

    Open& open(Form& form, bool modal);
    Open* find(const Form& form);
    const Open* find(const Form& form) const;
    bool awaits_main(const Form& form) const;
    void show_waiting();
    /// Of the main window; null while there is none.
    QMdiArea* area() const;
    void bring_up(Open& open);
    /// Lets the window of a form that is on the screen stop all others.
    void make_modal(Open& open);
    void frame_resized(Open& open);
    /// Takes a window off the screen and parts it from its form; it is destroyed later.
    void take_off(std::list<Open>::iterator open);
    void destroy_closed_later();

    const RegionalSettings& regional_;
    QMainWindow* main_ = nullptr;
    std::list<Open> open_;
    std::list<Open> closed_;                    // off the screen, but handlers of theirs may still be running
    std::deque<std::shared_ptr<Form>> waiting_; // shown before there was a main window
    bool hourglass_ = false;
    bool ending_ = false;
    bool deserted_ = false;
};

} // namespace tarvello::qt
