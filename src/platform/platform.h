#pragma once

#include "platform/files.h"
#include "platform/form.h"
#include "platform/report.h"
#include "platform/word_processor.h"
#include "text/dates.h"
#include "text/regional_settings.h"

#include <optional>
#include <string>
#include <vector>

/// What the program asks of its surroundings: small interfaces, with the desktop behind them in the program
/// and a fake behind them in the tests of the core.
namespace tarvello {

/// The title of the program, on its boxes and on windows that have none of their own.
inline constexpr const char* program_title = "Tarvello 4";

enum class BoxIcon { none, information, exclamation, critical, question };
enum class BoxButtons { ok, ok_cancel, yes_no };
enum class Answer { ok, cancel, yes, no };

/// A message or a question to the user.
struct MessageBox {
    std::string text;
    std::string caption = program_title;
    BoxIcon icon = BoxIcon::none;
    BoxButtons buttons = BoxButtons::ok;
    /// The button that Enter presses: the first or the second.
    int default_button = 1;
    /// Escape and the close box answer neither button but Cancel: they lead back to where the user was.
    bool may_go_back = false;
};

class MessageBoxes {
public:
    /// Shows the box and waits for the answer. The close box of a question answers No, or Cancel, unless the
    /// box says otherwise.
    virtual Answer show(const MessageBox& box) = 0;

protected:
    ~MessageBoxes() = default;
};

/// A row of the list of file types of a dialog, such as {"Backup files (*.bak)", "*.bak"}.
struct FileFilter {
    std::string label;
    std::string pattern;
};

struct FileDialog {
    std::string title;
    std::vector<FileFilter> filters;
    /// The dialog itself asks before it gives the name of a file that exists. Who copies by CopiaFile asks
    /// there.
    bool confirm_replace = false;
    /// What is opened is a folder, whatever the filters.
    bool folder = false;
};

class FileDialogs {
public:
    /// @return full path of an existing file, or folder; nothing if the user cancelled
    virtual std::optional<std::string> open_file(const FileDialog& dialog) = 0;
    /// @return full path to save under, which may exist; nothing if the user cancelled
    virtual std::optional<std::string> save_file(const FileDialog& dialog) = 0;

protected:
    ~FileDialogs() = default;
};

/// The settings of the user, each under application, section and key. They outlive the process.
class SettingsStore {
public:
    /// @return nothing if the key does not exist or cannot be read
    virtual std::optional<std::string> read(const std::string& application, const std::string& section,
                                            const std::string& key) = 0;
    /// The value is on disk when the call returns. A failure is silent: settings never stop the program.
    virtual void write(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& value) = 0;

protected:
    ~SettingsStore() = default;
};

class Clock {
public:
    virtual Date today() = 0;

protected:
    ~Clock() = default;
};

/// A line of what is known of the system, such as {"Qt", "6.4.2"}.
struct SystemFact {
    std::string name;
    std::string value;
};

/// The user's desktop around the program.
class Desktop {
public:
    /// Opens an address with the program that the user has for it, without waiting.
    /// @return false if there is none
    virtual bool open_address(const std::string& address) = 0;
    /// Opens the desktop's search for files, or else its file manager. @return false if it has neither
    virtual bool find_files() = 0;
    /// True if another copy of the program runs for this user. From the first call on, this copy counts as
    /// running.
    virtual bool is_another_copy_running() = 0;
    /// The versions of what the program works with. Empty where nothing is known.
    virtual std::vector<SystemFact> system_facts() { return {}; }
    /// Does nothing where there is no clipboard.
    virtual void copy_to_clipboard(const std::string& /*text*/) {}

protected:
    ~Desktop() = default;
};

enum class Pointer { normal, hourglass };

/// The windows on the screen.
class Windows {
public:
    /// Shows a form's window, or brings it to the front.
    virtual void show(Form& form) = 0;
    /// Shows a form's window and returns when the form has been unloaded.
    virtual void show_modal(Form& form) = 0;
    /// The form has been unloaded: its window goes.
    virtual void close(Form& form) = 0;
    virtual void set_pointer(Pointer pointer) = 0;
    /// Draws what has changed, in the midst of a handler.
    virtual void repaint() = 0;
    /// The user's desktop ends, and nobody answers any more: what stands open for an answer is closed as by
    /// its close box, and what comes later answers so at once.
    virtual void stop_waiting() = 0;
    /// True from then on.
    virtual bool deserted() const = 0;
    /// Waits while the windows stay alive, for a step of an animation.
    virtual void pause(int milliseconds) = 0;
    /// Ends the process after the handlers that are running.
    virtual void quit() = 0;
    /// Ends the process at once, with nothing saved. Does not return.
    /// @param exit_status  what the process tells those who started it: 0 for an end that is no fault
    [[noreturn]] virtual void abort(int exit_status) = 0;

protected:
    ~Windows() = default;
};

/// Width and height of a picture in twips, at 96 dots to the inch.
struct PictureSize {
    float width = 0;
    float height = 0;
};

/// Picture files of the user: JPEG, GIF and whatever else the desktop can read.
class PictureFiles {
public:
    /// The size of a picture. @throws Failure if the file cannot be read as one
    virtual PictureSize size(const std::string& path) = 0;

protected:
    ~PictureFiles() = default;
};

/// Everything around the program, handed to it at its start.
struct Platform {
    MessageBoxes& boxes;
    FileDialogs& dialogs;
    SettingsStore& settings;
    Clock& clock;
    Desktop& desktop;
    Windows& windows;
    Files& files;
    CopyDialog& copy_dialog;
    PictureFiles& pictures;
    WordProcessor& word_processor;
    ReportViewer& reports;
    RegionalSettings regional;
    /// The folder of the program's data, without a separator at its end.
    std::string program_directory;
    /// The folder of what came with the program and stays as it is (the guide, the licences), likewise.
    std::string shipped_directory;
    /// The folder of what is kept from one session to the next and is no setting, likewise; it may not exist.
    std::string state_directory;
    /// The platform's separator between folders.
    char separator = '/';
};

} // namespace tarvello
