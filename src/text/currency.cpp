#include "text/currency.h"

#include "failure.h"
#include "text/ascii.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace tarvello {
namespace {

/// A decimal number: digits without leading zeros, and how many of them stand behind the decimal mark. The
/// second may be more than there are digits, or less than none.
struct Decimal {
    bool negative = false;
    std::string digits;
    int decimals = 0;
};

[[noreturn]] void no_amount(std::string_view text) {
    throw Failure(failure_number::type_mismatch, "Importi",
                  "Il testo \"" + std::string(text) + "\" non è un importo.");
}

bool starts_with(std::string_view text, std::string_view piece) {
    return !piece.empty() && text.substr(0, piece.size()) == piece;
}

Decimal parse(std::string_view text, const RegionalSettings& regional) {
    constexpr std::string_view no_break_space = "\u00A0";
    constexpr std::string_view narrow_no_break_space = "\u202F";
    constexpr std::string_view minus_sign = "\u2212";
    Decimal number;
    bool sign = false;
    bool symbol = false;
    bool digit = false;
    bool fraction = false;
    bool closed = false;  // a sign or symbol behind the digits: no digit may follow
    bool bracket = false; // a negative amount in brackets, the second of which is still to come
    const bool brackets = regional.negative_before == "(" && regional.negative_behind == ")";
    for (std::string_view rest = text; !rest.empty();) {
        const char c = rest.front();
        if (ascii::is_digit(c)) {
            if (closed) no_amount(text);
            digit = true;
            if (c != '0' || !number.digits.empty()) number.digits += c;
            if (fraction) ++number.decimals;
            rest.remove_prefix(1);
        } else if (starts_with(rest, regional.decimal_separator)) {
            if (fraction || closed) no_amount(text);
            fraction = true;
            rest.remove_prefix(regional.decimal_separator.size());
        } else if (starts_with(rest, regional.thousands_separator)) {
            rest.remove_prefix(regional.thousands_separator.size());
        } else if (c == ' ' || c == '\t') {
            rest.remove_prefix(1);
        } else if (starts_with(rest, no_break_space) || starts_with(rest, narrow_no_break_space)) {
            rest.remove_prefix(starts_with(rest, no_break_space) ? no_break_space.size()
                                                                 : narrow_no_break_space.size());
        } else if (starts_with(rest, regional.currency_symbol)) {
            if (symbol) no_amount(text);
            symbol = true;
            closed = digit || fraction;
            rest.remove_prefix(regional.currency_symbol.size());
        } else if (c == '-' || c == '+' || starts_with(rest, minus_sign)) {
            if (sign) no_amount(text);
            sign = true;
            number.negative = c != '+';
            closed = digit || fraction;
            rest.remove_prefix(c == '-' || c == '+' ? 1 : minus_sign.size());
        } else if (brackets && c == '(') {
            if (sign || digit || fraction) no_amount(text);
            sign = bracket = number.negative = true;
            rest.remove_prefix(1);
        } else if (bracket && c == ')') {
            bracket = false;
            closed = true;
            rest.remove_prefix(1);
        } else {
            no_amount(text);
        }
    }
    if (!digit || bracket) no_amount(text);
    return number;
}

[[noreturn]] void fail_too_large() {
    throw Failure(failure_number::overflow, "Importi", "L'importo è troppo grande.");
}

/// The 15 significant digits of a double.
Decimal decimal_of(double amount) {
    if (!std::isfinite(amount)) fail_too_large();
    char buffer[32];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, std::fabs(amount), std::chars_format::scientific, 14)
            .ptr;
    // d.dddddddddddddde±xx
    Decimal number;
    number.negative = std::signbit(amount);
    number.digits = buffer[0];
    number.digits.append(buffer + 2, 14);
    int exponent = 0;
    const char* exponent_text = buffer + 17;
    std::from_chars(*exponent_text == '+' ? exponent_text + 1 : exponent_text, end, exponent);
    number.decimals = 14 - exponent;
    const auto first = number.digits.find_first_not_of('0');
    number.digits.erase(0, first == std::string::npos ? number.digits.size() : first);
    return number;
}

