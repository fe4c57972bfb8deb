#pragma once

#include "e_invoice/receipt.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvello::e_invoice {

/// A receipt that a file held.
struct FoundReceipt {
    Receipt receipt;
    std::string name; ///< of the innermost file it came in
    std::string xml;  ///< as it came, for keeping
};

/// What a file held.
struct ReceiptImport {
    std::vector<FoundReceipt> receipts;
    std::vector<std::string> words; ///< what could not be read, and why there is no receipt; for the user
};

/// Finds the receipts in a file of the user: an XML file, signed or not, a saved mail with certified mail in
/// it, a zip archive of these. Told apart by what is in them.
/// @param name  of the file, without folders
ReceiptImport find_receipts(std::string_view bytes, const std::string& name);

} // namespace tarvello::e_invoice
