#pragma once

#include <algorithm>
#include <string_view>

/// The letters and digits of ASCII alone: what is decided a byte at a time, and quickly. Words that people
/// write have the letter case of text/letter_case.h.
namespace tarvello::ascii {

constexpr bool contains(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr bool contains_all(std::string_view text) { return std::all_of(text.begin(), text.end(), contains); }

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
/// Also true of an empty text.
constexpr bool only_digits(std::string_view text) { return std::all_of(text.begin(), text.end(), is_digit); }

constexpr bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }
constexpr char lower(char c) { return is_capital(c) ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }
constexpr bool is_letter(char c) { return is_capital(upper(c)); }
constexpr bool is_letter_or_digit(char c) { return is_letter(c) || is_digit(c); }

/// Of a hexadecimal digit; -1 if it is none.
constexpr int hex_value(char c) {
    if (is_digit(c)) return c - '0';
    return upper(c) >= 'A' && upper(c) <= 'F' ? upper(c) - 'A' + 10 : -1;
}

} // namespace tarvello::ascii
