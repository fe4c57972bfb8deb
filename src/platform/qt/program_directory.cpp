#include "platform/qt/program_directory.h"

#include "platform/qt/qt_text.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace tarvello::qt {

namespace {

/// Copies everything but the program's drawings, which are read where they were installed.
bool fill(const QString& installed, const QString& folder) {
    if (!QDir().mkpath(folder)) return false;
    QDirIterator entries(installed, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString name = QDir(installed).relativeFilePath(source);
        if (name.startsWith(QLatin1String("pictures/"))) continue;
        const QString target = folder + "/" + name;
        if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::copy(source, target)) return false;
        // What was installed may be read-only; the user's own copy is to be written.
        QFile::setPermissions(target,
                              QFile::permissions(target) | QFileDevice::WriteOwner | QFileDevice::ReadOwner);
    }
    return true;
}

} // namespace

std::string program_directory(const std::string& executable_folder, const std::string& users_folder) {
    const QString here = QDir::cleanPath(to_qt(executable_folder));
    // The drawings always lie beside the data of a portable program, whatever the user does with the rest.
    if (QFileInfo(here + "/pictures").isDir() && QFileInfo(here).isWritable()) return from_qt(here);

    const QString own = QDir::cleanPath(to_qt(users_folder));
    if (QFileInfo(own).isDir()) return from_qt(own);
    // Filled under another name first: a start that is cut short leaves no half of it behind.
    const QString filling = own + ".nuova";
    QDir(filling).removeRecursively();
    if (fill(QDir::cleanPath(here + "/../share/tarvello"), filling)) QDir().rename(filling, own);
    QDir().mkpath(own);
    return from_qt(own);
}

} // namespace tarvello::qt
