#pragma once

#include "text/dates.h"

#include <span>
#include <string>
#include <string_view>

/// The codes that the electronic invoice speaks in, with their words and the days on which they hold. What
/// the program never writes is not here. Source: the official format of the invoice, version 1.2.3
/// (specifications 1.9 of the tax office), and what is named beside each.
namespace tarvello::e_invoice {

inline constexpr Date ever_since = make_date(1970, 1, 1);
inline constexpr Date for_ever = make_date(9999, 12, 31);

struct Code {
    std::string_view code;
    std::string_view words;
    Date from = ever_since; ///< first and last day of invoices that may bear it
    Date until = for_ever;
};

/// The nature of an amount without VAT.
struct Nature : Code {
    std::string_view law;         ///< words for RiferimentoNormativo; empty if they depend on the case
    bool on_stamp_list = false;   ///< counts for the stamp duty by the tax office's list
    bool under_stamp_law = false; ///< counts by the law, as the professional bodies read it
};

/// A social security fund.
struct Fund : Code {
    std::string_view usual_rate; ///< for a hint; empty where nothing is charged or known
};

struct Country {
    std::string_view code;
    std::string_view name;
    bool european_union;
};

std::span<const Code> document_kinds();      // TipoDocumento
std::span<const Code> tax_regimes();         // RegimeFiscale
std::span<const Code> withholding_kinds();   // TipoRitenuta
std::span<const Code> withholding_reasons(); // CausalePagamento: letters of the yearly certificate
std::span<const Code> payment_terms();       // CondizioniPagamento
std::span<const Code> payment_ways();        // ModalitaPagamento
std::span<const Code> vat_due();             // EsigibilitaIVA
std::span<const Nature> natures();           // Natura
std::span<const Fund> funds();               // TipoCassa
std::span<const Country> countries();        // Nazione, IdPaese; with the prefixes EL and XI of VAT numbers

/// The entry of that code; null if there is none.
template <typename Entries>
auto find_code(const Entries& entries, std::string_view code) {
    for (const auto& entry : entries) {
        if (entry.code == code) return &entry;
    }
    return static_cast<decltype(&*entries.begin())>(nullptr);
}

/// True if the list has that code and it holds on that day.
template <typename Entries>
bool holds(const Entries& entries, std::string_view code, const Date& day) {
    const auto* const entry = find_code(entries, code);
    return entry && entry->from <= day && day <= entry->until;
}

/// The words of a code with the code behind them, "parcella (TD06)"; a code that is not in the list as it
/// stands, an empty one as the empty text.
template <typename Entries>
std::string in_words(const Entries& entries, std::string_view code) {
    const auto* const entry = find_code(entries, code);
    return entry ? std::string(entry->words) + " (" + std::string(code) + ")" : std::string(code);
}

bool in_european_union(std::string_view country);

/// The flat-rate regime and the one before it: no VAT, no withholding.
bool is_flat_rate(std::string_view regime);

} // namespace tarvello::e_invoice
