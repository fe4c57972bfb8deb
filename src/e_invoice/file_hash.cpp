#include "e_invoice/file_hash.h"

#include <cstdint>
#include <sys/types.h> // the header of the library uses its types without including it

#include <sha256.h>

namespace tarvello::e_invoice {

std::string file_hash(std::string_view bytes) {
    char digits[SHA256_DIGEST_STRING_LENGTH];
    SHA256Data(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), digits);
    return digits;
}

} // namespace tarvello::e_invoice
