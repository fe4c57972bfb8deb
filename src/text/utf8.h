#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts are UTF-8 in std::string; every count and position here is in characters (code points), from 0.
/// A byte that is no valid UTF-8 counts as one character.
namespace tarvello::utf8 {

/// Number of characters.
std::size_t length(std::string_view text);

/// Number of UTF-16 units that the text takes.
std::size_t utf16_length(std::string_view text);

/// The byte at which character `position` starts; the size of the text if there are fewer characters.
std::size_t byte_of(std::string_view text, std::size_t position);

/// The first `count` characters.
std::string left(std::string_view text, std::size_t count);

/// `count` characters from `position` on; fewer if the text ends before.
std::string mid(std::string_view text, std::size_t position, std::size_t count = std::string_view::npos);

/// The code points of a text; an invalid byte becomes U+FFFD.
std::u32string decode(std::string_view text);

/// Appends one code point.
void append(std::string& text, char32_t code_point);

std::string encode(std::u32string_view code_points);

/// True if the text is valid UTF-8.
bool valid(std::string_view text);

} // namespace tarvello::utf8
