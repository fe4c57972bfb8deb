#include "desktop/look_check.h"
#include "places.h"
#include "platform/qt/application.h"

#include <gtest/gtest.h>

/// What the sanitizers pass over, because it is none of ours; they ask for these by name.
extern "C" {

const char* __asan_default_options() {
    // The web engine deletes objects by a smaller type than they were made with, which its own allocator
    // allows.
    return "new_delete_type_mismatch=0";
}

const char* __lsan_default_suppressions() {
    return "leak:libQt6WebEngineCore\n" // keeps a page's profile and the objects of its threads to the end
           "leak:libudev\n";            // tells the web engine the machine's devices; likewise
}

} // extern "C"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("FONTCONFIG_FILE")) qputenv("FONTCONFIG_FILE", TARVELLO_FONTS);
    tarvello::qt::Application application(argc, argv);
    tarvello::testing::set_desktop(application);
    return RUN_ALL_TESTS();
}
