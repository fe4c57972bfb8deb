#include "platform/qt/qt_platform.h"

#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/regional.h"

#include <QDesktopServices>
#include <QUrl>

namespace tarvello::qt {

namespace {

bool open_document(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(to_qt(path)));
}

} // namespace

QtPlatform::QtPlatform(std::string program_directory)
    : regional_(user_regional_settings()), windows_(regional_), boxes_(windows_), dialogs_(windows_),
      copy_dialog_(windows_, boxes_), settings_(settings_path(), program_directory),
      word_processor_({private_file(executable_folder(), "tarvello-office"), {}}, files_, open_document),
      reports_(windows_, dialogs_, files_, copy_dialog_, boxes_),
      shipped_directory_(shipped_directory(executable_folder())),
      program_directory_(std::move(program_directory)) {}

Platform QtPlatform::platform() {
    return {boxes_,
            dialogs_,
            settings_,
            clock_,
            desktop_,
            windows_,
            files_,
            copy_dialog_,
            pictures_,
            word_processor_,
            reports_,
            regional_,
            program_directory_,
            shipped_directory_,
            state_directory(),
            '/'};
}

} // namespace tarvello::qt
