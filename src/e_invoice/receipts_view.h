#pragma once

#include "e_invoice/records.h"

#include <string>

namespace tarvello::e_invoice {

/// The receipts of a file as simple HTML, with the errors of a rejection in an order that helps and what to
/// do about each.
std::string receipts_html(const std::vector<StoredReceipt>& receipts, const RegionalSettings& regional);

} // namespace tarvello::e_invoice
