#pragma once

#include "platform/platform.h"

namespace tarvello::qt {

class SystemClock final : public Clock {
public:
    Date today() override;
};

/// The sizes of picture files, by the picture's own resolution where it states one.
class QtPictureFiles final : public PictureFiles {
public:
    PictureSize size(const std::string& path) override;
};

class QtDesktop final : public Desktop {
public:
    QtDesktop() = default;
    ~QtDesktop();
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    bool open_address(const std::string& address) override;
    bool find_files() override;
    /// By a lock on a file in the user's runtime folder. The kernel gives it to one process at a time and
    /// takes it back when that process ends, however it ends.
    bool is_another_copy_running() override;
    std::vector<SystemFact> system_facts() override;
    void copy_to_clipboard(const std::string& text) override;

private:
    int lock_ = -1;
};

} // namespace tarvello::qt
