#include "platform/qt/installation.h"

#include "platform/posix/first_fill.h"
#include "platform/qt/qt_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tarvello::qt {

std::string executable_folder() { return from_qt(QCoreApplication::applicationDirPath()); }

std::string users_directory() {
    return from_qt(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) + "/tarvello";
}

std::string shipped_directory(const std::string& executable_folder) {
    const QString here = QDir::cleanPath(to_qt(executable_folder));
    const QString installed = QDir::cleanPath(here + "/../share/tarvello");
    return from_qt(!QFileInfo(here + "/pictures").isDir() && QFileInfo(installed).isDir() ? installed : here);
}

std::string private_file(const std::string& executable_folder, const std::string& name) {
    const QString here = QDir::cleanPath(to_qt(executable_folder));
    const QString beside = here + "/" + to_qt(name);
    const QString installed = QDir::cleanPath(here + "/../libexec/tarvello/" + to_qt(name));
    return from_qt(!QFileInfo::exists(beside) && QFileInfo::exists(installed) ? installed : beside);
}

std::string program_directory(const std::string& executable_folder, const std::string& users_folder) {
    const QString here = QDir::cleanPath(to_qt(executable_folder));
    const bool portable = QFileInfo(here + "/pictures").isDir() && QFileInfo(here).isWritable();
    const QString folder = portable ? here : QDir::cleanPath(to_qt(users_folder));
    return from_qt(folder);
}

void fill_program_directory(const std::string& executable_folder, const std::string& directory) {
    tarvello::fill_program_directory(shipped_directory(executable_folder) + "/originali", directory);
}

std::string settings_path() {
    return from_qt(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) +
           "/tarvello/impostazioni";
}

std::string state_directory() {
    const QString users = qEnvironmentVariable("XDG_STATE_HOME"); // a relative one counts for nothing
    return from_qt(QDir::isAbsolutePath(users) ? users : QDir::homePath() + "/.local/state") + "/tarvello";
}

} // namespace tarvello::qt
