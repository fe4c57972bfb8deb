#pragma once

#include "text/regional_settings.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The arithmetic of an invoice, step by step. Every step reads texts and yields texts, so that each has
/// been rounded to cents before the next one reads it: that chain decides the cents, and no step may be
/// joined with another. Amounts go through read_amount and currency_text, percentages through leading_number.
///
/// Every function throws Failure where an amount cannot be read or a result is no finite number.
namespace tarvello::invoice_amounts {

/// The amount texts of the five service lines. An empty one counts nothing.
using Lines = std::array<std::string_view, 5>;

/// The largest amount that can be typed: what an invoice makes of five of them can still be shown to the
/// cent.
inline constexpr double largest = 999'999'999'999.99;

/// The pension surcharge on the sum of the lines.
/// @param percentage  an empty text counts 0
std::string rivalsa(const Lines& lines, std::string_view percentage, const RegionalSettings& regional);

/// The taxable base: the sum of the lines, and the surcharge where it is part of the base.
/// @param rivalsa   text of the surcharge, if the invoice carries one: it must be an amount even when it
/// stays out
/// @param excluded  the surcharge stays out of the base
std::string imponibile(const Lines& lines, std::optional<std::string_view> rivalsa, bool excluded,
                       const RegionalSettings& regional);

/// The VAT. The rate "Esente", in this spelling, counts 0.
std::string iva(std::string_view imponibile, std::string_view rate, const RegionalSettings& regional);

/// The total of the taxable base, the VAT and the anticipated expenses. A surcharge that is excluded from the
/// base is not in it.
/// @param spese  text of the expenses, if the invoice carries them
std::string totale(std::string_view imponibile, std::string_view iva, std::optional<std::string_view> spese,
                   const RegionalSettings& regional);

struct Ritenuta {
    std::string base;
    std::string amount;
};

/// The withholding tax on a share of the sum of the lines and of what else counts in its base.
/// @param rivalsa     text of the surcharge, if it counts in the base
/// @param spese       text of the expenses, if they count in the base
/// @param percentage  rate of the tax
/// @param share       percentage of the base on which it is charged
Ritenuta ritenuta(const Lines& lines, std::optional<std::string_view> rivalsa,
                  std::optional<std::string_view> spese, std::string_view percentage, std::string_view share,
                  const RegionalSettings& regional);

/// What is left to pay. An empty text counts 0.
std::string netto(std::string_view totale, std::string_view ritenuta, const RegionalSettings& regional);

/// The base of a withholding as it is shown for a stored invoice, rebuilt from its amount.
/// @param percentage  rate of the tax
std::string ritenuta_base_shown(std::string_view ritenuta, double percentage,
                                const RegionalSettings& regional);

} // namespace tarvello::invoice_amounts
