#include "e_invoice/checks.h"

#include "e_invoice/control.h"
#include "e_invoice/sample.h"

#include <gtest/gtest.h>

#include <set>

namespace tarvello::e_invoice {
namespace {

std::string shown(const Finding& finding) {
    return finding.code + " " + std::string(facts_of(finding.field).words) +
           (finding.line > 0 ? " " + std::to_string(finding.line) : "") + ": " + finding.words;
}

/// The finding of that code, field and line whose words hold these; else the whole list fails the test.
void expect_finding(const std::vector<Finding>& findings, const Finding& wanted, const char* what) {
    std::string all;
    for (const Finding& finding : findings) {
        if (finding.code == wanted.code && finding.field == wanted.field && finding.line == wanted.line &&
            finding.severity == wanted.severity && finding.words.find(wanted.words) != std::string::npos) {
            return;
        }
        all += "\n  " + shown(finding);
    }
    ADD_FAILURE() << what << ": not found: " << shown(wanted) << "\namong:" << all;
}

/// What lies wrong with the stored row, the parties or the decisions.
struct SourceFault {
    const char* sample;
    void (*plant)(Sample&);
    Finding finding;
};

const SourceFault source_faults[] = {
    // who issues
    {firm, [](Sample& s) { s.issuer.Partita_IVA = "01234560158"; },
     {refusal, "00301", Field::issuer_partita_iva, 0, "cifra di controllo"}},
    {firm, [](Sample& s) { s.issuer.Partita_IVA = ""; }, {refusal, "00200", Field::issuer_partita_iva, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.Partita_IVA = "01234561015"; },
     {warning, "", Field::issuer_partita_iva, 0, "codice di ufficio"}},
    {firm, [](Sample& s) { s.issuer.Codice_Fiscale = "DNGNCL75E14F205X"; },
     {refusal, "00302", Field::issuer_codice_fiscale, 0, "carattere di controllo"}},
    {firm, [](Sample& s) { s.issuer.Codice_Fiscale = " "; },
     {refusal, "00200", Field::issuer_codice_fiscale, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.Nome_Azienda = s.issuer.Nome = " "; },
     {refusal, "00200", Field::issuer_name, 0, "nome e cognome"}},
    {firm, [](Sample& s) { s.issuer.Indirizzo = ""; }, {refusal, "00200", Field::issuer_indirizzo, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.CAP = "2012"; }, {refusal, "00200", Field::issuer_cap, 0, "5 cifre"}},
    {firm, [](Sample& s) { s.issuer.Comune = ""; }, {refusal, "00200", Field::issuer_comune, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.Provincia = "Milano"; },
     {refusal, "00200", Field::issuer_provincia, 0, "due lettere"}},
    {firm, [](Sample& s) { s.issuer.Titolo = "I"; }, {refusal, "00200", Field::issuer_title, 0, "2 caratteri"}},
    {firm, [](Sample& s) { s.issuer.RegimeFiscale = ""; }, {refusal, "00200", Field::issuer_regime, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.RegimeFiscale = "RF03"; },
     {refusal, "00200", Field::issuer_regime, 0, "codici previsti"}},
    {firm, [](Sample& s) { s.issuer.TipoCassa = ""; }, {refusal, "00200", Field::tipo_cassa, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.TipoRitenuta = "RT09"; },
     {refusal, "00200", Field::tipo_ritenuta, 0, "codici previsti"}},
    {firm, [](Sample& s) { s.issuer.CausalePagamento = ""; },
     {refusal, "00200", Field::causale_pagamento, 0, "manca"}},
    {firm, [](Sample& s) { s.issuer.CausalePagamento = "Z"; },
     {refusal, "", Field::causale_pagamento, 0, "alla data della fattura"}},
    {firm, [](Sample& s) { s.issuer.IBAN = "IT40S0542811101000000123456"; },
     {refusal, "00200", Field::issuer_iban, 0, "cifre di controllo"}},
    {firm, [](Sample& s) { s.issuer.CC = ""; }, {warning, "", Field::issuer_iban, 0, "IBAN"}},
    {firm, [](Sample& s) { s.issuer.IscrizioneREA = {"Milano", "1", {}, "", "LN"}; },
     {refusal, "00200", Field::issuer_rea, 0, "due lettere"}},
    {firm, [](Sample& s) { s.issuer.ProvinciaAlbo = "M"; }, {refusal, "00200", Field::issuer_albo, 0, "due lettere"}},
    // the customer
    {firm, [](Sample& s) { s.invoice.Partita_IVA = "05432100964"; },
     {refusal, "00305", Field::customer_partita_iva, 0, "partita IVA del cliente"}},
    {firm, [](Sample& s) { s.invoice.Partita_IVA = "05432101011"; },
     {warning, "", Field::customer_partita_iva, 0, "codice di ufficio"}},
    {person, [](Sample& s) { s.invoice.Codice_Fiscale = "RSSMRA80A01H501A"; },
     {refusal, "00306", Field::customer_codice_fiscale, 0, "codice fiscale del cliente"}},
    {person, [](Sample& s) { s.invoice.Codice_Fiscale = ""; },
     {refusal, "00417", Field::customer_codice_fiscale, 0, "almeno uno dei due"}},
    {firm, [](Sample& s) { s.invoice.Partita_IVA = s.issuer.Partita_IVA; },
     {refusal, "00471", Field::customer_partita_iva, 0, "stessa persona"}},
    {person, [](Sample& s) { s.invoice.Codice_Fiscale = s.issuer.Codice_Fiscale; },
     {refusal, "00471", Field::customer_partita_iva, 0, "stessa persona"}},
    {firm, [](Sample& s) { s.invoice.Cognome_Ragione_Sociale = " "; },
     {refusal, "00200", Field::customer_name, 0, "ragione sociale"}},
    {firm, [](Sample& s) { s.invoice.Indirizzo = ""; }, {refusal, "00200", Field::customer_indirizzo, 0, "manca"}},
    {firm, [](Sample& s) { s.invoice.CAP = "A0000"; }, {refusal, "00200", Field::customer_cap, 0, "5 cifre"}},
    {firm, [](Sample& s) { s.invoice.Citta = " "; }, {refusal, "00200", Field::customer_citta, 0, "manca"}},
    {firm, [](Sample& s) { s.invoice.Provincia = "B"; }, {refusal, "00200", Field::customer_provincia, 0, "due lettere"}},
    {firm, [](Sample& s) { s.invoice.Provincia = ""; }, {warning, "", Field::customer_provincia, 0, "vuota"}},
    {abroad, [](Sample& s) { s.customer.Nazione = "OO"; }, {refusal, "00200", Field::nazione, 0, "Stato"}},
    {firm, [](Sample& s) { s.customer.CodiceDestinatario = "XXXXXXX"; },
     {refusal, "00313", Field::codice_destinatario, 0, "clienti esteri"}},
    {firm, [](Sample& s) { s.customer.CodiceDestinatario = "ABC123"; },
     {refusal, "00427", Field::codice_destinatario, 0, "7 per"}},
    {administration, [](Sample& s) { s.customer.CodiceDestinatario = "ABC1234"; },
     {refusal, "00427", Field::codice_destinatario, 0, "6 caratteri"}},
    {administration, [](Sample& s) { s.customer.CodiceDestinatario = ""; },
     {refusal, "00200", Field::codice_destinatario, 0, "manca"}},
    {administration, [](Sample& s) { s.decisions.reference.CodiceCIG = ""; },
     {warning, "", Field::riferimenti, 0, "CIG"}},
    {person, [](Sample& s) { s.customer.PECDestinatario = "sdi01@PEC.fatturapa.it"; },
     {refusal, "00330", Field::pec, 0, "Sistema di Interscambio"}},
    {person, [](Sample& s) { s.customer.PECDestinatario = "però@pec.example"; },
     {refusal, "00200", Field::pec, 0, "accenti"}},
    {person, [](Sample& s) { s.customer.PECDestinatario = "a..b@pec.example"; },
     {refusal, "00200", Field::pec, 0, "indirizzo"}},
    // number, date, kind
    {firm, [](Sample& s) { s.invoice.Numero_Fattura = ""; }, {refusal, "00425", Field::numero, 0, "almeno una cifra"}},
    {firm, [](Sample& s) { s.invoice.Data_Fattura = make_date(2026, 3, 21); },
     {refusal, "00403", Field::data, 0, "nel futuro"}},
    {firm, [](Sample& s) { s.invoice.Data_Fattura = {}; }, {refusal, "00200", Field::data, 0, "non è valida"}},
    {firm, [](Sample& s) { s.invoice.Data_Fattura = make_date(2026, 3, 7); }, {warning, "", Field::data, 0, "12 giorni"}},
    {firm, [](Sample& s) { s.decisions.TipoDocumento = "TD29"; },
     {refusal, "00200", Field::tipo_documento, 0, "codici previsti"}},
    {firm, [](Sample& s) { s.decisions.TipoDocumento = "TD04"; }, {warning, "", Field::fattura_collegata, 0, "numero e data"}},
    {firm,
     [](Sample& s) {
         s.decisions.TipoDocumento = "TD04";
         s.decisions.FatturaCollegata = {"9", make_date(2026, 3, 11), "", "", "", ""};
     },
     {refusal, "00418", Field::fattura_collegata, 0, "anteriore"}},
    {firm, [](Sample& s) { s.decisions.FatturaCollegata.Data = make_date(2026, 1, 1); },
     {refusal, "00200", Field::fattura_collegata, 0, "manca"}},
    {firm, [](Sample& s) { s.decisions.reference_kind = ReferenceKind::contract; },
     {refusal, "00200", Field::riferimenti, 0, "manca"}},
    {firm, [](Sample& s) { s.progressive = "123456"; }, {refusal, "00001", Field::nome_file, 0, "5 lettere o cifre"}},
    // amounts
    {firm, [](Sample& s) { s.invoice.Importo[1] = "abc"; }, {refusal, "", Field::importo, 2, "\"abc\" non è un importo"}},
    {firm, [](Sample& s) { s.invoice.Imponibile = ""; }, {refusal, "", Field::imponibile, 0, "manca"}},
    {firm, [](Sample& s) { s.invoice.Totale_Fattura = "€ 100.000.000.000,00"; },
     {refusal, "", Field::totale, 0, "non è un importo"}},
    {firm, [](Sample& s) { s.invoice.Aliquota_IVA = "22.125"; }, {refusal, "", Field::aliquota_iva, 0, "due decimali"}},
    {firm, [](Sample& s) { s.invoice.Aliquota_IVA = "0.22"; }, {refusal, "00424", Field::aliquota_iva, 0, "inferiore a 1%"}},
    {firm, [](Sample& s) { s.invoice.Percentuale_Rivalsa = "101"; },
     {refusal, "", Field::percentuale_rivalsa, 0, "al massimo 100"}},
    {firm, [](Sample& s) { s.invoice.Percentuale_Ritenuta = "20.005"; },
     {refusal, "", Field::percentuale_ritenuta, 0, "due decimali"}},
    {firm, [](Sample& s) { s.invoice.Importo[0] = "€ 1.000,01"; },
     {refusal, "00422", Field::imponibile, 0, "€ 1.259,25 invece di € 1.259,26"}},
    {firm, [](Sample& s) { s.invoice.Imposta_IVA = "€ 251,84"; },
     {refusal, "00421", Field::imposta_iva, 0, "€ 251,84 invece di € 251,85"}},
    {firm, [](Sample& s) { s.invoice.Totale_Fattura = "€ 1.525,73"; },
     {refusal, "", Field::totale, 0, "€ 1.525,73 invece di € 1.525,72"}},
    {firm, [](Sample& s) { s.invoice.Importo_Netto = "€ 1.278,80"; },
     {warning, "", Field::importo_netto, 0, "€ 1.278,80 invece di € 1.278,81"}},
    {firm, [](Sample& s) { s.invoice.Percentuale_Rivalsa = "3"; },
     {warning, "", Field::importo_rivalsa, 0, "€ 24,69 invece di € 37,04"}},
    {firm,
     [](Sample& s) {
         s.invoice.Imponibile = "€ 1.234,56";
         s.invoice.Imposta_IVA = "€ 246,91";
         s.invoice.Totale_Fattura = "€ 1.496,09";
     },
     {refusal, "", Field::imponibile, 0, "\"Esludi la rivalsa dal calcolo dell'imponibile\""}},
    {firm, [](Sample& s) { s.invoice.Totale_Fattura = "-€ 1.525,72"; }, {refusal, "", Field::tipo_documento, 0, "TD04"}},
    {firm, [](Sample&) {}, {warning, "", Field::aliquota_iva, 0, "4, 5, 10, 22"}},
    // natures, stamp duty, withholding
    {abroad, [](Sample& s) { s.decisions.Natura = ""; }, {refusal, "00400", Field::natura, 0, "Manca la natura"}},
    {firm, [](Sample& s) { s.invoice.Articolo_Esenzione = "art. 3"; },
     {refusal, "00400", Field::natura_spese, 0, "Manca la natura"}},
    {abroad, [](Sample& s) { s.decisions.Natura = "N2"; }, {refusal, "00445", Field::natura, 0, "2021"}},
    {firm, [](Sample& s) { s.decisions.NaturaSpese = "N3"; }, {refusal, "00445", Field::natura_spese, 0, "2021"}},
    {abroad,
     [](Sample& s) {
         s.decisions.Natura = "N2.1";
         s.invoice.Data_Fattura = make_date(2020, 9, 30);
     },
     {refusal, "", Field::natura, 0, "alla data della fattura"}},
    {abroad, [](Sample& s) { s.decisions.Natura = "N9"; }, {refusal, "00200", Field::natura, 0, "codici previsti"}},
    {abroad, [](Sample& s) { s.decisions.Natura = "N3.6"; },
     {warning, "", Field::riferimento_normativo, 0, "in base a quale norma"}},
    {abroad, [](Sample& s) { s.decisions.Natura = "N3.5"; },
     {warning, "", Field::dichiarazione_intento, 0, "protocollo e data"}},
    {abroad,
     [](Sample& s) {
         s.decisions.Natura = "N3.5";
         s.decisions.ProtocolloIntento = "1234567890123456-000001";
         s.decisions.DataIntento = make_date(2026, 1, 7);
     },
     {refusal, "00477", Field::dichiarazione_intento, 0, "17 cifre"}},
    {abroad, [](Sample& s) { s.decisions.bollo = false; }, {warning, "", Field::bollo, 0, "risulta dovuta e non"}},
    {firm, [](Sample& s) { s.decisions.bollo = true; }, {warning, "", Field::bollo, 0, "non risulta dovuta"}},
    {administration, [](Sample&) {}, {warning, "", Field::bollo, 0, "può essere dovuta"}},
    {flat_rate,
     [](Sample& s) {
         s.invoice.Ritenuta = "Sì";
         s.invoice.Percentuale_Ritenuta = "20";
         s.invoice.Importo_Ritenuta = "€ 60,00";
     },
     {warning, "", Field::importo_ritenuta, 0, "forfettario"}},
    {firm, [](Sample& s) { s.issuer.RegimeFiscale = "RF19"; }, {warning, "", Field::aliquota_iva, 0, "forfettario"}},
    {person,
     [](Sample& s) {
         s.invoice.Ritenuta = "Sì";
         s.invoice.Percentuale_Ritenuta = "20";
         s.invoice.Importo_Ritenuta = "€ 180,00";
     },
     {warning, "", Field::importo_ritenuta, 0, "privato"}},
    {firm, [](Sample& s) { s.decisions.EsigibilitaIVA = "S"; }, {warning, "", Field::esigibilita_iva, 0, "quotate"}},
    {firm, [](Sample& s) { s.decisions.EsigibilitaIVA = "X"; },
     {refusal, "00200", Field::esigibilita_iva, 0, "codici previsti"}},
    {firm, [](Sample& s) { s.invoice.Pagamento = "contanti"; },
     {refusal, "", Field::pagamento, 0, "conto dell'intestazione"}},
    // texts
    {firm, [](Sample& s) { s.invoice.Prestazione[1] = "Перевод"; },
     {warning, "", Field::prestazione, 2, "caratteri non sono ammessi"}},
    {firm, [](Sample& s) { s.invoice.Prestazione[1] = std::string(1001, 'x'); },
     {warning, "", Field::prestazione, 2, "1000 caratteri"}},
    {firm, [](Sample& s) { s.decisions.DescrizioneSpese = "Σ"; },
     {warning, "", Field::descrizione_spese, 0, "caratteri non sono ammessi"}},
    {firm, [](Sample& s) { s.issuer.Banca = "Ω Bank", s.decisions.bank = BankDetails::letterhead; },
     {warning, "", Field::issuer_banca, 0, "\"? Bank\""}},
};

TEST(EInvoiceChecks, FindFaultsOfTheSource) {
    for (const SourceFault& fault : source_faults) {
        Sample changed = sample(fault.sample);
        fault.plant(changed);
        expect_finding(changed.findings(), fault.finding, fault.sample);
    }
}

/// What no source gives, planted in the document itself: the net below from_row.
struct DocumentFault {
    const char* sample;
    void (*plant)(FatturaElettronicaType&);
    Finding finding;
};

auto& general(FatturaElettronicaType& d) {
    return d.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento;
}
auto& sending(FatturaElettronicaType& d) { return d.FatturaElettronicaHeader.DatiTrasmissione; }
auto& line(FatturaElettronicaType& d, std::size_t i) {
    return d.FatturaElettronicaBody.DatiBeniServizi.DettaglioLinee.at(i);
}
auto& fund(FatturaElettronicaType& d) { return general(d).DatiCassaPrevidenziale.at(0); }
auto& summaries(FatturaElettronicaType& d) { return d.FatturaElettronicaBody.DatiBeniServizi.DatiRiepilogo; }

const DocumentFault document_faults[] = {
    {firm,
     [](auto& d) { sending(d).IdTrasmittente.IdCodice = "DNGNCL75E14F205X"; },
     {refusal, "00300", Field::issuer_codice_fiscale, 0, "trasmette"}},
    {firm,
     [](auto& d) { d.versione = "FPA12"; },
     {refusal, "00428", Field::codice_destinatario, 0, "formato"}},
    {abroad,
     [](auto& d) { d.FatturaElettronicaHeader.CedentePrestatore.DatiAnagrafici.IdFiscaleIVA.IdPaese = "FR"; },
     {refusal, "00476", Field::nazione, 0, "tutti e due esteri"}},
    {firm,
     [](auto& d) { general(d).DatiRitenuta.clear(); },
     {refusal, "00411", Field::importo_ritenuta, 0, "soggetta a ritenuta"}},
    {person,
     [](auto& d) {
         general(d).DatiCassaPrevidenziale.push_back({"TC22", 400, 1, {}, 2200, "SI", ""});
     },
     {refusal, "00415", Field::tipo_cassa, 0, "rivalsa è soggetta"}},
    {firm, [](auto& d) { fund(d).AliquotaIVA = 0; }, {refusal, "00413", Field::natura, 0, "rivalsa"}},
    {firm, [](auto& d) { fund(d).Natura = "N1"; }, {refusal, "00414", Field::natura, 0, "rivalsa"}},
    {firm, [](auto& d) { line(d, 0).Natura = "N1"; }, {refusal, "00401", Field::natura, 0, "con IVA"}},
    {firm,
     [](auto& d) { summaries(d)[1].Natura.clear(); },
     {refusal, "00429", Field::natura, 0, "riepilogo"}},
    {firm, [](auto& d) { summaries(d)[0].Natura = "N1"; }, {refusal, "00430", Field::natura, 0, "riepilogo"}},
    {firm,
     [](auto& d) { line(d, 1).PrezzoTotale += 1; },
     {refusal, "00423", Field::importo, 2, "prezzo totale"}},
    {firm,
     [](auto& d) { summaries(d).pop_back(); },
     {refusal, "00419", Field::aliquota_iva, 0, "meno riepiloghi"}},
    {firm,
     [](auto& d) { summaries(d)[0].AliquotaIVA = 2200; },
     {refusal, "00443", Field::aliquota_iva, 0, "non ha il suo riepilogo"}},
    {firm,
     [](auto& d) { summaries(d)[1].Natura = "N4"; },
     {refusal, "00444", Field::natura, 0, "non ha il suo riepilogo"}},
    {firm,
     [](auto& d) {
         summaries(d)[1].Natura = "N6.3";
         summaries(d)[1].EsigibilitaIVA = "S";
     },
     {refusal, "00420", Field::esigibilita_iva, 0, "inversione contabile"}},
    {firm,
     [](auto& d) { line(d, 0).Descrizione = "€"; },
     {refusal, "00200", Field::prestazione, 1, "non ammessi"}},
    {firm,
     [](auto& d) { line(d, 0).NumeroLinea = 0; },
     {refusal, "00200", Field::prestazione, 1, "numero di linea"}},
    {firm,
     [](auto& d) { line(d, 1).PrezzoUnitario = line(d, 1).PrezzoTotale = 10'000'000'000'000; },
     {refusal, "00200", Field::importo, 2, "undici cifre"}},
    {firm, [](auto& d) { general(d).Divisa = "USD"; }, {refusal, "00200", Field::nome_file, 0, "EUR"}},
    {firm,
     [](auto& d) { fund(d).AlCassa = 10'001; },
     {refusal, "00200", Field::percentuale_rivalsa, 0, "da 0 a 100"}},
};

TEST(EInvoiceChecks, FindFaultsOfTheDocument) {
    for (const DocumentFault& fault : document_faults) {
        Draft draft = sample(fault.sample).draft();
        fault.plant(draft.document);
        expect_finding(check(draft, {.today = soon_after}), fault.finding, fault.finding.code.c_str());
    }
}

TEST(EInvoiceChecks, KnowWhatTheArchiveKnows) {
    const Draft draft = sample(firm).draft();
    expect_finding(check(draft, {.today = soon_after, .number_sent = true, .number_created = true}),
                   {refusal, "00404", Field::numero, 0, "già stata inviata"}, "sent");
    expect_finding(check(draft, {.today = soon_after, .number_created = true}),
                   {warning, "", Field::numero, 0, "esiste già"}, "created");
    expect_finding(check(draft, {.today = make_date(2026, 3, 9)}),
                   {refusal, "00403", Field::data, 0, "futuro"}, "");
}

TEST(EInvoiceChecks, SayOneThingOnce) {
    Sample changed = sample(firm);
    changed.invoice.Importo[1] = "abc"; // sums cannot be right: that is no second fault
    changed.invoice.Partita_IVA = "1";  // of a wrong form, too
    std::vector<std::string> refusals;
    for (const Finding& finding : changed.findings()) {
        if (finding.severity == refusal) refusals.push_back(finding.code);
    }
    EXPECT_EQ(refusals, (std::vector<std::string>{"", "00305"}));
}

TEST(EInvoiceChecks, EveryControlHasItsPlantedFault) {
    std::set<std::pair<std::string, Field>> planted{{"00404", Field::numero}, {"", Field::numero}};
    for (const SourceFault& fault : source_faults) planted.insert({fault.finding.code, fault.finding.field});
    for (const DocumentFault& fault : document_faults)
        planted.insert({fault.finding.code, fault.finding.field});
    for (const auto controls : {controls_of_parties(), controls_of_document(), controls_of_amounts()}) {
        for (const SdiControl& control : controls) {
            EXPECT_TRUE(planted.contains({control.code, control.field}))
                << control.code << " " << control.words;
        }
    }
}

} // namespace
} // namespace tarvello::e_invoice
