#pragma once

#include "store/access/bytes.h"

#include <string>
#include <string_view>
#include <vector>

/// Texts as the file holds them: UTF-16LE, or compressed to one byte a character where that suffices.
namespace tarvello::store::access {

/// UTF-8 of UTF-16LE. What is no valid UTF-16 becomes U+FFFD; an odd byte at the end is dropped.
std::string decode_utf16(Bytes bytes);
std::vector<std::uint8_t> encode_utf16(std::string_view text);

/// UTF-8 of a text as it lies in a row, compressed or not.
void decode_text(Bytes bytes, std::string& into);
/// A text for a row.
/// @param compress  compress it if that makes it shorter
/// @throws Failure if it starts as compressed texts do and cannot be told from them
std::vector<std::uint8_t> encode_text(std::string_view text, bool compress);

} // namespace tarvello::store::access
