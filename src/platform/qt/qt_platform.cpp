#include "platform/qt/qt_platform.h"

#include "platform/qt/qt_text.h"
#include "platform/qt/regional.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace tarvello::qt {

namespace {

/// The helper process: beside the program, or where an installed program has its own executables.
std::string office_helper() {
    const QString here = QCoreApplication::applicationDirPath();
    for (const char* place : {"/tarvello-office", "/../libexec/tarvello-office"}) {
        const QString path = QDir::cleanPath(here + QLatin1String(place));
        if (QFileInfo(path).isExecutable()) return from_qt(path);
    }
    return from_qt(here) + "/tarvello-office";
}

bool open_document(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(to_qt(path)));
}

} // namespace

QtPlatform::QtPlatform(std::string program_directory)
    : regional_(user_regional_settings()), windows_(regional_), boxes_(windows_), dialogs_(windows_),
      copy_dialog_(windows_, boxes_), settings_(SettingsFile::usual_path()),
      word_processor_({office_helper(), {}}, files_, open_document),
      reports_(windows_, dialogs_, files_, copy_dialog_, boxes_),
      program_directory_(std::move(program_directory)) {}

Platform QtPlatform::platform() {
    return {boxes_,       dialogs_,  settings_,       clock_,   desktop_,  windows_,           files_,
            copy_dialog_, pictures_, word_processor_, reports_, regional_, program_directory_, '/'};
}

} // namespace tarvello::qt
