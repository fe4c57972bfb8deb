#include "e_invoice/control.h"

#include "e_invoice/check_digits.h"
#include "text/letter_case.h"

namespace tarvello::e_invoice {
namespace {

/// Either Denominazione, or Nome and Cognome.
bool is_named_wrongly(const AnagraficaType& name) {
    const bool firm = !name.Denominazione.empty();
    const bool person = !name.Nome.empty() && !name.Cognome.empty();
    return firm == person || (firm && !(name.Nome + name.Cognome).empty());
}

bool wrong_vat(const std::string& number) { return !number.empty() && !partita_iva_valid(number); }
bool wrong_code(const std::string& code) { return !code.empty() && !codice_fiscale_valid(code); }
/// A number of an office that has given none out: perhaps a slip of two digits that the check digit does not
/// see.
bool of_unknown_office(const std::string& number) {
    return partita_iva_valid(number) && !partita_iva_office_known(number);
}

bool is_own_invoice(const Case& c) {
    const DatiAnagraficiCedenteType& issuer = c.issuer.DatiAnagrafici;
    const auto is_issuers = [&](const std::string& number) {
        return !number.empty() && (number == issuer.IdFiscaleIVA.IdCodice || number == issuer.CodiceFiscale);
    };
    return is_issuers(c.italian_vat()) || is_issuers(c.customer.DatiAnagrafici.CodiceFiscale);
}

bool is_wrong_length(const Case& c) {
    constexpr std::size_t of_administrations = 6;
    constexpr std::size_t of_others = 7;
    const std::string& code = c.sending.CodiceDestinatario;
    return !code.empty() && code.size() != (c.to_administration() ? of_administrations : of_others);
}

bool is_system_address(const std::string& address) {
    return lower_case(address).ends_with("@pec.fatturapa.it");
}

constexpr SdiControl party_controls[] = {
    {"00301", refusal, Field::issuer_partita_iva,
     "La partita IVA dell'intestazione non è valida: la cifra di controllo non torna. Correggerla "
     "nell'intestazione.",
     [](const Case& c) { return hit_if(wrong_vat(c.issuer.DatiAnagrafici.IdFiscaleIVA.IdCodice)); }},
    {"00302", refusal, Field::issuer_codice_fiscale,
     "Il codice fiscale dell'intestazione non è valido: il carattere di controllo non torna. Correggerlo "
     "nell'intestazione.",
     [](const Case& c) { return hit_if(wrong_code(c.issuer.DatiAnagrafici.CodiceFiscale)); }},
    {"00300", refusal, Field::issuer_codice_fiscale,
     "Il codice fiscale di chi trasmette la fattura non è valido: correggerlo nell'intestazione.",
     [](const Case& c) { return hit_if(wrong_code(c.sending.IdTrasmittente.IdCodice)); }},
    {"00200", refusal, Field::issuer_name,
     "Il nome di chi emette la fattura manca o è doppio: occorrono nome e cognome, o la sola denominazione.",
     [](const Case& c) { return hit_if(is_named_wrongly(c.issuer.DatiAnagrafici.Anagrafica)); }},
    {"00305", refusal, Field::customer_partita_iva,
     "La partita IVA del cliente non è valida: sono 11 cifre e l'ultima è di controllo. Correggerla, o "
     "lasciarla "
     "vuota se il cliente non ne ha.",
     [](const Case& c) { return hit_if(wrong_vat(c.italian_vat())); }},
    {"00306", refusal, Field::customer_codice_fiscale,
     "Il codice fiscale del cliente non è valido: il carattere di controllo non torna. Correggerlo.",
     [](const Case& c) { return hit_if(wrong_code(c.customer.DatiAnagrafici.CodiceFiscale)); }},
    {"00417", refusal, Field::customer_codice_fiscale,
     "Del cliente occorre la partita IVA o il codice fiscale: inserire almeno uno dei due.",
     [](const Case& c) {
         return hit_if(c.vat_country().empty() && c.customer.DatiAnagrafici.CodiceFiscale.empty());
     }},
    {"00471", refusal, Field::customer_partita_iva,
     "Il cliente e chi emette la fattura sono la stessa persona: controllare la partita IVA e il codice "
     "fiscale del "
     "cliente.",
     [](const Case& c) { return hit_if(is_own_invoice(c)); }},
    {"00200", refusal, Field::customer_name,
     "Il nome del cliente manca o è doppio: occorrono nome e cognome, o la sola ragione sociale.",
     [](const Case& c) { return hit_if(is_named_wrongly(c.customer.DatiAnagrafici.Anagrafica)); }},
    {"00313", refusal, Field::codice_destinatario,
     "Il codice destinatario XXXXXXX è dei clienti esteri: per un cliente italiano indicare il suo codice, "
     "la PEC o "
     "nessuno dei due.",
     [](const Case& c) {
         const std::string country = c.vat_country();
         return hit_if(c.sending.CodiceDestinatario == "XXXXXXX" && (country.empty() || country == "IT"));
     }},
    {"00427", refusal, Field::codice_destinatario,
     "Il codice destinatario ha una lunghezza sbagliata: sono 6 caratteri per una pubblica amministrazione e "
     "7 per "
     "tutti gli altri. Controllare anche se il cliente è segnato come pubblica amministrazione.",
     [](const Case& c) { return hit_if(is_wrong_length(c)); }},
    {"00428", refusal, Field::codice_destinatario,
     "Il formato della fattura e quello della trasmissione sono diversi.",
     [](const Case& c) { return hit_if(c.document.versione != c.sending.FormatoTrasmissione); }},
    {"00330", refusal, Field::pec,
     "La PEC del cliente è un indirizzo del Sistema di Interscambio: indicare quella del cliente, o "
     "lasciarla vuota.",
     [](const Case& c) { return hit_if(is_system_address(c.sending.PECDestinatario)); }},
    {"00476", refusal, Field::nazione,
     "Chi emette la fattura e il cliente sono tutti e due esteri: controllare la nazione del cliente.",
     [](const Case& c) {
         const std::string country = c.vat_country();
         return hit_if(c.issuer.DatiAnagrafici.IdFiscaleIVA.IdPaese != "IT" && !country.empty() &&
                       country != "IT");
     }},
    {"", warning, Field::issuer_partita_iva,
     "La partita IVA dell'intestazione ha un codice di ufficio insolito (cifre da 8 a 10): controllarla.",
     [](const Case& c) { return hit_if(of_unknown_office(c.issuer.DatiAnagrafici.IdFiscaleIVA.IdCodice)); }},
    {"", warning, Field::customer_partita_iva,
     "La partita IVA del cliente ha un codice di ufficio insolito (cifre da 8 a 10): controllarla.",
     [](const Case& c) { return hit_if(of_unknown_office(c.italian_vat())); }},
    {"", warning, Field::customer_provincia, "La provincia del cliente è vuota.",
     [](const Case& c) {
         const IndirizzoType& address = c.customer.Sede;
         return hit_if(address.Nazione == "IT" && address.Provincia.empty());
     }},
    {"", warning, Field::riferimenti,
     "Una pubblica amministrazione può rifiutare una fattura senza CIG o CUP: se il contratto li ha, "
     "indicarli.",
     [](const Case& c) {
         const auto coded = [](const DatiDocumentiCorrelatiType& reference) {
             return !reference.CodiceCIG.empty() || !reference.CodiceCUP.empty();
         };
         return hit_if(c.to_administration() && !any(c.references.DatiOrdineAcquisto, coded) &&
                       !any(c.references.DatiContratto, coded) && !any(c.references.DatiConvenzione, coded));
     }},
};

} // namespace

std::span<const SdiControl> controls_of_parties() { return party_controls; }

} // namespace tarvello::e_invoice
