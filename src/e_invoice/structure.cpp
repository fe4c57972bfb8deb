#include "e_invoice/structure.h"

#include "e_invoice/check_digits.h"
#include "e_invoice/code_lists.h"
#include "text/ascii.h"

#include <algorithm>

namespace tarvello::e_invoice::types {
namespace {

bool capitals(std::string_view text) { return std::all_of(text.begin(), text.end(), ascii::is_capital); }

bool capitals_or_digits(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return ascii::is_capital(c) || ascii::is_digit(c); });
}

/// Names parted by single points, as the local and the domain part of an address are.
bool dotted(std::string_view text) {
    constexpr std::string_view signs = "!#$%&'*+/-=?^_`{|}~";
    bool after_point = true;
    for (const char c : text) {
        const bool in_name = ascii::is_letter_or_digit(c) || signs.find(c) != std::string_view::npos;
        if (!in_name && (c != '.' || after_point)) return false;
        after_point = c == '.';
    }
    return !after_point;
}

bool mail_address(std::string_view text) {
    const std::size_t at = text.find('@');
    return at != std::string_view::npos && dotted(text.substr(0, at)) && dotted(text.substr(at + 1));
}

/// Something, an @, something with a point in its midst.
bool contact_address(std::string_view text) {
    const auto printable = [](char c) { return c > ' ' && c < 0x7F; };
    if (!std::all_of(text.begin(), text.end(), printable)) return false;
    const std::size_t at = text.find('@', 1);
    if (at == std::string_view::npos) return false;
    const std::size_t point = text.find('.', at + 2);
    return point != std::string_view::npos && text.find_first_not_of('.', point) != std::string_view::npos;
}

template <auto list>
bool in_list(std::string_view code) {
    return find_code(list(), code) != nullptr;
}

constexpr const char* not_in_list = "non è tra i codici previsti";

} // namespace

const TextType versione{.least = 5,
                        .most = 5,
                        .fits = [](std::string_view v) { return v == "FPR12" || v == "FPA12"; },
                        .words = "deve essere FPR12 o FPA12"};
const TextType country{.least = 2,
                       .most = 2,
                       .fits = in_list<countries>,
                       .words = "deve essere la sigla di due lettere di uno Stato"};
const TextType id_code{.most = 28, .fits = capitals_or_digits, .words = "può avere solo lettere e cifre"};
const TextType fiscal_code{.least = 11,
                           .most = 16,
                           .fits = capitals_or_digits,
                           .words = "deve essere di 16 lettere e cifre, o di 11 cifre"};
const TextType recipient{.least = 6,
                         .most = 7,
                         .fits = capitals_or_digits,
                         .words = "deve essere di 7 lettere e cifre (6 per una pubblica amministrazione)"};
const TextType certified_mail{.least = 3,
                              .most = 256,
                              .fits = mail_address,
                              .words = "deve essere un indirizzo di posta, senza accenti né spazi"};
const TextType regime{.least = 4, .most = 4, .fits = in_list<tax_regimes>, .words = not_in_list};
const TextType postal_code{
    .least = 5, .most = 5, .fits = ascii::only_digits, .words = "deve essere di 5 cifre"};
const TextType province{
    .least = 2, .most = 2, .fits = capitals, .words = "deve essere la sigla di due lettere"};
const TextType contact_number{
    .least = 5, .most = 12, .fits = ascii::only_digits, .words = "deve avere da 5 a 12 cifre"};
const TextType contact_mail{
    .least = 7, .most = 256, .fits = contact_address, .words = "deve essere un indirizzo di posta"};
const TextType partners{.least = 2,
                        .most = 2,
                        .fits = [](std::string_view v) { return v == "SU" || v == "SM"; },
                        .words = "deve essere SU (socio unico) o SM (più soci)"};
const TextType liquidation{.least = 2,
                           .most = 2,
                           .fits = [](std::string_view v) { return v == "LS" || v == "LN"; },
                           .words = "deve essere LS (in liquidazione) o LN (non in liquidazione)"};
const TextType document_kind{.least = 4, .most = 4, .fits = in_list<document_kinds>, .words = not_in_list};
const TextType currency{
    .least = 3, .most = 3, .fits = [](std::string_view v) { return v == "EUR"; }, .words = "deve essere EUR"};
const TextType withholding_kind{
    .least = 4, .most = 4, .fits = in_list<withholding_kinds>, .words = not_in_list};
const TextType withholding_reason{.most = 2, .fits = in_list<withholding_reasons>, .words = not_in_list};
const TextType yes{
    .least = 2, .most = 2, .fits = [](std::string_view v) { return v == "SI"; }, .words = "deve essere SI"};
const TextType fund{.least = 4, .most = 4, .fits = in_list<funds>, .words = not_in_list};
const TextType nature{.least = 2, .most = 4, .fits = in_list<natures>, .words = not_in_list};
const TextType due{.fits = in_list<vat_due>, .words = not_in_list};
const TextType payment_term{.least = 4, .most = 4, .fits = in_list<payment_terms>, .words = not_in_list};
const TextType payment_way{.least = 4, .most = 4, .fits = in_list<payment_ways>, .words = not_in_list};
const TextType iban{
    .least = 15, .most = 34, .fits = iban_valid, .words = "non è valido: le cifre di controllo non tornano"};
const TextType bank_code{
    .least = 5, .most = 5, .fits = ascii::only_digits, .words = "deve essere di 5 cifre"};

} // namespace tarvello::e_invoice::types
