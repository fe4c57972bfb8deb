#include "invoices/invoice_amounts.h"

#include "preferences/rates.h"
#include "text/currency.h"
#include "text/numbers.h"

namespace tarvello::invoice_amounts {
namespace {

double sum(const Lines& lines, const RegionalSettings& regional) {
    double total = 0;
    for (const std::string_view line : lines) {
        if (!line.empty()) total += read_amount(line, regional);
    }
    return total;
}

/// Divided first and multiplied after: the other order gives other last bits.
double percent_of(double amount, double percentage) { return (amount / 100) * percentage; }

} // namespace

std::string rivalsa(const Lines& lines, std::string_view percentage, const RegionalSettings& regional) {
    return currency_text(percent_of(sum(lines, regional), leading_number(percentage)), regional);
}

std::string imponibile(const Lines& lines, std::optional<std::string_view> rivalsa, bool excluded,
                       const RegionalSettings& regional) {
    const double services = sum(lines, regional);
    const double surcharge = rivalsa ? read_amount(*rivalsa, regional) : 0;
    return currency_text(excluded ? services : surcharge + services, regional);
}

std::string iva(std::string_view imponibile, std::string_view rate, const RegionalSettings& regional) {
    const double base = read_amount(imponibile, regional);
    return currency_text(percent_of(base, rate == rates::exempt ? 0 : leading_number(rate)), regional);
}

std::string totale(std::string_view imponibile, std::string_view iva, std::optional<std::string_view> spese,
                   const RegionalSettings& regional) {
    const double base = read_amount(imponibile, regional);
    const double tax = read_amount(iva, regional);
    const double expenses = spese ? read_amount(*spese, regional) : 0;
    return currency_text((base + tax) + expenses, regional);
}

Ritenuta ritenuta(const Lines& lines, std::optional<std::string_view> rivalsa,
                  std::optional<std::string_view> spese, std::string_view percentage, std::string_view share,
                  const RegionalSettings& regional) {
    double base = sum(lines, regional);
    if (rivalsa) base += read_amount(*rivalsa, regional);
    if (spese) base += read_amount(*spese, regional);
    base = percent_of(base, leading_number(share));
    const double tax = percent_of(base, leading_number(percentage));
    return {.base = currency_text(base, regional), .amount = currency_text(tax, regional)};
}

std::string netto(std::string_view totale, std::string_view ritenuta, const RegionalSettings& regional) {
    const double total = totale.empty() ? 0 : read_amount(totale, regional);
    const double tax = ritenuta.empty() ? 0 : read_amount(ritenuta, regional);
    return currency_text(total - tax, regional);
}

std::string ritenuta_base_shown(std::string_view ritenuta, double percentage,
                                const RegionalSettings& regional) {
    return currency_text((read_amount(ritenuta, regional) * 100) / percentage, regional);
}

} // namespace tarvello::invoice_amounts
