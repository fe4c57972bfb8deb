#pragma once

#include "e_invoice/document.h"
#include "e_invoice/source.h"

#include <string>

/// The head of the document: to whom it is sent, from whom it comes, whom it is for.
namespace tarvello::e_invoice {

FatturaElettronicaHeaderType head_of(const StoredInvoice& invoice, const Issuer& issuer,
                                     const Customer& customer, const std::string& progressive);

/// The issuer's fiscal code, by which the exchange system knows who sends a file.
std::string sender_code(const Issuer& issuer);

/// "Via Cavour 21 - 50129 Firenze (FI)", as a letterhead has it in one line.
struct AddressLine {
    std::string street, cap, town, province;
};
/// @return all in `street` if no postal code with a town stands behind it
AddressLine parts_of(const std::string& address);

/// The account that the letterhead names: the IBAN typed, one that stands in the box of the account, or the
/// one made of bank, branch and account. @return empty if there is none
std::string iban_of(const Issuer& issuer);

} // namespace tarvello::e_invoice
