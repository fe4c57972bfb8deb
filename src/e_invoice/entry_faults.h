#pragma once

#include "e_invoice/source.h"

#include <string>
#include <string_view>

/// What is wrong with a single entry, in words for the user, told where the entry is left. Empty if nothing
/// is; an empty entry is no fault here.
namespace tarvello::e_invoice {

/// A text that the electronic invoice takes as it stands: characters of Western Europe, so many at most.
std::string text_fault(std::string_view text, std::size_t limit);
std::string cap_fault(std::string_view text);
std::string province_fault(std::string_view text);
std::string iban_fault(std::string_view text);
std::string partita_iva_fault(std::string_view text);
std::string codice_fiscale_fault(std::string_view text);
/// @param public_administration  its offices have codes of six characters, everyone else of seven
std::string recipient_fault(std::string_view text, bool public_administration);
std::string pec_fault(std::string_view text);

/// What the letterhead does not know, as far as it can be told: the name taken apart, the usual regime and
/// withholding, the IBAN of the account.
/// @param issuer  with the letterhead in it
Issuer proposed_issuer(Issuer issuer);

} // namespace tarvello::e_invoice
