#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvello {

/// An amount of money, exact: whole ten-thousandths of the unit, as the currency columns of Access hold them.
/// Amounts are added and compared as whole numbers, so that no cent is lost on the way.
struct Amount {
    std::int64_t ten_thousandths = 0;

    static constexpr Amount of_cents(std::int64_t cents) { return {cents * 100}; }

    constexpr auto operator<=>(const Amount&) const = default;
    constexpr Amount operator-() const { return {-ten_thousandths}; }
    constexpr Amount& operator+=(Amount other) {
        ten_thousandths += other.ten_thousandths;
        return *this;
    }
    constexpr Amount& operator-=(Amount other) { return *this += -other; }
    friend constexpr Amount operator+(Amount left, Amount right) { return left += right; }
    friend constexpr Amount operator-(Amount left, Amount right) { return left -= right; }
};

/// The nearest amount, half to even. @return nothing if it is past the range
std::optional<Amount> nearest_amount(double number);
/// The nearest amount to a decimal number such as -1234.56, half to even: sign, digits, at most one point.
/// @return nothing if the text is no such number, or past the range
std::optional<Amount> decimal_amount(std::string_view text);
/// The plain decimal number, a point as decimal mark and only the digits it needs: 1234.5
std::string decimal_text(Amount amount);

} // namespace tarvello
