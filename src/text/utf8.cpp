#include "text/utf8.h"

#include <utf8proc.h>

namespace tarvello::utf8 {
namespace {

constexpr char32_t replacement = 0xFFFD;

/// Reads one code point at `at` and moves `at` behind it.
char32_t next(std::string_view text, std::size_t& at) {
    const auto first = static_cast<unsigned char>(text[at]);
    if (first < 0x80) {
        ++at;
        return first;
    }
    utf8proc_int32_t code = 0;
    const auto bytes = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at),
                                        static_cast<utf8proc_ssize_t>(text.size() - at), &code);
    if (bytes <= 0) {
        ++at;
        return replacement;
    }
    at += static_cast<std::size_t>(bytes);
    return static_cast<char32_t>(code);
}

} // namespace

std::size_t length(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) next(text, at);
    return count;
}

std::size_t utf16_length(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size();) count += next(text, at) < 0x10000 ? 1 : 2;
    return count;
}

std::size_t byte_of(std::string_view text, std::size_t position) {
    std::size_t at = 0;
    for (; position > 0 && at < text.size(); --position) next(text, at);
    return at;
}

std::string left(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, byte_of(text, count)));
}

std::string mid(std::string_view text, std::size_t position, std::size_t count) {
    const std::string_view rest = text.substr(byte_of(text, position));
    return count == std::string_view::npos ? std::string(rest) : left(rest, count);
}

std::u32string decode(std::string_view text) {
    std::u32string code_points;
    code_points.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) code_points += next(text, at);
    return code_points;
}

void append(std::string& text, char32_t code_point) {
    if (code_point < 0x80) {
        text += static_cast<char>(code_point);
        return;
    }
    utf8proc_uint8_t bytes[4];
    auto size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(code_point), bytes);
    if (size == 0) size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(replacement), bytes);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

std::string encode(std::u32string_view code_points) {
    std::string text;
    text.reserve(code_points.size());
    for (const char32_t code : code_points) append(text, code);
    return text;
}

bool valid(std::string_view text) {
    utf8proc_int32_t code = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const auto bytes = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at),
                                            static_cast<utf8proc_ssize_t>(text.size() - at), &code);
        if (bytes <= 0) return false;
        at += static_cast<std::size_t>(bytes);
    }
    return true;
}

} // namespace tarvello::utf8
