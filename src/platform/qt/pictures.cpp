#include "platform/qt/pictures.h"

#include "platform/qt/installation.h"
#include "platform/qt/look.h"
#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include <utility>

namespace tarvello::qt {

namespace {

/// The folder of the program's drawings.
const QString& pictures_folder() {
    static const QString folder = to_qt(shipped_directory(executable_folder())) + "/pictures";
    return folder;
}

/// The strokes of the drawings are made for light grounds; each has a lighter tone for dark ones.
QByteArray lightened(QByteArray drawing) {
    constexpr std::pair<const char*, const char*> tones[] = {
        {"stroke=\"#3b7dd8\"", "stroke=\"#7fb0f2\""},
        {"stroke=\"#27875a\"", "stroke=\"#5cc495\""},
        {"stroke=\"#b3730e\"", "stroke=\"#e8ad50\""},
        {"stroke=\"#d9515a\"", "stroke=\"#f08a90\""},
    };
    for (const auto& [dark, light] : tones) drawing.replace(dark, light);
    return drawing;
}

/// A drawing that is not quite as its file has it, sharp at every size.
class DrawingEngine final : public QIconEngine {
public:
    explicit DrawingEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        QBuffer buffer(&drawing_);
        QImageReader reader(&buffer, "svg");
        reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatio));
        QPixmap drawn = QPixmap::fromImage(reader.read());
        if (mode == QIcon::Normal) return drawn;
        const QStyleOption option;
        return QApplication::style()->generatedIconPixmap(mode, drawn, &option);
    }
    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override {
        const qreal dots = painter->device()->devicePixelRatioF();
        painter->drawPixmap(place, pixmap(place.size() * dots, mode, state));
    }
    QIconEngine* clone() const override { return new DrawingEngine(*this); }

private:
    QByteArray drawing_;
};

/// Every icon by its file. They go with the application, which all that is drawn needs.
QHash<QString, QIcon>& known_icons() {
    static QHash<QString, QIcon> icons;
    [[maybe_unused]] static const bool cleared_in_time = [] {
        qAddPostRoutine([] { icons.clear(); });
        return true;
    }();
    return icons;
}

QIcon read_icon(const QString& file) {
    QFile drawing(file);
    if (!has_dark_desktop() || !file.endsWith(QLatin1String(".svg")) || !drawing.open(QFile::ReadOnly))
        return QIcon(file);
    return QIcon(new DrawingEngine(lightened(drawing.readAll())));
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
    QHash<QString, QIcon>& known = known_icons();
    const QString file = picture_file(picture);
    if (file.isEmpty()) return {};
    const auto found = known.constFind(file);
    if (found != known.constEnd()) return *found;
    return *known.insert(file, read_icon(file));
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
