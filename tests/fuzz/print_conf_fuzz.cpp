// The file that names the template in force: its two readers agree on one that the program has written.
#include "documents/template_in_force.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string path = template_in_force(input);
    if (path.find('\n') != std::string::npos) std::abort();
    if (const std::string shown = template_on_view(input); !path.ends_with(shown)) std::abort();
    if (path.ends_with('\r')) return 0; // no name that a dialog gives
    if (template_in_force(print_conf_of(path)) != path || template_on_view(print_conf_of(path)) != path)
        std::abort();
    return 0;
}
