#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvello {

/// The leading-number reading. Blanks, tabs and line feeds are skipped wherever they stand, digits with at
/// most one point as decimal mark are taken, and the first other character ends the number. It knows no
/// regional settings and never fails: no number at all reads 0. "19,5" reads 19, "1 000" reads 1000.
double leading_number(std::string_view text);

/// Rounds half to even into a signed 16-bit integer, the width of identifiers and invoice numbers in the
/// forms.
/// @throws Failure (overflow) past the range
std::int16_t to_int16(double number);

/// to_int16 of the leading-number reading.
std::int16_t leading_int16(std::string_view text);

/// A number as plain text: no thousands separators, a point as decimal mark, only the digits it needs.
std::string plain_number(double number);

} // namespace tarvello
