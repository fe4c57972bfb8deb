// Draws the program's icon in the sizes of the desktop's icon themes:
//     make_icons pictures_folder icons_folder
// The folder gets tarvello-SIZE.png for each size.

#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"

#include <QCoreApplication>
#include <QImage>
#include <QImageReader>

#include <cstdio>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: make_icons pictures_folder icons_folder\n", stderr);
        return 2;
    }
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QString drawing = tarvello::qt::to_qt(tarvello::qt::program_icon_drawing(size));
        QImageReader reader(QString::fromLocal8Bit(argv[1]) + "/" + drawing + ".svg");
        reader.setScaledSize({size, size});
        const QImage icon = reader.read();
        if (icon.isNull() ||
            !icon.save(QStringLiteral("%1/tarvello-%2.png").arg(QString::fromLocal8Bit(argv[2])).arg(size))) {
            std::fprintf(stderr, "make_icons: %s in size %d: %s\n", qPrintable(drawing), size,
                         qPrintable(reader.errorString()));
            return 1;
        }
    }
}
