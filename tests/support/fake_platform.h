#pragma once

#include "platform/platform.h"
#include "platform/posix/posix_files.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

/// A desktop without a screen. Every box, dialog and modal window is expected in advance: one that nobody
/// expected fails the test, and so does one that never came.
namespace tarvello::testing {

/// The program has ended the process at once. Thrown where the real desktop would not return.
struct ProcessEnded {
    int exit_status;
};

class FakeBoxes final : public MessageBoxes {
public:
    ~FakeBoxes();

    /// The next box must have this text; it gets this answer. Boxes come in the order in which they are
    /// expected.
    void expect(std::string text, Answer answer = Answer::ok);
    /// The same with everything that the box says.
    void expect(MessageBox box, Answer answer = Answer::ok);
    /// The next box may have any text.
    void expect_any(Answer answer = Answer::ok);
    /// Fails the test if an expected box has not come yet.
    void expect_none_left();
    /// The last box that was shown.
    const MessageBox& last() const { return last_; }
    /// What happens while the next box stands.
    std::function<void()> meanwhile;
    /// Nobody answers: boxes answer as their close box does, expected or not.
    bool deserted = false;

    Answer show(const MessageBox& box) override;

private:
    struct Expected {
        MessageBox box;
        Answer answer;
        enum { everything, text_only, anything } compare;
    };
    std::deque<Expected> expected_;
    MessageBox last_;
};

class FakeDialogs final : public FileDialogs {
public:
    /// The next dialog answers with this path, or is cancelled.
    void answer_next(std::optional<std::string> path) { answers_.push_back(std::move(path)); }
    const FileDialog& last() const { return last_; }

    std::optional<std::string> open_file(const FileDialog& dialog) override { return answer(dialog); }
    std::optional<std::string> save_file(const FileDialog& dialog) override { return answer(dialog); }

private:
    std::optional<std::string> answer(const FileDialog& dialog);

    std::deque<std::optional<std::string>> answers_;
    FileDialog last_;
};

class FakeSettings final : public SettingsStore {
public:
    std::optional<std::string> read(const std::string& application, const std::string& section,
                                    const std::string& key) override;
    void write(const std::string& application, const std::string& section, const std::string& key,
               const std::string& value) override;

    /// The value of a key of the program; nothing if it was never written.
    std::optional<std::string> get(const std::string& section, const std::string& key = "text");
    void set(const std::string& section, const std::string& key, const std::string& value);

    std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
    /// Sees the section of each write.
    std::function<void(const std::string& section)> on_write;
};

class FakeClock final : public Clock {
public:
    Date now = make_date(2006, 3, 5);
    Date today() override { return now; }
};

class FakeDesktop final : public Desktop {
public:
    std::vector<std::string> opened;
    bool can_open = true;
    bool can_find = true;
    bool another_copy = false;
    std::string clipboard;

    bool open_address(const std::string& address) override {
        opened.push_back(address);
        return can_open;
    }
    bool find_files() override { return can_find; }
    bool is_another_copy_running() override { return another_copy; }
    std::vector<SystemFact> system_facts() override { return {{"Qt", "6.4.2"}}; }
    void copy_to_clipboard(const std::string& text) override { clipboard = text; }
};

class FakeWindows final : public Windows {
public:
    ~FakeWindows();

    /// The next modal window must be of the form of that name; `user` acts on it. If it is still loaded when
    /// `user` returns, it is closed by its close box.
    void expect_modal(std::string form, std::function<void(Form&)> user = {});
    void expect_none_left();
    /// The forms whose windows are on the screen, in the order in which they were shown.
    std::vector<std::string> shown;
    Pointer pointer = Pointer::normal;
    bool has_quit = false;
    FakeBoxes* boxes = nullptr;

    void show(Form& form) override;
    void show_modal(Form& form) override;
    void close(Form& form) override;
    void set_pointer(Pointer to) override { pointer = to; }
    void repaint() override {}
    void pause(int) override {}
    void stop_waiting() override { boxes->deserted = true; }
    bool deserted() const override { return boxes->deserted; }
    void quit() override { has_quit = true; }
    [[noreturn]] void abort(int exit_status) override { throw ProcessEnded{exit_status}; }

private:
    struct Expected {
        std::string form;
        std::function<void(Form&)> user;
    };
    std::deque<Expected> expected_;
};

class FakeCopyDialog final : public CopyDialog {
public:
    bool answer_replace = true;
    /// Gives up once so many bytes are done.
    std::optional<std::uint64_t> give_up_at;
    std::vector<std::string> asked;    ///< destinations of the questions
    std::vector<std::string> titles;   ///< of the progress windows
    std::vector<std::string> failures; ///< that were shown
    bool open = false;

    bool may_replace(const std::string& destination) override {
        asked.push_back(destination);
        return answer_replace;
    }
    void begin(const std::string& title) override {
        titles.push_back(title);
        open = true;
    }
    bool advance(std::uint64_t done, std::uint64_t) override { return !give_up_at || done < *give_up_at; }
    void end() override { open = false; }
    void report_failure(const std::string& description) override { failures.push_back(description); }
};

class FakePictures final : public PictureFiles {
public:
    /// The pictures that can be read; every other path is none.
    std::map<std::string, PictureSize> sizes;
    PictureSize size(const std::string& path) override;
};

/// A word processor that knows plain text files only, and takes down what it was asked.
class FakeWordProcessor final : public WordProcessor {
public:
    bool installed = true;
    /// The operation that fails: "open", "replace TEXT", "save" or "show".
    std::string failing;
    std::vector<std::string> log;
    /// Instances that are alive.
    int running = 0;

    std::unique_ptr<WordApplication> start() override;
};

class FakeReports final : public ReportViewer {
public:
    std::vector<Report> shown;
    /// Looks at what there is while the window is open.
    std::function<void(const Report&)> user;
    void show_modal(const Report& report) override {
        shown.push_back(report);
        if (user) user(report);
    }
    std::string pdf_of(const std::string& html, const std::string&) override { return "%PDF " + html; }
};

/// All of it, with a folder of its own on disk that goes with it.
struct FakePlatform {
    FakePlatform();
    ~FakePlatform();

    FakeBoxes boxes;
    FakeDialogs dialogs;
    FakeSettings settings;
    FakeClock clock;
    FakeDesktop desktop;
    FakeWindows windows;
    PosixFiles files;
    FakeCopyDialog copy_dialog;
    FakePictures pictures;
    FakeWordProcessor word_processor;
    FakeReports reports;
    RegionalSettings regional;
    std::string program_directory;

    Platform platform();
};

} // namespace tarvello::testing
