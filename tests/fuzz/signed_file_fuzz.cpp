// The reader of signed files: whatever comes in, a content no longer than it or words come out.
#include "e_invoice/signed_file.h"
#include "failure.h"
#include "memory_watch.h"

#include <cstdint>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryWatch watch(size);
    try {
        const std::string_view bytes(reinterpret_cast<const char*>(data), size);
        if (e_invoice::signed_content(bytes).size() > size) std::abort();
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
