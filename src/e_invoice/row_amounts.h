#pragma once

#include "e_invoice/amounts.h"
#include "e_invoice/findings.h"
#include "e_invoice/source.h"

#include <array>
#include <vector>

namespace tarvello::e_invoice {

inline constexpr Cents stamp_duty = 200;

/// The amounts and percentages of a stored row. One that the row does not carry is 0.
struct RowAmounts {
    std::array<Cents, StoredInvoice::lines> lines{};
    Cents surcharge = 0;
    Rate surcharge_rate = 0;
    Cents taxable = 0;
    Rate rate = 0; ///< of the VAT
    Cents vat = 0;
    Cents expenses = 0;
    Cents total = 0;
    Cents withholding = 0;
    Rate withholding_rate = 0;
    Cents net = 0;

    /// The sum of the lines.
    Cents services() const;
};

/// Reads the amounts of a row. What is no amount, and a surcharge that was kept out of the taxable base,
/// becomes a finding.
/// @param credit_note  a negative total has all its signs turned: a credit note says by its kind that it
/// takes
///                     back
RowAmounts read_row(const StoredInvoice& invoice, bool credit_note, const RegionalSettings& regional,
                    std::vector<Finding>& findings);

/// Whether the surcharge was part of the base of the withholding: no column says so, the nearest to the
/// stored amount decides. If both are as near, it was for the fund of INPS, which is part of the fee.
bool is_surcharge_withheld(const StoredInvoice& invoice, const RowAmounts& amounts, std::string_view fund);

/// A finding on a line of the document as one on the row that it comes from.
Finding in_row(Finding finding, const std::vector<int>& stored_lines);

} // namespace tarvello::e_invoice
