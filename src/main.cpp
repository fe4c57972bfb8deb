#include "platform/qt/application.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/session_end.h"
#include "program/program.h"
#include "shell/session.h"

int main(int argc, char** argv) {
    using namespace tarvello;

    qt::Application application(argc, argv);
    const std::string here = qt::executable_folder();
    const std::string directory = qt::program_directory(here, qt::users_directory());
    qt::QtPlatform platform(directory);
    Program program(platform.platform());
    // A second copy ends with its splash, and leaves everything alone until then.
    if (!program.platform().desktop.is_another_copy_running()) qt::fill_program_directory(here, directory);
    const qt::SessionEnd session_end([&] { program.run([&] { end_with_desktop(program); }); });
    program.run([&] { start_program(program); });
    const int result = QApplication::exec();
    platform.windows().clear(); // before the program goes that they show
    return result;
}
