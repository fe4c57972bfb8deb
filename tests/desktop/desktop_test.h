#pragma once

#include "platform/qt/qt_platform.h"
#include "program/program.h"
#include "shell/main_window.h"

#include <gtest/gtest.h>

#include <QObject>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTreeView>
#include <QWidget>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvello::testing {

/// What is waited for without fail comes sooner on any machine, however busy: this ends a test that hangs. In
/// ms.
inline constexpr int longest_wait = 100'000;

/// The user in front of the real windows: everything is done with mouse and keyboard events on the widgets,
/// which are found by the names of form and control ("frmClienti", "txtfields_11").
///
/// Boxes, file dialogs and modal windows are expected in advance, in the order in which they come. One that
/// nobody expected fails the test, and so does one that never came.
class DesktopUser : public QObject {
public:
    DesktopUser();
    ~DesktopUser() override;

    /// The next box must have this text, and gets this answer.
    void expect_box(std::string text, Answer answer = Answer::ok);
    /// The next file dialog is answered with this path, or cancelled.
    void expect_file_dialog(std::optional<std::string> path);
    /// The next modal window must be of that form. `acts` is what the user does in it; if it is still open
    /// then, it is closed by its close box.
    void expect_modal(std::string form, std::function<void()> acts = {});
    void expect_none_left();

    /// The window of a form on the screen. Fails the test if there is none; the test goes on with an empty
    /// one, and so it does with a widget that is not there.
    QWidget* window(const std::string& form);
    bool is_shown(const std::string& form);
    QWidget* widget(const std::string& form, const std::string& control);
    template <typename Widget>
    Widget* widget(const std::string& form, const std::string& control) {
        if (auto* found = qobject_cast<Widget*>(widget(form, control))) return found;
        ADD_FAILURE() << form << "." << control << " is another kind of widget";
        return stand_in<Widget>();
    }

    /// Clicks the middle of the widget with the mouse. It must be enabled and in view.
    void click(const std::string& form, const std::string& control);
    void double_click(const std::string& form, const std::string& control, int row);
    void click_row(const std::string& form, const std::string& control, int row);
    /// Clicks the box, selects what stands in it and types. Characters are typed one by one.
    void type(const std::string& form, const std::string& control, const std::string& text);
    /// Types into whatever has the keyboard.
    void type(const std::string& text);
    /// Presses a key where the keyboard is.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Opens the list of a combo box and clicks an item.
    void choose(const std::string& form, const std::string& control, int index);
    /// Chooses an entry of the menu; it must be enabled.
    void choose_menu(const std::string& form, const std::string& entry);
    void move_mouse_over(const std::string& form, const std::string& control);
    /// Presses the close box of a window.
    void close_window(const std::string& form);

    /// What the widget shows: text, caption or state ("1" and "0" for a box that can be ticked).
    std::string shown(const std::string& form, const std::string& control);
    /// Name of the widget that has the keyboard.
    std::string focus();
    /// Looks at the window as it stands: what look_faults() finds fails the test. Writes a picture of it into
    /// the folder TARVELLO_SHOTS of the environment, if that is set.
    void take_picture(const std::string& form, const std::string& name);

    /// Lets all events be handled.
    static void settle();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Expected {
        enum Kind { box, file_dialog, modal } kind;
        std::string text; // of the box, name of the form
        Answer answer = Answer::ok;
        std::optional<std::string> path;
        std::function<void()> acts;
    };

    void came(QWidget* window);
    /// The keyboard goes to the window, as a desktop does with a new one and with one that is clicked.
    static void activate(QWidget& window);
    template <typename Widget>
    Widget* stand_in() {
        using View = std::conditional_t<std::is_same_v<Widget, QAbstractItemView>, QTreeView, Widget>;
        using Made = std::conditional_t<std::is_same_v<View, QAbstractButton>, QPushButton, View>;
        auto* made = new Made(&nothing_);
        if constexpr (requires { made->setModel(static_cast<QAbstractItemModel*>(nullptr)); })
            made->setModel(new QStandardItemModel(made));
        return made;
    }
    std::optional<Expected> next(Expected::Kind kind, const std::string& what);
    void answer_box(QWidget& window);
    void answer_file_dialog(QWidget& window);
    void act_in_modal(QWidget& window);

    std::deque<Expected> expected_;
    QWidget nothing_;
};

/// The folders of a user of their own, empty and gone with the test: home, settings, data, runtime.
class UserFolders {
public:
    UserFolders();
    ~UserFolders();
    std::string path(const std::string& name) const;
    /// The environment of a process of that user.
    QProcessEnvironment environment() const;
    bool valid() const { return folder_.isValid(); }

private:
    QTemporaryDir folder_;
};

/// The whole program with its real windows, in a program folder of its own that holds the shipped database.
class DesktopTest : public ::testing::Test {
protected:
    DesktopTest();
    ~DesktopTest() override;

    /// Starts the program up to its main window, without the splash. If this is its first start, the question
    /// of the first run has been answered and the reminder of updates is not due.
    void start();
    /// Starts it with the splash, as a process does, and waits for the main window. The windows that come up
    /// on the way are to be expected: on the first start the reminder of updates and the question of the
    /// first run.
    void start_with_splash();
    /// Expects the question of the first start and gives it the name "Studio Rossi".
    void answer_first_run();
    /// Closes the main window and lets the program end.
    void finish();

    Program& program() { return *program_; }
    qt::QtPlatform& platform() { return *platform_; }
    std::string program_folder() const { return folders_.path("program"); }
    std::string settings_file() const { return folders_.path("config") + "/tarvello/impostazioni"; }

    UserFolders folders_;
    DesktopUser user;

private:
    void make_program();

    std::unique_ptr<qt::QtPlatform> platform_;
    std::unique_ptr<Program> program_;
};

} // namespace tarvello::testing
