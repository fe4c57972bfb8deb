// The settings file: whatever stands in it is read, and a setting written over it comes back as it was.
#include "platform/posix/settings_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string folder = "/dev/shm/tarvello-fuzz-" + std::to_string(getpid());
    static const std::string path = folder + "-impostazioni";
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::ofstream(path, std::ios::binary) << input;
    SettingsFile settings(path, folder);
    const auto other = settings.read("Tarvello", "Text1", "text");
    for (const std::string& value : {input, folder + "/" + input}) {
        settings.write("Tarvello", "txtDatabaseRoute", "text", value);
        SettingsFile again(path, folder);
        if (again.read("Tarvello", "txtDatabaseRoute", "text") != value) std::abort();
        if (again.read("Tarvello", "Text1", "text") != other) std::abort();
    }
    unlink(path.c_str());
    return 0;
}
