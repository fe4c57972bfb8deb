#include "platform/qt/pictures.h"

#include "platform/qt/qt_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace tarvello::qt {

namespace {

/// The folder of the program's drawings: beside the program, or where an installed program has its data.
const QString& pictures_folder() {
    static const QString folder = [] {
        const QString here = QCoreApplication::applicationDirPath();
        for (const char* place : {"/pictures", "/../share/tarvello/pictures"}) {
            if (QFileInfo(here + QLatin1String(place)).isDir())
                return QDir::cleanPath(here + QLatin1String(place));
        }
        return here;
    }();
    return folder;
}

} // namespace

QString picture_file(const std::string& picture) {
    if (picture.empty()) return {};
    const QString name = to_qt(picture);
    const QString path = name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('.'))
                             ? name
                             : pictures_folder() + "/" + name + ".svg";
    return QFileInfo::exists(path) ? path : QString();
}

QIcon picture_icon(const std::string& picture) {
    static QHash<QString, QIcon> known;
    const QString file = picture_file(picture);
    if (file.isEmpty()) return {};
    const auto found = known.constFind(file);
    if (found != known.constEnd()) return *found;
    return *known.insert(file, QIcon(file));
}

} // namespace tarvello::qt
