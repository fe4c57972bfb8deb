#pragma once

#include "e_invoice/receipt.h"

#include <string_view>
#include <vector>

namespace tarvello::e_invoice {

/// The errors of a rejection, causes before what follows from them: file, signature, schema, number,
/// addressee, parties, lines and sums. All of them, as SdI words them; those of one group stay in SdI's
/// order.
std::vector<ReceiptError> in_helpful_order(std::vector<ReceiptError> errors);

/// What to do about an error, by its code; empty if there is nothing to say beyond SdI's own words.
std::string_view error_hint(std::string_view code);

} // namespace tarvello::e_invoice
