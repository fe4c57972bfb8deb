#include "e_invoice/charset.h"

#include "text/letter_case.h"
#include "text/utf8.h"

#include <algorithm>
#include <utility>

namespace tarvello::e_invoice {
namespace {

/// What windows-1252 has at 0x80 to 0x9F; 0 where it has nothing.
constexpr char32_t windows_1252[] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                     0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char32_t western(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? windows_1252[byte - 0x80] : byte;
}

/// ISO-8859-15 has the euro sign and seven letters where ISO-8859-1 has signs.
char32_t western_with_euro(unsigned char byte) {
    constexpr std::pair<unsigned char, char32_t> changed[] = {{0xA4, 0x20AC}, {0xA6, 0x0160}, {0xA8, 0x0161},
                                                              {0xB4, 0x017D}, {0xB8, 0x017E}, {0xBC, 0x0152},
                                                              {0xBD, 0x0153}, {0xBE, 0x0178}};
    for (const auto& [place, character] : changed) {
        if (place == byte) return character;
    }
    return byte;
}

std::string mapped(std::string_view bytes, char32_t (*character)(unsigned char)) {
    const auto high = std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
    std::string text;
    text.reserve(bytes.size() + 2 * static_cast<std::size_t>(high));
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const char32_t letter = character(code);
        if (letter != 0 || code == 0) utf8::append(text, letter);
    }
    return text;
}

std::string from_utf_16(std::string_view bytes) {
    const bool big_endian = bytes.starts_with("\xFE\xFF");
    const auto unit = [&](std::size_t at) -> char32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return big_endian ? first << 8 | second : second << 8 | first;
    };
    std::string text;
    text.reserve(bytes.size() / 2 * 3); // two bytes become three at most
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
        char32_t code = unit(at);
        if ((code & 0xFC00) == 0xD800 && at + 3 < bytes.size() && (unit(at + 2) & 0xFC00) == 0xDC00) {
            at += 2;
            code = 0x10000 + ((code & 0x3FF) << 10 | (unit(at) & 0x3FF));
        }
        utf8::append(text, code);
    }
    return text;
}

} // namespace

std::optional<std::string> to_utf8(std::string bytes, std::string_view charset) {
    const std::string name = lower_case(charset);
    const auto is = [&](auto... names) { return ((name == names) || ...); };
    if (is("windows-1252", "cp1252", "iso-8859-1", "iso8859-1", "latin1")) return mapped(bytes, western);
    if (is("iso-8859-15", "iso8859-15", "latin9")) return mapped(bytes, western_with_euro);
    if (is("utf-16")) return from_utf_16(bytes);
    if (!is("", "utf-8", "utf8", "us-ascii", "ascii") || !utf8::valid(bytes)) return std::nullopt;
    return bytes;
}

} // namespace tarvello::e_invoice
