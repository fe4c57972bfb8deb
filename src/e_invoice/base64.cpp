#include "e_invoice/base64.h"

#include <array>
#include <cstdint>

namespace tarvello::e_invoice {
namespace {

constexpr std::uint8_t skipped = 64;
constexpr std::uint8_t padding = 65;
constexpr std::uint8_t foreign = 66;

constexpr std::array<std::uint8_t, 256> make_values() {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values) value = foreign;
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    for (const char blank : {' ', '\t', '\r', '\n'}) values[static_cast<unsigned char>(blank)] = skipped;
    values['='] = padding;
    return values;
}

constexpr std::array<std::uint8_t, 256> values = make_values();

} // namespace

std::optional<std::string> decode_base64(std::string_view text) {
    std::string bytes(text.size() / 4 * 3 + 3, '\0');
    char* out = bytes.data();
    std::uint32_t bits = 0;
    unsigned count = 0;
    bool ended = false;
    for (const char character : text) {
        const std::uint8_t value = values[static_cast<unsigned char>(character)];
        if (value == skipped) continue;
        if (value == padding) {
            ended = true;
            continue;
        }
        if (value == foreign || ended) return std::nullopt;
        bits = bits << 6 | value;
        if (++count % 4 == 0) {
            *out++ = static_cast<char>(bits >> 16);
            *out++ = static_cast<char>(bits >> 8);
            *out++ = static_cast<char>(bits);
        }
    }
    if (count % 4 == 1) return std::nullopt;
    if (count % 4 >= 2) *out++ = static_cast<char>(bits >> (count % 4 == 2 ? 4 : 10));
    if (count % 4 == 3) *out++ = static_cast<char>(bits >> 2);
    bytes.resize(static_cast<std::size_t>(out - bytes.data()));
    return bytes;
}

} // namespace tarvello::e_invoice
