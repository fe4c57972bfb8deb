// The floor of the start: an application with one label.
#include "probe.h"

#include <QLabel>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    tarvello::bench::EndOnFirstPicture end;
    application.installEventFilter(&end);
    QLabel label(QStringLiteral("Tarvello"));
    label.show();
    return QApplication::exec() + 1; // the label was never painted
}
