#include "e_invoice/findings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarvello::e_invoice {
namespace {

/// In the order of the enumeration.
constexpr FieldFacts field_facts[] = {
    {Field::issuer_name, Place::issuer, "nome di chi emette la fattura"},
    {Field::issuer_title, Place::issuer, "titolo di chi emette la fattura"},
    {Field::issuer_partita_iva, Place::letterhead, "partita IVA dell'intestazione"},
    {Field::issuer_codice_fiscale, Place::letterhead, "codice fiscale dell'intestazione"},
    {Field::issuer_indirizzo, Place::letterhead, "indirizzo dell'intestazione"},
    {Field::issuer_cap, Place::issuer, "CAP di chi emette la fattura"},
    {Field::issuer_comune, Place::issuer, "comune di chi emette la fattura"},
    {Field::issuer_provincia, Place::issuer, "provincia di chi emette la fattura"},
    {Field::issuer_regime, Place::issuer, "regime fiscale"},
    {Field::issuer_albo, Place::issuer, "albo professionale"},
    {Field::issuer_rea, Place::issuer, "iscrizione al REA"},
    {Field::issuer_telefono, Place::letterhead, "telefono dell'intestazione"},
    {Field::issuer_fax, Place::letterhead, "fax dell'intestazione"},
    {Field::issuer_email, Place::letterhead, "e-mail dell'intestazione"},
    {Field::issuer_banca, Place::letterhead, "banca dell'intestazione"},
    {Field::issuer_iban, Place::issuer, "IBAN"},
    {Field::tipo_ritenuta, Place::issuer, "tipo di ritenuta"},
    {Field::causale_pagamento, Place::issuer, "causale della ritenuta"},
    {Field::tipo_cassa, Place::issuer, "cassa previdenziale"},
    {Field::codice_destinatario, Place::customer, "codice destinatario"},
    {Field::pec, Place::customer, "PEC del cliente"},
    {Field::nazione, Place::customer, "nazione del cliente"},
    {Field::customer_vat_abroad, Place::customer, "identificativo IVA estero del cliente"},
    {Field::customer_name, Place::invoice, "cognome o ragione sociale del cliente"},
    {Field::customer_nome, Place::invoice, "nome del cliente"},
    {Field::customer_partita_iva, Place::invoice, "partita IVA del cliente"},
    {Field::customer_codice_fiscale, Place::invoice, "codice fiscale del cliente"},
    {Field::customer_indirizzo, Place::invoice, "indirizzo del cliente"},
    {Field::customer_cap, Place::invoice, "CAP del cliente"},
    {Field::customer_citta, Place::invoice, "città del cliente"},
    {Field::customer_provincia, Place::invoice, "provincia del cliente"},
    {Field::numero, Place::invoice, "numero della fattura"},
    {Field::data, Place::invoice, "data della fattura"},
    {Field::prestazione, Place::invoice, "descrizione della prestazione"},
    {Field::importo, Place::invoice, "importo della prestazione"},
    {Field::percentuale_rivalsa, Place::invoice, "percentuale della rivalsa"},
    {Field::importo_rivalsa, Place::invoice, "importo della rivalsa"},
    {Field::imponibile, Place::invoice, "imponibile"},
    {Field::aliquota_iva, Place::invoice, "aliquota IVA"},
    {Field::imposta_iva, Place::invoice, "imposta IVA"},
    {Field::importo_spese, Place::invoice, "importo delle spese anticipate"},
    {Field::totale, Place::invoice, "totale della fattura"},
    {Field::percentuale_ritenuta, Place::invoice, "percentuale della ritenuta"},
    {Field::importo_ritenuta, Place::invoice, "importo della ritenuta"},
    {Field::importo_netto, Place::invoice, "importo netto"},
    {Field::pagamento, Place::invoice, "riquadro del pagamento"},
    {Field::tipo_documento, Place::decisions, "tipo di documento"},
    {Field::natura, Place::decisions, "natura dell'operazione"},
    {Field::natura_spese, Place::decisions, "natura delle spese anticipate"},
    {Field::riferimento_normativo, Place::decisions, "riferimento normativo"},
    {Field::descrizione_spese, Place::decisions, "descrizione delle spese anticipate"},
    {Field::bollo, Place::decisions, "imposta di bollo"},
    {Field::esigibilita_iva, Place::decisions, "esigibilità dell'IVA"},
    {Field::causale, Place::decisions, "causale"},
    {Field::riferimenti, Place::decisions, "ordine, contratto o convenzione con CUP e CIG"},
    {Field::fattura_collegata, Place::decisions, "fattura collegata"},
    {Field::dichiarazione_intento, Place::decisions, "dichiarazione d'intento"},
    {Field::nome_file, Place::file, "file"},
};

constexpr bool in_order() {
    std::size_t place = 0;
    for (const FieldFacts& facts : field_facts) {
        if (static_cast<std::size_t>(facts.field) != place++) return false;
    }
    return place == static_cast<std::size_t>(Field::nome_file) + 1;
}
static_assert(in_order(), "every field has its facts, in the order of the enumeration");

} // namespace

const FieldFacts& facts_of(Field field) { return field_facts[static_cast<std::size_t>(field)]; }

void add_finding(std::vector<Finding>& findings, Finding finding) {
    const bool told = std::any_of(findings.begin(), findings.end(), [&](const Finding& other) {
        return other.field == finding.field && other.line == finding.line &&
               other.severity == Severity::refusal;
    });
    if (!told) findings.push_back(std::move(finding));
}

bool any_refusal(const std::vector<Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::refusal; });
}

} // namespace tarvello::e_invoice
