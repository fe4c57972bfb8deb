#include "platform/qt/qt_platform.h"

#include "failure.h"
#include "platform/qt/regional.h"

namespace tarvello::qt {

std::unique_ptr<WordApplication> NoWordProcessor::start() {
    throw Failure(429, "Word", "Nessun programma di videoscrittura installato.");
}

void NoReports::show_modal(const Report&) { throw Failure(482, "Stampa", "La stampa non è disponibile."); }

QtPlatform::QtPlatform(std::string program_directory)
    : regional_(user_regional_settings()), windows_(regional_), boxes_(windows_), dialogs_(windows_),
      copy_dialog_(windows_, boxes_), settings_(SettingsFile::usual_path()),
      program_directory_(std::move(program_directory)) {}

Platform QtPlatform::platform() {
    return {boxes_,       dialogs_,  settings_,       clock_,   desktop_,  windows_,           files_,
            copy_dialog_, pictures_, word_processor_, reports_, regional_, program_directory_, '/'};
}

} // namespace tarvello::qt
