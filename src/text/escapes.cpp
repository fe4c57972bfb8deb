#include "text/escapes.h"

namespace tarvello {
namespace {

constexpr std::string_view meant{"\\\t\n\r\0", 5};
constexpr std::string_view letters = "\\tnr0";

} // namespace

std::string escaped(std::string_view text) {
    std::string field;
    for (const char c : text) {
        const auto place = meant.find(c);
        if (place == std::string_view::npos) {
            field += c;
        } else {
            field += '\\';
            field += letters[place];
        }
    }
    return field;
}

std::optional<std::string> unescaped(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '\\') {
            text += field[i];
            continue;
        }
        const auto place = ++i < field.size() ? letters.find(field[i]) : std::string_view::npos;
        if (place == std::string_view::npos) return std::nullopt;
        text += meant[place];
    }
    return text;
}

} // namespace tarvello
