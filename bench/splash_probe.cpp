// What main() does, up to the first picture of the splash.
#include "probe.h"

#include "platform/qt/application.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_platform.h"
#include "program/program.h"
#include "shell/session.h"

int main(int argc, char** argv) {
    using namespace tarvello;
    qt::Application application(argc, argv);
    bench::EndOnBox end_on_box;
    application.installEventFilter(&end_on_box);
    bench::EndOnFirstPicture end;
    application.installEventFilter(&end);
    qt::QtPlatform platform(qt::program_directory(qt::executable_folder(), qt::users_directory()));
    Program program(platform.platform());
    program.run([&] { start_program(program); });
    return QApplication::exec() + 1; // the splash was never painted
}
