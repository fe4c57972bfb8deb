#include "store/access/stored_text.h"

#include "text/utf8.h"

namespace tarvello::store::access {
namespace {

constexpr char32_t replacement = 0xFFFD;
/// What compressed texts start with.
constexpr std::uint8_t mark[] = {0xFF, 0xFE};

bool is_high(std::uint32_t unit) { return (unit & 0xFC00) == 0xD800; }
bool is_low(std::uint32_t unit) { return (unit & 0xFC00) == 0xDC00; }

void append_utf16(Bytes bytes, std::string& into) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const std::uint32_t unit = load16(bytes.data() + i);
        if (unit < 0x80) {
            into.push_back(static_cast<char>(unit));
        } else if (is_high(unit) && i + 3 < bytes.size() && is_low(load16(bytes.data() + i + 2))) {
            const std::uint32_t low = load16(bytes.data() + i + 2);
            utf8::append(into, 0x10000 + ((unit & 0x3FF) << 10) + (low & 0x3FF));
            i += 2;
        } else {
            utf8::append(into, is_high(unit) || is_low(unit) ? replacement : static_cast<char32_t>(unit));
        }
    }
}

/// A text that itself starts with the mark, which is the character U+FEFF: a compressed one that switches to
/// two bytes a character at once.
std::vector<std::uint8_t> behind_mark(const std::vector<std::uint8_t>& wide) {
    std::vector<std::uint8_t> bytes{mark[0], mark[1], 0};
    for (std::size_t i = 0; i < wide.size(); i += 2) {
        if (wide[i] == 0) {
            throw not_writable("Il testo comincia con il carattere invisibile U+FEFF, che un file Access non "
                               "può tenere insieme con gli altri.");
        }
        bytes.push_back(wide[i]);
        bytes.push_back(wide[i + 1]);
    }
    return bytes;
}

} // namespace

std::string decode_utf16(Bytes bytes) {
    std::string text;
    append_utf16(bytes, text);
    return text;
}

std::vector<std::uint8_t> encode_utf16(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() * 2);
    const auto put = [&bytes](std::uint32_t unit) {
        bytes.push_back(static_cast<std::uint8_t>(unit));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    };
    for (const char32_t point : utf8::decode(text)) {
        if (point < 0x10000) {
            put(point);
        } else {
            put(0xD800 + ((point - 0x10000) >> 10));
            put(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return bytes;
}

void decode_text(Bytes bytes, std::string& into) {
    into.clear();
    if (bytes.size() < 2 || bytes[0] != mark[0] || bytes[1] != mark[1]) {
        append_utf16(bytes, into);
        return;
    }
    // One byte a character, a 0 byte switching to two bytes a character and back.
    bytes = bytes.subspan(2);
    bool one_byte = true;
    std::vector<std::uint8_t> wide; // surrogates may stand in one run only
    std::size_t i = 0;
    while (i < bytes.size()) {
        if (one_byte) {
            if (bytes[i] == 0) {
                one_byte = false;
            } else if (bytes[i] < 0x80) {
                into.push_back(static_cast<char>(bytes[i]));
            } else {
                utf8::append(into, bytes[i]);
            }
            ++i;
            continue;
        }
        // Only the low byte of a wide character can be 0, and then it switches back.
        if (bytes[i] == 0) {
            append_utf16(wide, into);
            wide.clear();
            one_byte = true;
            ++i;
            continue;
        }
        if (i + 1 >= bytes.size()) break;
        wide.push_back(bytes[i]);
        wide.push_back(bytes[i + 1]);
        i += 2;
    }
    append_utf16(wide, into);
}

std::vector<std::uint8_t> encode_text(std::string_view text, bool compress) {
    std::vector<std::uint8_t> wide = encode_utf16(text);
    if (wide.size() >= 2 && wide[0] == mark[0] && wide[1] == mark[1]) return behind_mark(wide);
    if (!compress) return wide;
    // Only texts that stay in the one-byte form throughout are compressed: the switch saves little.
    std::vector<std::uint8_t> narrow(std::begin(mark), std::end(mark));
    narrow.reserve(2 + wide.size() / 2);
    for (std::size_t i = 0; i < wide.size(); i += 2) {
        if (wide[i] == 0 || wide[i + 1] != 0) return wide;
        narrow.push_back(wide[i]);
    }
    return narrow.size() < wide.size() ? narrow : wide;
}

} // namespace tarvello::store::access
