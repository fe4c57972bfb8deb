#pragma once

#include "e_invoice/checks.h"

#include <algorithm>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

/// The controls as tables: which code, on which field, in which words, and when.
namespace tarvello::e_invoice {

/// What a control looks at.
struct Case {
    const FatturaElettronicaType& document;
    const Circumstances& circumstances;

    const DatiTrasmissioneType& sending = document.FatturaElettronicaHeader.DatiTrasmissione;
    const CedentePrestatoreType& issuer = document.FatturaElettronicaHeader.CedentePrestatore;
    const CessionarioCommittenteType& customer = document.FatturaElettronicaHeader.CessionarioCommittente;
    const DatiGeneraliType& references = document.FatturaElettronicaBody.DatiGenerali;
    const DatiGeneraliDocumentoType& general = references.DatiGeneraliDocumento;
    const std::vector<DettaglioLineeType>& lines =
        document.FatturaElettronicaBody.DatiBeniServizi.DettaglioLinee;
    const std::vector<DatiRiepilogoType>& summaries =
        document.FatturaElettronicaBody.DatiBeniServizi.DatiRiepilogo;
    const std::vector<DatiPagamentoType>& payments = document.FatturaElettronicaBody.DatiPagamento;

    const std::string& regime() const { return issuer.DatiAnagrafici.RegimeFiscale; }
    bool to_administration() const { return sending.FormatoTrasmissione == "FPA12"; }
    /// The country of the customer's VAT number; empty without one.
    std::string vat_country() const {
        const auto& number = customer.DatiAnagrafici.IdFiscaleIVA;
        return number ? number->IdPaese : std::string();
    }
    /// The customer's VAT number, if it is an Italian one; else empty.
    std::string italian_vat() const {
        return vat_country() == "IT" ? customer.DatiAnagrafici.IdFiscaleIVA->IdCodice : std::string();
    }
};

/// Where a control hits: a line of the document, or the document (0), with what it saw.
struct Spot {
    int line = 0;
    std::string seen;
};
using Spots = std::vector<Spot>;

struct SdiControl {
    const char* code; ///< of the exchange system; empty for one of our own
    Severity severity;
    Field field;
    const char* words; ///< what it saw stands behind them
    Spots (*find)(const Case&);
    bool of_sums = false; ///< says nothing where an amount could not be read
};

inline constexpr auto refusal = Severity::refusal;
inline constexpr auto warning = Severity::warning;

std::span<const SdiControl> controls_of_parties();
std::span<const SdiControl> controls_of_document();
std::span<const SdiControl> controls_of_amounts();

inline Spots hit_if(bool wrong, const std::string& seen = {}) { return wrong ? Spots{{0, seen}} : Spots{}; }

template <typename Parts, typename Predicate>
bool any(const Parts& parts, Predicate predicate) {
    return std::any_of(parts.begin(), parts.end(), predicate);
}

/// A spot for each line of the document that is wrong.
template <typename Wrong>
Spots lines_that(const Case& c, Wrong wrong) {
    Spots spots;
    for (const DettaglioLineeType& line : c.lines) {
        if (wrong(line)) spots.push_back({line.NumeroLinea, {}});
    }
    return spots;
}

} // namespace tarvello::e_invoice
