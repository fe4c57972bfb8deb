#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// What a base64 text (RFC 4648) stands for; blanks and line ends are skipped, the padding may be missing.
/// @return nothing if the text holds any other character
std::optional<std::string> decode_base64(std::string_view text);

} // namespace tarvello::e_invoice
