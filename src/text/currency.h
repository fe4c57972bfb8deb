#pragma once

#include "text/amount.h"
#include "text/regional_settings.h"

#include <string>
#include <string_view>

/// The conversions between amounts and their texts. Everything that an invoice shows or stores has gone
/// through these, so they decide the cents.
namespace tarvello {

/// Currency text: always two decimals, separators, symbol and negative form by the regional settings; 1234.5
/// gives "€ 1.234,50". Rounds half away from zero on the decimal form of the value, taken to 15 significant
/// digits: 2.005 gives "€ 2,01" although its double lies just below.
/// @throws Failure (overflow) if the number is not finite
std::string currency_text(double amount, const RegionalSettings& regional);

/// Currency text of an exact amount, rounded to cents half away from zero.
std::string currency_text(Amount amount, const RegionalSettings& regional);

/// Currency text of a typed text such as "1.234,5", "12,345" or "€ 7": the symbol and blanks are skipped, the
/// thousands separator is dropped wherever it stands, the decimal separator ends the integer part. One sign,
/// at either end, is taken.
/// @throws Failure (type mismatch) if the text is no number in this sense
std::string currency_text(std::string_view typed, const RegionalSettings& regional);

/// Amount reading: the value that the currency text of `text` shows, so always a whole number of cents, as
/// the nearest double. "12,345" reads 12.35; "12.50" reads 1250 under Italian settings: a person writes the
/// point to part thousands. In numbers that the program keeps as text it is the decimal mark, and both
/// text/numbers.h and the store read "12.50" as 12.5.
/// @throws Failure (type mismatch) if the text is no number
double read_amount(std::string_view text, const RegionalSettings& regional);

} // namespace tarvello
