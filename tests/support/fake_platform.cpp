#include "support/fake_platform.h"

#include "failure.h"
#include "program/version.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace tarvello::testing {

// Boxes

FakeBoxes::~FakeBoxes() { expect_none_left(); }

void FakeBoxes::expect(std::string text, Answer answer) {
    MessageBox box;
    box.text = std::move(text);
    expected_.push_back({std::move(box), answer, Expected::text_only});
}

void FakeBoxes::expect(MessageBox box, Answer answer) {
    expected_.push_back({std::move(box), answer, Expected::everything});
}

void FakeBoxes::expect_any(Answer answer) { expected_.push_back({{}, answer, Expected::anything}); }

void FakeBoxes::expect_none_left() {
    for (const Expected& expected : expected_) ADD_FAILURE() << "the box never came: " << expected.box.text;
    expected_.clear();
}

Answer FakeBoxes::show(const MessageBox& box) {
    last_ = box;
    const bool question = box.buttons == BoxButtons::yes_no;
    if (deserted) return question ? Answer::no : box.buttons == BoxButtons::ok ? Answer::ok : Answer::cancel;
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected box: " << box.text;
        return question ? Answer::no : Answer::ok;
    }
    const Expected expected = expected_.front();
    expected_.pop_front();
    if (expected.compare != Expected::anything) {
        EXPECT_EQ(box.text, expected.box.text);
    }
    if (expected.compare == Expected::everything) {
        EXPECT_EQ(box.caption, expected.box.caption) << box.text;
        EXPECT_EQ(box.icon, expected.box.icon) << box.text;
        EXPECT_EQ(box.buttons, expected.box.buttons) << box.text;
        EXPECT_EQ(box.default_button, expected.box.default_button) << box.text;
    }
    if (const auto act = std::exchange(meanwhile, {})) act();
    return deserted && question ? Answer::no : expected.answer;
}

// Dialogs

std::optional<std::string> FakeDialogs::answer(const FileDialog& dialog) {
    last_ = dialog;
    if (answers_.empty()) {
        ADD_FAILURE() << "unexpected file dialog: " << dialog.title;
        return std::nullopt;
    }
    auto path = answers_.front();
    answers_.pop_front();
    return path;
}

// Settings

std::optional<std::string> FakeSettings::read(const std::string& application, const std::string& section,
                                              const std::string& key) {
    const auto found = values.find({application, section, key});
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void FakeSettings::write(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
    if (on_write) on_write(section);
    values[{application, section, key}] = value;
}

std::optional<std::string> FakeSettings::get(const std::string& section, const std::string& key) {
    return read(application_name, section, key);
}

void FakeSettings::set(const std::string& section, const std::string& key, const std::string& value) {
    write(application_name, section, key, value);
}

// Windows

FakeWindows::~FakeWindows() { expect_none_left(); }

void FakeWindows::expect_modal(std::string form, std::function<void(Form&)> user) {
    expected_.push_back({std::move(form), std::move(user)});
}

void FakeWindows::expect_none_left() {
    for (const Expected& expected : expected_) ADD_FAILURE() << "the window never came: " << expected.form;
    expected_.clear();
}

void FakeWindows::show(Form& form) {
    if (std::find(shown.begin(), shown.end(), form.name()) == shown.end()) shown.push_back(form.name());
}

void FakeWindows::show_modal(Form& form) {
    const auto alive = form.shared_from_this();
    show(form);
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected modal window: " << form.name();
    } else {
        const Expected expected = expected_.front();
        expected_.pop_front();
        EXPECT_EQ(form.name(), expected.form);
        if (expected.user) expected.user(form);
    }
    if (std::find(shown.begin(), shown.end(), form.name()) != shown.end()) form.close_by_user();
}

void FakeWindows::close(Form& form) { std::erase(shown, form.name()); }

// Pictures and the word processor

PictureSize FakePictures::size(const std::string& path) {
    const auto found = sizes.find(path);
    if (found == sizes.end()) throw Failure(481, "Immagini", "Immagine non valida.");
    return found->second;
}

namespace {

class FakeWordApplication final : public WordApplication {
public:
    explicit FakeWordApplication(FakeWordProcessor& processor) : processor_(processor) {
        ++processor_.running;
    }
    ~FakeWordApplication() override { --processor_.running; }

    void open_read_only(const std::string& path) override {
        step("open", "open " + path);
        document_ = files_.read(path);
    }
    void replace_all(const std::string& text, const std::string& value) override {
        step("replace " + text, "replace " + text + "=" + value);
        for (std::size_t at = 0; (at = document_.find(text, at)) != std::string::npos; at += value.size()) {
            document_.replace(at, text.size(), value);
        }
    }
    void save_as(const std::string& path) override {
        step("save", "save " + path);
        files_.write(path, document_);
    }
    void show() override { step("show", "show"); }
    void quit() override { step("quit", "quit"); }

private:
    void step(const std::string& name, const std::string& line) {
        processor_.log.push_back(line);
        if (processor_.failing == name)
            throw Failure(failure_number::word_processor, "Word", "Il programma di scrittura non risponde.");
    }

    FakeWordProcessor& processor_;
    PosixFiles files_;
    std::string document_;
};

} // namespace

std::unique_ptr<WordApplication> FakeWordProcessor::start() {
    log.push_back("start");
    if (!installed) throw Failure(429, "Word", "Il programma di scrittura non è installato.");
    return std::make_unique<FakeWordApplication>(*this);
}

// Platform

FakePlatform::FakePlatform() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarvello-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) ADD_FAILURE() << "no temporary folder: " << pattern;
    program_directory = pattern;
    windows.boxes = &boxes;
    std::filesystem::create_directory(program_directory + "/modelli"); // as it is installed
}

FakePlatform::~FakePlatform() {
    std::error_code ignored;
    std::filesystem::remove_all(program_directory, ignored);
}

Platform FakePlatform::platform() {
    return {boxes,
            dialogs,
            settings,
            clock,
            desktop,
            windows,
            files,
            copy_dialog,
            pictures,
            word_processor,
            reports,
            regional,
            program_directory,
            program_directory,
            program_directory + "/stato",
            '/'};
}

} // namespace tarvello::testing
