#pragma once

#include "text/regional_settings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Money and percentages of the electronic invoice. They are whole numbers: an invoice that is stored has
/// been rounded already, and nothing is computed anew from what it says.
namespace tarvello::e_invoice {

/// Whole cents.
using Cents = std::int64_t;
/// A percentage in hundredths: 2200 is 22 %.
using Rate = int;

/// What a stored amount text such as "€ 1.234,56" shows, by the amount reading.
/// @return nothing if the text is no amount, or has more than the eleven digits before the point that the
///         structure has room for
std::optional<Cents> read_cents(std::string_view text, const RegionalSettings& regional);

/// A stored percentage, by the leading-number rule: "20% (su 75% imp.)" reads 2000, an empty text 0.
/// @return nothing if it has more than two decimals or is above 100
std::optional<Rate> read_rate(std::string_view text);

/// The percentage of an amount, rounded half away from zero to the cent.
Cents percent_of(Cents amount, Rate rate);

/// As the structure writes them: 1234.56, -0.05; 22.00.
std::string amount_text(Cents amount);
std::string rate_text(Rate rate);

/// Reads them back. @return nothing if the text is not of that form
std::optional<Cents> amount_of(std::string_view text);
std::optional<Rate> rate_of(std::string_view text);

/// As an Italian reader expects them: € 1.234,56; 22%, 4,5%.
std::string shown_amount(Cents amount);
std::string shown_rate(Rate rate);

} // namespace tarvello::e_invoice
