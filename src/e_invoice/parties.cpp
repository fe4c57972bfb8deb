#include "e_invoice/parties.h"

#include "e_invoice/alphabet.h"
#include "e_invoice/check_digits.h"
#include "e_invoice/from_row.h"
#include "e_invoice/structure.h"
#include "text/ascii.h"
#include "text/letter_case.h"

#include <regex>

namespace tarvello::e_invoice {
namespace {

constexpr std::string_view nobody = "0000000"; // the customer looks into his own area at the tax office
constexpr std::string_view abroad = "XXXXXXX";
/// By custom: the identification of a customer abroad who has none.
constexpr std::string_view person_without_number = "0000000";
constexpr std::string_view firm_without_number = "99999999999";

/// A person has a first name.
AnagraficaType name_of(const std::string& nome, const std::string& cognome,
                       const std::string& denominazione) {
    AnagraficaType name;
    if (is_blank(nome)) {
        name.Denominazione = denominazione;
    } else {
        name.Nome = nome;
        name.Cognome = cognome;
    }
    return name;
}

/// The digits of a number without the international prefix of Italy; empty if they do not fit the element.
std::string contact_number(std::string_view typed) {
    std::string number;
    for (const char c : typed) {
        if (ascii::is_digit(c) || c == '+') number += c;
    }
    for (const std::string_view prefix : {"+39", "0039"}) {
        if (number.starts_with(prefix)) number.erase(0, prefix.size());
    }
    std::erase(number, '+');
    const TextType& type = types::contact_number;
    return number.size() >= type.least && number.size() <= type.most ? number : std::string();
}

std::optional<ContattiType> contacts_of(const Issuer& issuer) {
    ContattiType contacts{contact_number(issuer.Telefono), contact_number(issuer.Fax), trim(issuer.email)};
    const TextType& mail = types::contact_mail;
    const bool fits = contacts.Email.size() >= mail.least && contacts.Email.size() <= mail.most &&
                      mail.fits(contacts.Email);
    if (!fits) contacts.Email.clear();
    if (contacts.Telefono.empty() && contacts.Fax.empty() && contacts.Email.empty()) return {};
    return contacts;
}

CedentePrestatoreType issuer_of(const Issuer& issuer) {
    CedentePrestatoreType part;
    part.DatiAnagrafici.IdFiscaleIVA = {"IT", plain_partita_iva(issuer.Partita_IVA)};
    part.DatiAnagrafici.CodiceFiscale = sender_code(issuer);
    part.DatiAnagrafici.Anagrafica = name_of(issuer.Nome, issuer.Cognome, issuer.Nome_Azienda);
    part.DatiAnagrafici.Anagrafica.Titolo = issuer.Titolo;
    part.DatiAnagrafici.AlboProfessionale = issuer.AlboProfessionale;
    part.DatiAnagrafici.ProvinciaAlbo = plain_code(issuer.ProvinciaAlbo);
    part.DatiAnagrafici.NumeroIscrizioneAlbo = issuer.NumeroIscrizioneAlbo;
    part.DatiAnagrafici.DataIscrizioneAlbo = issuer.DataIscrizioneAlbo;
    part.DatiAnagrafici.RegimeFiscale = issuer.RegimeFiscale;
    const AddressLine line = parts_of(issuer.Indirizzo);
    const bool told_twice = line.cap == plain_code(issuer.CAP);
    part.Sede = {told_twice ? line.street : issuer.Indirizzo, plain_code(issuer.CAP), issuer.Comune,
                 plain_code(issuer.Provincia), "IT"};
    const IscrizioneREAType& rea = issuer.IscrizioneREA;
    if (!is_blank(rea.Ufficio) || !is_blank(rea.NumeroREA)) part.IscrizioneREA = rea;
    part.Contatti = contacts_of(issuer);
    return part;
}

IdFiscaleType number_abroad(const StoredInvoice& invoice, const Customer& customer) {
    IdFiscaleType number{customer.IdPaese.empty() ? customer.Nazione : customer.IdPaese,
                         plain_code(customer.IdCodice)};
    if (number.IdCodice.empty()) number.IdCodice = plain_code(invoice.Partita_IVA);
    if (number.IdCodice.starts_with(number.IdPaese)) number.IdCodice.erase(0, number.IdPaese.size());
    if (number.IdCodice.empty())
        number.IdCodice = is_blank(invoice.Nome) ? firm_without_number : person_without_number;
    return number;
}

/// The true postcode goes into the address: the element knows five digits only.
IndirizzoType address_abroad(const StoredInvoice& invoice, const Customer& customer) {
    const std::size_t most = types::latin(60).most;
    const std::string postcode = to_alphabet(invoice.CAP, Alphabet::latin, most / 2).text;
    const std::string behind = postcode.empty() ? "" : ", " + postcode;
    const std::string& street = is_blank(customer.Indirizzo) ? invoice.Indirizzo : customer.Indirizzo;
    IndirizzoType address{to_alphabet(street, Alphabet::latin, most - behind.size()).text + behind, "00000",
                          is_blank(customer.Comune) ? invoice.Citta : customer.Comune, "", customer.Nazione};
    return address;
}

CessionarioCommittenteType customer_of(const StoredInvoice& invoice, const Customer& customer) {
    CessionarioCommittenteType part;
    DatiAnagraficiCessionarioType& person = part.DatiAnagrafici;
    person.Anagrafica =
        name_of(invoice.Nome, invoice.Cognome_Ragione_Sociale, invoice.Cognome_Ragione_Sociale);
    if (is_abroad(customer)) {
        person.IdFiscaleIVA = number_abroad(invoice, customer);
        part.Sede = address_abroad(invoice, customer);
        return part;
    }
    const std::string vat = plain_partita_iva(invoice.Partita_IVA);
    const std::string code = plain_code(invoice.Codice_Fiscale);
    if (!vat.empty()) person.IdFiscaleIVA = IdFiscaleType{"IT", vat};
    // Two codes of two subjects are a ground for rejection, so both are written only where both are wanted.
    if (vat.empty() || customer.vat_group || customer.public_administration) person.CodiceFiscale = code;
    part.Sede = {invoice.Indirizzo, plain_code(invoice.CAP), invoice.Citta, plain_code(invoice.Provincia),
                 "IT"};
    return part;
}

} // namespace

bool is_abroad(const Customer& customer) { return !customer.Nazione.empty() && customer.Nazione != "IT"; }

std::string sender_code(const Issuer& issuer) { return plain_code(issuer.Codice_Fiscale); }

std::string iban_of(const Issuer& issuer) {
    if (!is_blank(issuer.IBAN)) return plain_code(issuer.IBAN);
    const std::string account = plain_code(issuer.CC);
    if (iban_valid(account)) {
        // Of the bank that the letterhead names, if it names one.
        const std::string built = iban_of_account(issuer.ABI, issuer.CAB, "0");
        const bool same_bank = built.empty() || built.substr(5, 10) == account.substr(5, 10);
        return same_bank ? account : std::string();
    }
    return iban_of_account(issuer.ABI, issuer.CAB, issuer.CC);
}

FatturaElettronicaHeaderType head_of(const StoredInvoice& invoice, const Issuer& issuer,
                                     const Customer& customer, const std::string& progressive) {
    FatturaElettronicaHeaderType head;
    head.CedentePrestatore = issuer_of(issuer);
    head.CessionarioCommittente = customer_of(invoice, customer);

    DatiTrasmissioneType& sending = head.DatiTrasmissione;
    sending.IdTrasmittente = {"IT", sender_code(issuer)};
    sending.ProgressivoInvio = progressive;
    sending.FormatoTrasmissione = customer.public_administration ? "FPA12" : "FPR12";
    sending.CodiceDestinatario = plain_code(customer.CodiceDestinatario);
    const auto& number = head.CessionarioCommittente.DatiAnagrafici.IdFiscaleIVA;
    if (sending.CodiceDestinatario.empty() && is_abroad(customer) && number->IdPaese != "IT") {
        sending.CodiceDestinatario = abroad;
    } else if (sending.CodiceDestinatario.empty() && !customer.public_administration) {
        sending.CodiceDestinatario = nobody;
        sending.PECDestinatario = trim(customer.PECDestinatario);
    } else if (sending.CodiceDestinatario == nobody) {
        sending.PECDestinatario = trim(customer.PECDestinatario);
    }
    return head;
}

AddressLine parts_of(const std::string& address) {
    static const std::regex line(
        R"(^(.*?\S)[\s,;-]+(\d{5})[\s,-]+([^(\d]*[^(\d\s])\s*(?:\(([A-Za-z]{2})\))?\s*$)");
    std::smatch found;
    constexpr std::size_t longest = 255; // of a letterhead
    if (address.size() > longest || !std::regex_match(address, found, line)) return {address, {}, {}, {}};
    return {found[1], found[2], found[3], upper_case(found[4].str())};
}

} // namespace tarvello::e_invoice
