#pragma once

#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// SHA-256 of a file's bytes in 64 lower-case hexadecimal digits: what receipts tell of the file they answer.
std::string file_hash(std::string_view bytes);

} // namespace tarvello::e_invoice
