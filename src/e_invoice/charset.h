#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// A text in UTF-8.
///
/// ISO-8859-1 is read as windows-1252, as browsers do: the two differ in 0x80 to 0x9F only, where the first
/// has control characters that no text holds, and files that say the one are often written in the other.
/// @param charset  UTF-8, US-ASCII, windows-1252, ISO-8859-1 or ISO-8859-15 under their usual names, UTF-16
///                 with a byte order mark; empty is UTF-8
/// @return nothing if the bytes are no text of this charset, or the charset is none of these
std::optional<std::string> to_utf8(std::string bytes, std::string_view charset);

} // namespace tarvello::e_invoice
