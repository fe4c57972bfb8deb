#include "e_invoice/control.h"

#include <cstdlib>
#include <set>

namespace tarvello::e_invoice {
namespace {

constexpr auto rate_in = [](const auto& part) { return part.AliquotaIVA; };
constexpr auto nature_in = [](const auto& part) { return part.Natura; };

bool lacks_nature(const auto& part) { return part.AliquotaIVA == 0 && part.Natura.empty(); }
bool has_rate_and_nature(const auto& part) { return part.AliquotaIVA != 0 && !part.Natura.empty(); }
bool is_below_one(const auto& part) { return part.AliquotaIVA > 0 && part.AliquotaIVA < 100; }

/// The rates, or the natures, of lines and funds.
template <typename Value>
std::set<Value> used(const Case& c, auto get) {
    std::set<Value> values;
    for (const auto& line : c.lines) values.insert(get(line));
    for (const auto& fund : c.general.DatiCassaPrevidenziale) values.insert(get(fund));
    return values;
}

/// True if one of them is in no summary.
template <typename Value>
bool is_without_summary(const Case& c, auto get) {
    return any(used<Value>(c, get), [&](const Value& value) {
        return !any(c.summaries, [&](const auto& summary) { return get(summary) == value; });
    });
}

/// The same, but for parts that have no nature at all.
bool has_nature_without_summary(const Case& c) {
    return any(used<std::string>(c, nature_in), [&](const std::string& nature) {
        return !nature.empty() &&
               !any(c.summaries, [&](const auto& summary) { return summary.Natura == nature; });
    });
}

std::string instead_of(Cents found, Cents expected) {
    return shown_amount(found) + " invece di " + shown_amount(expected) + ".";
}

/// Lines and funds of a rate and a nature against their summary, to the cent; the exchange system allows less
/// than a euro, and looks at the rate alone.
Spots taxable_amounts(const Case& c) {
    Spots spots;
    for (const DatiRiepilogoType& summary : c.summaries) {
        const auto belongs = [&](const auto& part) {
            return part.AliquotaIVA == summary.AliquotaIVA && part.Natura == summary.Natura;
        };
        Cents sum = 0;
        for (const auto& line : c.lines) sum += belongs(line) ? line.PrezzoTotale : 0;
        for (const auto& fund : c.general.DatiCassaPrevidenziale)
            sum += belongs(fund) ? fund.ImportoContributoCassa : 0;
        if (sum != summary.ImponibileImporto)
            spots.push_back({0, instead_of(summary.ImponibileImporto, sum)});
    }
    return spots;
}

Spots taxes(const Case& c) {
    Spots spots;
    for (const DatiRiepilogoType& summary : c.summaries) {
        const Cents tax = percent_of(summary.ImponibileImporto, summary.AliquotaIVA);
        if (tax != summary.Imposta) spots.push_back({0, instead_of(summary.Imposta, tax)});
    }
    return spots;
}

Spots total(const Case& c) {
    Cents sum = 0;
    for (const DatiRiepilogoType& summary : c.summaries) sum += summary.ImponibileImporto + summary.Imposta;
    const Cents stated = c.general.ImportoTotaleDocumento.value_or(sum);
    return hit_if(stated != sum, instead_of(stated, sum));
}

/// What is to be paid: without the withholding, and without the VAT that the customer pays to the State.
Spots net(const Case& c) {
    if (c.payments.empty() || c.payments.front().DettaglioPagamento.empty()) return {};
    Cents due = c.general.ImportoTotaleDocumento.value_or(0);
    for (const DatiRitenutaType& withholding : c.general.DatiRitenuta) due -= withholding.ImportoRitenuta;
    for (const DatiRiepilogoType& summary : c.summaries)
        due -= summary.EsigibilitaIVA == "S" ? summary.Imposta : 0;
    const Cents stated = c.payments.front().DettaglioPagamento.front().ImportoPagamento;
    return hit_if(stated != due, instead_of(stated, due));
}

Spots surcharges(const Case& c) {
    Spots spots;
    for (const DatiCassaPrevidenzialeType& fund : c.general.DatiCassaPrevidenziale) {
        const Cents expected = percent_of(fund.ImponibileCassa.value_or(0), fund.AlCassa);
        // Percentages are taken in floating point when the invoice is calculated: a cent is no fault.
        if (std::llabs(fund.ImportoContributoCassa - expected) > 1)
            spots.push_back({0, instead_of(fund.ImportoContributoCassa, expected)});
    }
    return spots;
}

bool is_unusual(const DettaglioLineeType& line) {
    constexpr Rate usual[] = {0, 400, 500, 1000, 2200};
    return std::find(std::begin(usual), std::end(usual), line.AliquotaIVA) == std::end(usual);
}

constexpr SdiControl amount_controls[] = {
    {"00400", refusal, Field::natura,
     "Manca la natura dell'operazione: un importo senza IVA deve dire perché lo è. Sceglierla dall'elenco.",
     [](const Case& c) { return lines_that(c, [](const auto& line) { return lacks_nature(line); }); }},
    {"00401", refusal, Field::natura, "Un importo con IVA non può avere una natura: toglierla.",
     [](const Case& c) { return lines_that(c, [](const auto& line) { return has_rate_and_nature(line); }); }},
    {"00413", refusal, Field::natura, "Manca la natura della rivalsa, che è senza IVA.",
     [](const Case& c) {
         return hit_if(
             any(c.general.DatiCassaPrevidenziale, [](const auto& fund) { return lacks_nature(fund); }));
     }},
    {"00414", refusal, Field::natura, "La rivalsa ha l'IVA e non può avere una natura: toglierla.",
     [](const Case& c) {
         return hit_if(any(c.general.DatiCassaPrevidenziale,
                           [](const auto& fund) { return has_rate_and_nature(fund); }));
     }},
    {"00429", refusal, Field::natura, "Manca la natura nel riepilogo di un importo senza IVA.",
     [](const Case& c) { return hit_if(any(c.summaries, [](const auto& s) { return lacks_nature(s); })); }},
    {"00430", refusal, Field::natura, "Il riepilogo di un importo con IVA non può avere una natura.",
     [](const Case& c) {
         return hit_if(any(c.summaries, [](const auto& s) { return has_rate_and_nature(s); }));
     }},
    {"00424", refusal, Field::aliquota_iva,
     "L'aliquota IVA è inferiore a 1%: va scritta come percentuale, per esempio 22.",
     [](const Case& c) {
         const auto below = [](const auto& part) { return is_below_one(part); };
         return hit_if(any(c.lines, below) || any(c.general.DatiCassaPrevidenziale, below) ||
                       any(c.summaries, below));
     }},
    {"00423", refusal, Field::importo, "Il prezzo totale di una riga non è quello unitario.",
     [](const Case& c) {
         return lines_that(c, [](const auto& line) { return line.PrezzoTotale != line.PrezzoUnitario; });
     }},
    {"00419", refusal, Field::aliquota_iva, "Ci sono meno riepiloghi che aliquote IVA.",
     [](const Case& c) { return hit_if(c.summaries.size() < used<Rate>(c, rate_in).size()); }},
    {"00443", refusal, Field::aliquota_iva, "Un'aliquota IVA non ha il suo riepilogo.",
     [](const Case& c) { return hit_if(is_without_summary<Rate>(c, rate_in)); }},
    {"00444", refusal, Field::natura, "Una natura non ha il suo riepilogo.",
     [](const Case& c) { return hit_if(has_nature_without_summary(c)); }},
    {"00422", refusal, Field::imponibile,
     "L'imponibile non è la somma degli importi e della rivalsa. Aprire la fattura, premere \"Modifica "
     "Dati\" e "
     "\"Aggiorna Dati\", poi ripetere:",
     taxable_amounts, true},
    {"00421", refusal, Field::imposta_iva,
     "L'IVA non è l'aliquota sull'imponibile. Aprire la fattura, premere \"Modifica Dati\" e \"Aggiorna "
     "Dati\", poi "
     "ripetere:",
     taxes, true},
    {"", refusal, Field::totale,
     "Il totale non è la somma di imponibile, IVA e spese. Aprire la fattura, premere \"Modifica Dati\" e "
     "\"Aggiorna "
     "Dati\", poi ripetere:",
     total, true},
    {"", warning, Field::importo_netto, "L'importo netto non è il totale meno la ritenuta:", net, true},
    {"", warning, Field::importo_rivalsa,
     "L'importo della rivalsa non è la sua percentuale sugli importi:", surcharges, true},
    {"", warning, Field::aliquota_iva,
     "L'aliquota IVA non è tra quelle in vigore (4, 5, 10, 22): controllarla.",
     [](const Case& c) { return hit_if(any(c.lines, is_unusual)); }},
};

} // namespace

std::span<const SdiControl> controls_of_amounts() { return amount_controls; }

} // namespace tarvello::e_invoice
