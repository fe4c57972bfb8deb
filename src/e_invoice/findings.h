#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What is wrong or doubtful with an electronic invoice, in words, and where it is mended.
namespace tarvello::e_invoice {

/// Where a field is filled in.
enum class Place : std::uint8_t {
    issuer,     ///< the data of who issues the invoices
    letterhead, ///< the letterhead
    customer,   ///< the customer's data for electronic invoices
    invoice,    ///< the invoice itself, its customer block included
    decisions,  ///< what is decided for this one electronic invoice
    file,       ///< the file to be written
};

/// What a form can lead the user to.
enum class Field : std::uint8_t {
    issuer_name,
    issuer_title,
    issuer_partita_iva,
    issuer_codice_fiscale,
    issuer_indirizzo,
    issuer_cap,
    issuer_comune,
    issuer_provincia,
    issuer_regime,
    issuer_albo,
    issuer_rea,
    issuer_telefono,
    issuer_fax,
    issuer_email,
    issuer_banca,
    issuer_iban,
    tipo_ritenuta,
    causale_pagamento,
    tipo_cassa,
    codice_destinatario,
    pec,
    nazione,
    customer_vat_abroad,
    customer_name,
    customer_nome,
    customer_partita_iva,
    customer_codice_fiscale,
    customer_indirizzo,
    customer_cap,
    customer_citta,
    customer_provincia,
    numero,
    data,
    prestazione,
    importo,
    percentuale_rivalsa,
    importo_rivalsa,
    imponibile,
    aliquota_iva,
    imposta_iva,
    importo_spese,
    totale,
    percentuale_ritenuta,
    importo_ritenuta,
    importo_netto,
    pagamento,
    tipo_documento,
    natura,
    natura_spese,
    riferimento_normativo,
    descrizione_spese,
    bollo,
    esigibilita_iva,
    causale,
    riferimenti,
    fattura_collegata,
    dichiarazione_intento,
    nome_file,
};

struct FieldFacts {
    Field field;
    Place place;
    std::string_view words; ///< as the messages name it: "CAP del cliente"
};

const FieldFacts& facts_of(Field field);

enum class Severity : std::uint8_t {
    refusal, ///< no file is written: the exchange system must reject it, or it would say what is not so
    warning, ///< the user should look, and may go on
};

struct Finding {
    Severity severity = Severity::refusal;
    std::string code; ///< of the exchange system's control; empty for one of our own
    Field field = Field::nome_file;
    int line = 0;      ///< 1 to 5: which Prestazione or Importo; 0 for every other field
    std::string words; ///< a sentence or two, with what to do
    bool operator==(const Finding&) const = default;
};

/// Adds a finding, unless the same field of the same line has a refusal already: the first one says more.
void add_finding(std::vector<Finding>& findings, Finding finding);

/// True if one of them is a refusal.
bool any_refusal(const std::vector<Finding>& findings);

} // namespace tarvello::e_invoice
