#include "text/numbers.h"

#include "failure.h"
#include "text/ascii.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace tarvello {

double leading_number(std::string_view text) {
    std::string digits;
    bool point_seen = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n') continue;
        if (c == '.' && !point_seen) {
            point_seen = true;
        } else if (!ascii::is_digit(c)) {
            break;
        }
        digits += c;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc::result_out_of_range) {
        const bool too_large = digits.find_first_of("123456789") < digits.find('.');
        return too_large ? std::numeric_limits<double>::infinity() : 0; // the rest is too small
    }
    return error == std::errc{} ? number : 0;
}

std::int16_t to_int16(double number) {
    const double rounded = std::nearbyint(number); // half to even: the rounding mode is never changed
    if (!(rounded >= std::numeric_limits<std::int16_t>::min() &&
          rounded <= std::numeric_limits<std::int16_t>::max())) {
        throw Failure(failure_number::overflow, "Tarvello",
                      "Il numero " + plain_number(number) + " è fuori dai limiti: il massimo è 32767.");
    }
    return static_cast<std::int16_t>(rounded);
}

std::int16_t leading_int16(std::string_view text) { return to_int16(leading_number(text)); }

std::string plain_number(double number) {
    char buffer[400];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed);
    return error == std::errc{} ? std::string(buffer, end) : std::string("0");
}

} // namespace tarvello
