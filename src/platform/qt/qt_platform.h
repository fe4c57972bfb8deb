#pragma once

#include "platform/office/office_word_processor.h"
#include "platform/platform.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/settings_file.h"
#include "platform/qt/boxes.h"
#include "platform/qt/desktop.h"
#include "platform/qt/report_window.h"
#include "platform/qt/windows.h"

namespace tarvello::qt {

/// The desktop of the user, with everything that the program asks of it.
class QtPlatform {
public:
    /// @param program_directory  the folder of the program's data
    explicit QtPlatform(std::string program_directory);

    /// What the program is made with. This object must outlive it.
    Platform platform();
    QtWindows& windows() { return windows_; }

private:
    RegionalSettings regional_;
    QtWindows windows_;
    QtBoxes boxes_;
    QtFileDialogs dialogs_;
    QtCopyDialog copy_dialog_;
    SettingsFile settings_;
    SystemClock clock_;
    QtDesktop desktop_;
    PosixFiles files_;
    QtPictureFiles pictures_;
    OfficeWordProcessor word_processor_;
    QtReports reports_;
    std::string shipped_directory_;
    std::string program_directory_;
};

} // namespace tarvello::qt
