#include "text/letter_case.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <utf8proc.h>

#include <algorithm>

namespace tarvello {
namespace {

char32_t lower(char32_t c) {
    return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(c)));
}
char32_t upper(char32_t c) {
    constexpr char32_t sharp_s = U'ß'; // has no upper case of one letter in use; the library gives it one
    return c == sharp_s ? c : static_cast<char32_t>(utf8proc_toupper(static_cast<utf8proc_int32_t>(c)));
}

template <typename Mapping>
std::string map_characters(std::string_view text, Mapping mapping) {
    std::u32string characters = utf8::decode(text);
    std::transform(characters.begin(), characters.end(), characters.begin(), mapping);
    return utf8::encode(characters);
}

std::string map_ascii(std::string_view text, char (*mapping)(char)) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), mapping);
    return result;
}

} // namespace

std::string upper_case(std::string_view text) {
    return ascii::contains_all(text) ? map_ascii(text, ascii::upper) : map_characters(text, upper);
}

std::string lower_case(std::string_view text) {
    return ascii::contains_all(text) ? map_ascii(text, ascii::lower) : map_characters(text, lower);
}

std::string proper_case(std::string_view text, std::string_view separators) {
    bool word_starts = true;
    return map_characters(text, [&](char32_t c) {
        const char32_t mapped = word_starts ? upper(c) : lower(c);
        word_starts = c < 0x80 && separators.find(static_cast<char>(c)) != std::string_view::npos;
        return mapped;
    });
}

std::string fold_case(std::string_view text) {
    if (ascii::contains_all(text)) return map_ascii(text, ascii::lower);
    // Upper and then lower joins the letters of which only one direction is a pair, such as the long s.
    return map_characters(text, [](char32_t c) { return lower(upper(c)); });
}

bool equal_ignoring_case(std::string_view left, std::string_view right) {
    if (ascii::contains_all(left) && ascii::contains_all(right)) {
        return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                          [](char a, char b) { return ascii::lower(a) == ascii::lower(b); });
    }
    return fold_case(left) == fold_case(right);
}

std::string trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string one_line(std::string_view text) {
    const std::string_view breaks = "\r\n";
    std::string line;
    for (std::size_t at = 0; (at = text.find_first_not_of(breaks, at)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(breaks, at), text.size());
        if (!line.empty()) line += ' ';
        line += text.substr(at, end - at);
        at = end;
    }
    return line;
}

bool is_blank(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

std::string double_apostrophes(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        result += c;
        if (c == '\'') result += c;
    }
    return result;
}

} // namespace tarvello