/// Leaves 15 significant digits, rounding half away from zero on the digits given.
void keep_significant(Decimal& number, std::size_t keep) {
    if (number.digits.size() <= keep) return;
    const bool up = number.digits[keep] >= '5';
    number.decimals -= static_cast<int>(number.digits.size() - keep);
    number.digits.resize(keep);
    if (!up) return;
    for (auto digit = number.digits.rbegin(); digit != number.digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    number.digits.insert(number.digits.begin(), '1');
}

/// The digits of the whole number of cents, rounded half away from zero; at least three of them.
std::string cents_of(Decimal number) {
    keep_significant(number, 15);
    if (number.decimals > 2) {
        const auto excess = static_cast<std::size_t>(number.decimals - 2);
        if (excess > number.digits.size()) {
            number.digits.clear();
        } else {
            // One leading zero makes room for the carry of a number below one cent.
            number.digits.insert(number.digits.begin(), '0');
            keep_significant(number, number.digits.size() - excess);
        }
    } else {
        number.digits.append(static_cast<std::size_t>(2 - number.decimals), '0');
    }
    const auto first = number.digits.find_first_not_of('0');
    number.digits.erase(0, first == std::string::npos ? number.digits.size() : first);
    if (number.digits.size() < 3) number.digits.insert(0, 3 - number.digits.size(), '0');
    return number.digits;
}

std::string layout(const std::string& cents, bool negative, const RegionalSettings& regional) {
    const std::size_t whole = cents.size() - 2;
    const bool minus = negative && cents.find_first_not_of('0') != std::string::npos;
    std::string text;
    text.reserve(cents.size() * 2 + 8);
    if (minus) text += regional.negative_before;
    if (regional.symbol_before) {
        text += regional.currency_symbol;
        if (regional.blank_beside_symbol) text += ' ';
    }
    for (std::size_t i = 0; i < whole; ++i) {
        if (i > 0 && (whole - i) % 3 == 0) text += regional.thousands_separator;
        text += cents[i];
    }
    text += regional.decimal_separator;
    text.append(cents, whole, 2);
    if (!regional.symbol_before) {
        if (regional.blank_beside_symbol) text += ' ';
        text += regional.currency_symbol;
    }
    if (minus) text += regional.negative_behind;
    return text;
}

} // namespace

std::string currency_text(double amount, const RegionalSettings& regional) {
    const Decimal number = decimal_of(amount);
    return layout(cents_of(number), number.negative, regional);
}

std::string currency_text(Amount amount, const RegionalSettings& regional) {
    const bool negative = amount.ten_thousandths < 0;
    const auto bits = static_cast<std::uint64_t>(amount.ten_thousandths);
    std::string cents = std::to_string(((negative ? -bits : bits) + 50) / 100);
    if (cents.size() < 3) cents.insert(0, 3 - cents.size(), '0');
    return layout(cents, negative, regional);
}

std::string currency_text(std::string_view typed, const RegionalSettings& regional) {
    const Decimal number = parse(typed, regional);
    return layout(cents_of(number), number.negative, regional);
}

double read_amount(std::string_view text, const RegionalSettings& regional) {
    const Decimal number = parse(text, regional);
    const std::string cents = cents_of(number);
    double amount = 0;
    if (cents.size() <= 15) {
        // Both are exact, so the quotient is the double nearest to the amount.
        std::int64_t whole = 0;
        std::from_chars(cents.data(), cents.data() + cents.size(), whole);
        amount = static_cast<double>(whole) / 100;
    } else {
        const std::string plain = cents.substr(0, cents.size() - 2) + "." + cents.substr(cents.size() - 2);
        const auto error = std::from_chars(plain.data(), plain.data() + plain.size(), amount).ec;
        if (error != std::errc{}) fail_too_large();
    }
    return number.negative && amount != 0 ? -amount : amount;
}

} // namespace tarvello
