#include "platform/qt/installation.h"

#include "platform/qt/qt_text.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace tarvello::qt {

namespace {

const QString municipalities = QStringLiteral("Comuni.mdb");

/// Copies a file so that it is there as a whole or not at all, and can be written by the user.
bool copy_whole(const QString& source, const QString& target) {
    const QString part = target + ".nuovo"; // an earlier one is of a start that was cut short
    QFile::remove(part);
    if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::copy(source, part)) return false;
    // What was installed may be read-only.
    QFile::setPermissions(part, QFile::permissions(part) | QFileDevice::WriteOwner | QFileDevice::ReadOwner);
    return std::rename(QFile::encodeName(part).constData(), QFile::encodeName(target).constData()) == 0;
}

/// What marks a list of municipalities that was made with the program, and its contents: the three fields of
/// the header of an SQLite file that are free for its maker. Empty for any other file.
QByteArray mark_of_municipalities(const QString& path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly) || !file.seek(60)) return {};
    const QByteArray fields = file.read(12); // user_version, incremental vacuum, application_id
    return fields.endsWith("TvCo") ? fields : QByteArray();
}

/// Brings the folder of the user's data up to what came with the program. Nobody can be told of a failure
/// yet; the next start tries again, and the forms tell what is missing.
void fill(const QString& originals, const QString& folder) {
    const QString own = folder + "/" + municipalities;
    if (QFileInfo::exists(own)) {
        const QByteArray mark = mark_of_municipalities(own);
        const QByteArray shipped = mark_of_municipalities(originals + "/" + municipalities);
        if (mark.isEmpty() || shipped.isEmpty() || mark == shipped) return;
        copy_whole(originals + "/" + municipalities, own);
        return;
    }
    QDirIterator entries(originals, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString name = QDir(originals).relativeFilePath(source);
        if (name == municipalities || QFileInfo::exists(folder + "/" + name)) continue;
        if (!copy_whole(source, folder + "/" + name)) return;
    }
    // The last one: that it is there says that the folder has been filled.
    copy_whole(originals + "/" + municipalities, own);
}

} // namespace

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
    const QString shipped = to_qt(shipped_directory(executable_folder));
    const bool portable = QFileInfo(here + "/pictures").isDir() && QFileInfo(here).isWritable();
    const QString folder = portable ? here : QDir::cleanPath(to_qt(users_folder));
    if (!QFileInfo(folder).isDir() && QDir().mkpath(folder)) {
        // Invoices are nobody else's business.
        QFile::setPermissions(folder,
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    if (QFileInfo(shipped + "/originali").isDir()) fill(shipped + "/originali", folder);
    return from_qt(folder);
}

} // namespace tarvello::qt
