#include "e_invoice/amounts.h"

#include "failure.h"
#include "text/currency.h"
#include "text/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tarvello::e_invoice {
namespace {

constexpr Cents beyond_all_amounts = 10'000'000'000'000; // eleven digits before the point
constexpr Rate whole = 10'000;                           // 100 %

std::string with_two_decimals(std::int64_t hundredths, char separator) {
    const std::int64_t size = std::abs(hundredths);
    std::string text = hundredths < 0 ? "-" : "";
    text += std::to_string(size / 100);
    text += separator;
    text += static_cast<char>('0' + size / 10 % 10);
    text += static_cast<char>('0' + size % 10);
    return text;
}

/// Digits, a point, two digits and then nothing but zeros.
std::optional<std::int64_t> hundredths_of(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    if (point == 0 || point == std::string_view::npos || point > 11 || text.size() < point + 3) return {};
    if (text.find_first_not_of('0', point + 3) != std::string_view::npos) return {};
    std::string digits(text.substr(0, point + 3));
    digits.erase(point, 1);
    if (digits.find_first_not_of("0123456789") != std::string::npos) return {};
    std::int64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return negative ? -value : value;
}

} // namespace

std::optional<Cents> read_cents(std::string_view text, const RegionalSettings& regional) {
    try {
        const double cents = std::round(read_amount(text, regional) * 100);
        if (std::fabs(cents) >= static_cast<double>(beyond_all_amounts)) return {};
        return static_cast<Cents>(cents);
    } catch (const Failure&) {
        return {}; // no amount: whoever asks has words for it
    }
}

std::optional<Rate> read_rate(std::string_view text) {
    const double hundredths = leading_number(text) * 100;
    const double rounded = std::round(hundredths);
    if (rounded > whole || std::fabs(hundredths - rounded) > 1e-6) return {};
    return static_cast<Rate>(rounded);
}

Cents percent_of(Cents amount, Rate rate) {
    const Cents product = amount * rate;
    const Cents half = product < 0 ? -whole / 2 : whole / 2;
    return (product + half) / whole;
}

std::string amount_text(Cents amount) { return with_two_decimals(amount, '.'); }

std::string rate_text(Rate rate) { return with_two_decimals(rate, '.'); }

std::optional<Cents> amount_of(std::string_view text) { return hundredths_of(text); }

std::optional<Rate> rate_of(std::string_view text) {
    const auto read = hundredths_of(text);
    if (!read || *read < 0 || *read > whole) return {};
    return static_cast<Rate>(*read);
}

std::string shown_amount(Cents amount) {
    return currency_text(static_cast<double>(amount) / 100, RegionalSettings());
}

std::string shown_rate(Rate rate) {
    std::string text = with_two_decimals(rate, ',');
    while (text.ends_with('0')) text.pop_back();
    if (text.ends_with(',')) text.pop_back();
    return text + "%";
}

} // namespace tarvello::e_invoice
