#pragma once

#include <string>
#include <string_view>

/// The numbers that carry a check of their own: VAT number, fiscal code, bank account. A valid number need
/// not exist; only the tax register and the bank know that.
namespace tarvello::e_invoice {

/// Without what people write around a code: blanks, points, hyphens and the like; upper case.
std::string plain_code(std::string_view typed);

/// A VAT number as it is stored or typed, without blanks and without the IT before it.
std::string plain_partita_iva(std::string_view typed);

/// Eleven digits whose last one is right (the rule of Luhn), not all zero. Also the fiscal code of bodies.
bool partita_iva_valid(std::string_view number);

/// True if digits 8 to 10 of a VAT number name an office that has given numbers out: 001 to 100, 120, 121,
/// 888, 999.
bool partita_iva_office_known(std::string_view number);

/// The fiscal code of a person, 16 characters, also one whose digits were replaced by letters to tell persons
/// apart; or of a body, 11 digits. Form and check letter are looked at (DM 23 December 1976), not the names.
bool codice_fiscale_valid(std::string_view code);

/// The IBAN of an account by bank, branch and account as a letterhead has them.
/// @return empty if they are not what makes one: five digits or fewer, five or fewer, twelve letters or
/// digits
///         or fewer
std::string iban_of_account(std::string_view abi, std::string_view cab, std::string_view account);

/// True for an IBAN without blanks whose check digits are right; of an Italian one also the length and the
/// check letter of the account.
bool iban_valid(std::string_view iban);

} // namespace tarvello::e_invoice
