// Templates: their format is told by what they hold, before the word processor, a process of its own, gets
// them.
#include "platform/office/document_format.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string format = office::document_format(input);
    for (const char* known : {"", "rtf", "doc", "odt", "docx", "html", "txt"})
        if (format == known) return 0;
    std::abort();
}
