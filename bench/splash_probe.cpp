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
    const std::string here = qt::executable_folder();
    const std::string directory = qt::program_directory(here, qt::users_directory());
    qt::QtPlatform platform(directory);
    Program program(platform.platform());
    if (!program.platform().desktop.is_another_copy_running()) qt::fill_program_directory(here, directory);
    program.run([&] { start_program(program); });
    return QApplication::exec() + 1; // the splash was never painted
}
