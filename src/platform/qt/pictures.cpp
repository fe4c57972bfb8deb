#include "platform/qt/pictures.h"

#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

namespace tarvello::qt {

namespace {

/// The folder of the program's drawings.
const QString& pictures_folder() {
    static const QString folder =
        to_qt(shipped_directory(from_qt(QCoreApplication::applicationDirPath()))) + "/pictures";
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

std::string program_icon_drawing(int size) {
    if (size % 16 == 0 && size < 48) return "tarvello-16";
    return size < 48 ? "tarvello-24" : "tarvello";
}

QIcon program_icon() {
    QIcon icon;
    // Window managers take the nearest of these; larger ones are in the desktop's icon theme.
    for (const int size : {16, 24, 32, 48, 64}) {
        icon.addPixmap(picture_icon(program_icon_drawing(size)).pixmap(QSize(size, size), 1.0));
    }
    return icon;
}

} // namespace tarvello::qt
