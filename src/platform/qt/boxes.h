#pragma once

#include "platform/files.h"
#include "platform/platform.h"

#include <QPointer>

class QProgressDialog;

namespace tarvello::qt {

class QtWindows;

/// Message boxes, with Italian buttons whatever the desktop speaks. Texts are shown as they stand.
class QtBoxes final : public MessageBoxes {
public:
    explicit QtBoxes(const QtWindows& windows) : windows_(windows) {}
    Answer show(const MessageBox& box) override;

private:
    const QtWindows& windows_;
};

class QtFileDialogs final : public FileDialogs {
public:
    explicit QtFileDialogs(const QtWindows& windows) : windows_(windows) {}
    std::optional<std::string> open_file(const FileDialog& dialog) override;
    std::optional<std::string> save_file(const FileDialog& dialog) override;

private:
    const QtWindows& windows_;
};

/// What the user sees of a copy: the question and the progress window.
class QtCopyDialog final : public CopyDialog {
public:
    QtCopyDialog(const QtWindows& windows, MessageBoxes& boxes) : windows_(windows), boxes_(boxes) {}
    ~QtCopyDialog();

    bool may_replace(const std::string& destination) override;
    void begin(const std::string& title) override;
    bool advance(std::uint64_t done, std::uint64_t total) override;
    void end() override;
    void report_failure(const std::string& description) override;

private:
    const QtWindows& windows_;
    MessageBoxes& boxes_;
    QPointer<QProgressDialog> progress_;
};

} // namespace tarvello::qt
