#pragma once

#include "e_invoice/document.h"

#include <string>

/// The stamp duty of 2 euro on invoices without VAT (art. 13 of the tariff of DPR 642/72): owed when what
/// bears no VAT exceeds 77.47 euro.
namespace tarvello::e_invoice {

struct StampBase {
    Cents listed = 0;   ///< what the tax office counts: prices of lines with natures of its list
    Cents by_law = 0;   ///< that, and what the law counts besides: excluded expenses, and the surcharge
    bool counts = true; ///< false for regimes that the tax office leaves out
};

StampBase stamp_base(const FatturaElettronicaType& document);

/// The tax office will ask for the duty: propose it.
bool is_stamp_proposed(const StampBase& base);
/// Not the tax office, but by the law it may be owed all the same.
bool is_stamp_doubtful(const StampBase& base);

/// Why it is proposed or not, for the user.
std::string stamp_reason(const StampBase& base);

} // namespace tarvello::e_invoice
