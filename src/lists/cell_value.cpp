#include "lists/cell_value.h"

#include "text/ascii.h"

#include <array>
#include <charconv>

namespace tarvello::lists {
namespace {

/// Takes `piece` off the start of the text, if it stands there.
bool take(std::string_view& text, std::string_view piece) {
    if (piece.empty() || !text.starts_with(piece)) return false;
    text.remove_prefix(piece.size());
    return true;
}

constexpr std::string_view no_break_space = "\u00A0";

} // namespace

std::optional<double> shown_number(std::string_view text, const RegionalSettings& regional) {
    std::array<char, 40> digits{'-'};
    std::size_t size = 1; // the first is for a sign
    bool negative = false;
    bool decimals = false;
    bool any = false;
    while (!text.empty()) {
        const char first = text.front();
        if (ascii::is_digit(first)) {
            if (size == digits.size()) return std::nullopt;
            digits[size++] = first;
            any = true;
        } else if (take(text, regional.decimal_separator)) {
            if (decimals || size == digits.size()) return std::nullopt;
            decimals = true;
            digits[size++] = '.';
            continue;
        } else if (take(text, regional.thousands_separator) || take(text, regional.currency_symbol) ||
                   take(text, no_break_space)) {
            continue;
        } else if (first == '-' && !negative) {
            negative = true;
        } else if (first != ' ' && !(first == '%' && any && text.size() == 1)) {
            return std::nullopt;
        }
        text.remove_prefix(1);
    }
    if (!any) return std::nullopt;
    double value = 0;
    const char* const begin = digits.data() + (negative ? 0 : 1);
    const auto [end, error] = std::from_chars(begin, digits.data() + size, value);
    return error == std::errc() && end == digits.data() + size ? std::optional(value) : std::nullopt;
}

CellValue cell_value(std::string_view text, ColumnKind kind, const RegionalSettings& regional) {
    if (text.find_first_not_of(' ') == std::string_view::npos) return {};
    if (kind == ColumnKind::date) {
        if (const auto date = read_date(text, regional)) return *date;
    } else if (kind != ColumnKind::text) {
        if (const auto number = shown_number(text, regional)) return *number;
    }
    return text;
}

} // namespace tarvello::lists
