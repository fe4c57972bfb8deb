#include "text/amount.h"

#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tarvello {
namespace {

constexpr std::size_t decimals = 4;
constexpr double unit = 10000;

/// What the digits behind the last one kept do to it.
bool rounds_up(std::string_view cut, bool odd) {
    if (cut.empty() || cut[0] < '5') return false;
    return cut[0] > '5' || cut.find_first_not_of('0', 1) != cut.npos || odd;
}

} // namespace

std::optional<Amount> nearest_amount(double number) {
    const double scaled = std::nearbyint(number * unit); // half to even, as ever set
    if (!(std::abs(scaled) < 9.2e18)) return std::nullopt;
    return Amount{static_cast<std::int64_t>(scaled)};
}

std::optional<Amount> decimal_amount(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    std::string_view fraction = point == text.npos ? std::string_view() : text.substr(point + 1);
    if (!ascii::only_digits(whole) || !ascii::only_digits(fraction) || whole.size() + fraction.size() == 0)
        return std::nullopt;

    std::string digits = std::string(whole) + std::string(fraction.substr(0, decimals));
    fraction.remove_prefix(std::min(fraction.size(), decimals));
    digits.append(whole.size() + decimals - std::min(digits.size(), whole.size() + decimals), '0');
    std::uint64_t number = 0;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc{} || number >= most) return std::nullopt;
    if (rounds_up(fraction, number % 2 == 1)) ++number;
    const auto found = static_cast<std::int64_t>(number);
    return Amount{negative ? -found : found};
}

std::string decimal_text(Amount amount) {
    const bool negative = amount.ten_thousandths < 0;
    const auto bits = static_cast<std::uint64_t>(amount.ten_thousandths);
    std::string digits = std::to_string(negative ? -bits : bits);
    if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
    digits.insert(digits.size() - decimals, ".");
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.ends_with('.')) digits.pop_back();
    return negative ? "-" + digits : digits;
}

} // namespace tarvello
