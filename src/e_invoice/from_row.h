#pragma once

#include "e_invoice/document.h"
#include "e_invoice/findings.h"
#include "e_invoice/source.h"
#include "text/regional_settings.h"

#include <string>
#include <vector>

/// From the stored row to the document. Amounts are the stored ones, to the cent; nothing is computed anew.
/// What does not add up goes into the document as it is, and the checks (checks.h) say so.
namespace tarvello::e_invoice {

/// A line of the document that comes from the anticipated expenses.
inline constexpr int expenses_line = 6;

struct Draft {
    FatturaElettronicaType document;
    /// For each line of the document the one of the row that it comes from: 1 to 5, or expenses_line.
    std::vector<int> stored_lines;
    /// What was seen on the way: amounts that are none, texts that lost letters.
    std::vector<Finding> findings;
};

/// @param progressive  of the file: part of its name, and ProgressivoInvio
Draft from_row(const StoredInvoice& invoice, const Issuer& issuer, const Customer& customer,
               const Decisions& decisions, const std::string& progressive, const RegionalSettings& regional);

/// What follows where nothing was decided.
std::string kind_of(const Issuer& issuer, const Decisions& decisions);
/// @return empty if it must be asked
std::string nature_of(const Issuer& issuer, const Decisions& decisions);
/// By the article of the exemption: 15 is excluded (N1), 10 is exempt (N4). @return empty if it must be asked
std::string nature_of_expenses(const StoredInvoice& invoice, const Decisions& decisions);
/// The words for RiferimentoNormativo that go with a nature; empty if there are none.
std::string law_of(std::string_view nature, std::string_view regime, std::string_view country);

/// True if the row's VAT is nought: "Esente", or a rate whose leading number is 0.
bool is_without_vat(const StoredInvoice& invoice);
/// The percentage of the fee on which the withholding was charged: Ritenuta_Su, or what an older row says in
/// "20% (su 75% imp.)".
int withholding_share(const StoredInvoice& invoice);

/// A customer is abroad by the country of residence.
bool is_abroad(const Customer& customer);

} // namespace tarvello::e_invoice
