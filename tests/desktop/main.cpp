#include "desktop/look_check.h"
#include "places.h"
#include "platform/qt/application.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("FONTCONFIG_FILE")) qputenv("FONTCONFIG_FILE", TARVELLO_FONTS);
    tarvello::qt::Application application(argc, argv);
    tarvello::testing::set_desktop(application);
    return RUN_ALL_TESTS();
}
