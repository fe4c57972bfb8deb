#include "e_invoice/proposals.h"

#include "e_invoice/code_lists.h"
#include "e_invoice/from_row.h"
#include "e_invoice/row_amounts.h"
#include "e_invoice/stamp_duty.h"
#include "text/letter_case.h"

#include <utility>

namespace tarvello::e_invoice {
namespace {

/// The two euro of the stamp passed on to the customer, which the program knows only as expenses. In the
/// flat-rate regime they are revenue (answer 428/2022 of the tax office), else they are excluded as other
/// expenses are.
bool is_stamp_passed_on(const StoredInvoice& invoice, const RowAmounts& amounts) {
    return amounts.expenses == stamp_duty &&
           lower_case(invoice.Articolo_Esenzione).find("bollo") != std::string::npos;
}

RowAmounts amounts_of(const StoredInvoice& invoice, const RegionalSettings& regional) {
    std::vector<Finding> of_no_concern; // the checks will tell them
    return read_row(invoice, false, regional, of_no_concern);
}

void add_regime(std::vector<std::string>& reasons, const std::string& regime) {
    if (regime == "RF19") {
        reasons.emplace_back("Operazione effettuata ai sensi dell'art. 1, commi 54-89, L. 190/2014 - regime "
                             "forfettario. Operazione senza applicazione dell'IVA.");
        reasons.emplace_back("Compenso non soggetto a ritenuta d'acconto ai sensi dell'art. 1, comma 67, "
                             "L. 190/2014.");
    } else if (regime == "RF02") {
        reasons.emplace_back(
            "Operazione effettuata ai sensi dell'art. 1, comma 100, L. 244/2007 - regime dei "
            "minimi. Operazione senza applicazione dell'IVA.");
        reasons.emplace_back("Compenso non soggetto a ritenuta d'acconto.");
    }
}

} // namespace

Decisions propose(const StoredInvoice& invoice, const Issuer& issuer, const Customer& customer,
                  Decisions decided, const RegionalSettings& regional, const Decisions& last) {
    const RowAmounts amounts = amounts_of(invoice, regional);
    const auto fill = [](std::string& field, std::string proposed) {
        if (field.empty()) field = std::move(proposed);
    };
    fill(decided.TipoDocumento, amounts.total < 0 ? "TD04" : kind_of(issuer, decided));
    if (is_without_vat(invoice)) {
        fill(decided.Natura, nature_of(issuer, decided));
        if (decided.Natura.empty()) {
            decided.Natura = last.Natura;
            fill(decided.RiferimentoNormativo, last.RiferimentoNormativo);
        }
    }
    if (is_stamp_passed_on(invoice, amounts)) {
        fill(decided.NaturaSpese, is_flat_rate(issuer.RegimeFiscale) ? "N2.2" : "N1");
        fill(decided.DescrizioneSpese, "Imposta di bollo (art. 13 tariffa DPR 642/72)");
    } else if (amounts.expenses != 0) {
        fill(decided.NaturaSpese, nature_of_expenses(invoice, decided));
        fill(decided.NaturaSpese, last.NaturaSpese);
    }
    const Draft draft = from_row(invoice, issuer, customer, decided, "", regional);
    decided.bollo = is_stamp_proposed(stamp_base(draft.document));
    decided.Causale = proposed_reasons(invoice, issuer, customer, decided, regional);
    return decided;
}

std::vector<std::string> proposed_reasons(const StoredInvoice& invoice, const Issuer& issuer,
                                          const Customer& customer, const Decisions& decisions,
                                          const RegionalSettings& regional) {
    std::vector<std::string> reasons;
    add_regime(reasons, issuer.RegimeFiscale);
    if (is_without_vat(invoice) && nature_of(issuer, decisions) == "N2.1") {
        reasons.emplace_back(in_european_union(customer.Nazione)
                                 ? "Inversione contabile - reverse charge, art. 7-ter DPR 633/72"
                                 : "Operazione non soggetta ad IVA, art. 7-ter DPR 633/72");
    }
    const RowAmounts amounts = amounts_of(invoice, regional);
    const int share = withholding_share(invoice);
    if (amounts.withholding != 0 && share != 100) {
        reasons.push_back("Ritenuta d'acconto " + shown_rate(amounts.withholding_rate) + " calcolata sul " +
                          std::to_string(share) + "% del compenso.");
    }
    if (decisions.bollo) {
        reasons.emplace_back(
            "Imposta di bollo assolta in modo virtuale ai sensi dell'art. 6, comma 2, DM 17 giugno "
            "2014.");
    }
    return reasons;
}

} // namespace tarvello::e_invoice
