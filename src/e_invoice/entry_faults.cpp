#include "e_invoice/entry_faults.h"

#include "e_invoice/alphabet.h"
#include "e_invoice/check_digits.h"
#include "e_invoice/parties.h"
#include "text/ascii.h"
#include "text/letter_case.h"

#include <algorithm>
#include <sstream>

namespace tarvello::e_invoice {
std::string text_fault(std::string_view text, std::size_t limit) {
    const Converted converted = to_alphabet(text, Alphabet::latin, limit);
    if (converted.lost)
        return "Alcune lettere non sono ammesse nelle fatture elettroniche: diventano \"" + converted.text +
               "\".";
    if (converted.cut) return "Il testo è troppo lungo: diventa \"" + converted.text + "\".";
    return {};
}

std::string cap_fault(std::string_view text) {
    const std::string cap = trim(text);
    constexpr std::size_t digits = 5;
    const bool good = cap.size() == digits && ascii::only_digits(cap);
    return cap.empty() || good ? std::string() : "Il CAP ha cinque cifre.";
}

std::string province_fault(std::string_view text) {
    const std::string province = upper_case(trim(text));
    const bool good = province.size() == 2 && std::all_of(province.begin(), province.end(), ascii::is_letter);
    return province.empty() || good ? std::string() : "La provincia si indica con la sigla di due lettere.";
}

std::string iban_fault(std::string_view text) {
    const std::string iban = plain_code(text);
    return iban.empty() || iban_valid(iban)
               ? std::string()
               : "L'IBAN non è valido: controllare le cifre con quelle date dalla banca.";
}

std::string partita_iva_fault(std::string_view text) {
    const std::string number = plain_partita_iva(text);
    return number.empty() || partita_iva_valid(number) ? std::string()
                                                       : "La partita IVA " + number + " non è valida.";
}

std::string codice_fiscale_fault(std::string_view text) {
    const std::string code = plain_code(text);
    return code.empty() || codice_fiscale_valid(code) ? std::string()
                                                      : "Il codice fiscale " + code + " non è valido.";
}

std::string recipient_fault(std::string_view text, bool public_administration) {
    const std::string code = plain_code(text);
    const std::size_t wanted = public_administration ? 6 : 7;
    const bool good = code.size() == wanted && std::all_of(code.begin(), code.end(), [](char c) {
                          return ascii::is_digit(c) || ascii::is_letter(c);
                      });
    if (code.empty() || good) return {};
    return public_administration ? "Il codice ufficio di una pubblica amministrazione ha sei lettere o cifre."
                                 : "Il codice destinatario ha sette lettere o cifre; chi non ne ha "
                                   "comunicato uno si lascia senza.";
}

std::string pec_fault(std::string_view text) {
    const std::string address = trim(text);
    if (address.empty()) return {};
    const std::size_t at = address.find('@');
    const bool plain = std::all_of(address.begin(), address.end(), [](char c) { return c > ' ' && c < 127; });
    const bool good = plain && at != std::string::npos && at > 0 &&
                      address.find('.', at + 2) != std::string::npos && address.back() != '.' &&
                      address.find('@', at + 1) == std::string::npos;
    if (!good) return "L'indirizzo PEC non è valido.";
    if (lower_case(address).ends_with("@pec.fatturapa.it")) {
        return "Questo è l'indirizzo di SdI: indicare la PEC del cliente.";
    }
    return {};
}

Issuer proposed_issuer(Issuer issuer) {
    constexpr std::size_t code_of_a_person = 16;
    const bool person = plain_code(issuer.Codice_Fiscale).size() == code_of_a_person;
    if (person) {
        std::istringstream words(issuer.Nome_Azienda);
        for (std::string word; words >> word;) {
            std::string& part = word.find('.') != std::string::npos ? issuer.Titolo
                                : issuer.Nome.empty()               ? issuer.Nome
                                                                    : issuer.Cognome;
            part += (part.empty() ? "" : " ") + word;
        }
    }
    const AddressLine line = parts_of(issuer.Indirizzo);
    issuer.CAP = line.cap;
    issuer.Comune = line.town;
    issuer.Provincia = line.province;
    issuer.RegimeFiscale = "RF01";
    issuer.TipoRitenuta = person ? "RT01" : "RT02";
    issuer.CausalePagamento = "A";
    issuer.IBAN = iban_of(issuer);
    return issuer;
}

} // namespace tarvello::e_invoice
