#include "e_invoice/file_name.h"
#include "e_invoice/parties.h"
#include "e_invoice/proposals.h"
#include "e_invoice/sample.h"
#include "e_invoice/xml_reader.h"
#include "e_invoice/xml_writer.h"

#include "text/letter_case.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <functional>

namespace tarvello::e_invoice {
namespace {

struct EInvoiceSample : ::testing::TestWithParam<std::string> {
    const Sample worked = sample(GetParam());
};

TEST_P(EInvoiceSample, GivesItsFile) {
    const Draft draft = worked.draft();
    EXPECT_EQ(to_xml(draft.document), worked.xml);
    EXPECT_EQ(draft.document.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento.Numero, worked.number);
    EXPECT_EQ(file_name(sender_code(worked.issuer), worked.progressive), worked.file_name);
    EXPECT_EQ(to_xml(read_document(worked.xml)), worked.xml) << "and is read back";
    for (const Finding& finding : worked.findings()) {
        EXPECT_EQ(finding.severity, Severity::warning) << finding.words;
    }
}

TEST_P(EInvoiceSample, IsProposedAsItWasDecided) {
    Decisions asked; // what follows from nothing stored
    if (GetParam() == abroad) asked.Natura = "N2.1";
    const Decisions proposed = propose(worked.invoice, worked.issuer, worked.customer, asked, italian);
    EXPECT_EQ(proposed.TipoDocumento, "TD06");
    EXPECT_EQ(proposed.Natura, worked.decisions.Natura);
    if (!worked.decisions.NaturaSpese.empty()) {
        EXPECT_EQ(proposed.NaturaSpese, worked.decisions.NaturaSpese);
        EXPECT_EQ(proposed.DescrizioneSpese, worked.decisions.DescrizioneSpese);
    }
    EXPECT_EQ(proposed.bollo, worked.decisions.bollo);
    EXPECT_EQ(proposed.Causale, worked.decisions.Causale);
}

INSTANTIATE_TEST_SUITE_P(Worked, EInvoiceSample, ::testing::ValuesIn(sample_names()), [](const auto& info) {
    std::string name = info.param;
    for (char& c : name) c = c == '-' ? '_' : c;
    return name;
});

/// The texts of all elements that an XPath finds, joined by "|".
std::string found(const Draft& draft, const char* path) {
    pugi::xml_document document;
    document.load_string(to_xml(draft.document).c_str());
    std::string texts;
    pugi::xpath_node_set nodes = document.select_nodes(path);
    nodes.sort();
    for (const pugi::xpath_node& node : nodes) {
        texts += (texts.empty() ? "" : "|") + std::string(node.node().text().get());
    }
    return texts;
}

struct RowCase {
    const char* what;
    const char* sample;
    void (*change)(Sample&);
    const char* path;
    const char* expected;
};

/// The worked invoice B: a surcharge of 4 that entered the base of the withholding.
void surcharge_of_four(Sample& s) {
    s.issuer.TipoCassa = "TC22";
    s.invoice.Percentuale_Rivalsa = "4";
    s.invoice.Importo_Rivalsa = "€ 49,38";
    s.invoice.Importo_Ritenuta = "€ 256,79";
}

/// A fee so small that the withholding is the same with and without the surcharge.
void tie(Sample& s) {
    surcharge_of_four(s);
    s.invoice.Importo = {"€ 0,50"};
    s.invoice.Importo_Rivalsa = "€ 0,02";
    s.invoice.Importo_Ritenuta = "€ 0,10";
}

void negative(Sample& s) {
    s.decisions.TipoDocumento = "TD04";
    s.invoice.Importo = {"-€ 1.000,00", "-€ 234,56"};
    s.invoice.Importo_Rivalsa = "-€ 24,69";
    s.invoice.Imponibile = "-€ 1.259,25";
    s.invoice.Imposta_IVA = "-€ 251,85";
    s.invoice.Importo_Spese = "-€ 14,62";
    s.invoice.Totale_Fattura = "-€ 1.525,72";
    s.invoice.Importo_Ritenuta = "-€ 246,91";
    s.invoice.Importo_Netto = "-€ 1.278,81";
    s.decisions.FatturaCollegata = {"7/2026", make_date(2026, 2, 1), "", "", "", ""};
}

const RowCase row_cases[] = {
    // the surcharge and the withholding
    {"INPS in the base", firm, surcharge_of_four, "//DatiCassaPrevidenziale/Ritenuta", "SI"},
    {"the nearest decides for any fund", firm,
     [](Sample& s) { surcharge_of_four(s), s.issuer.TipoCassa = "TC04"; },
     "//DatiCassaPrevidenziale/Ritenuta", "SI"},
    {"INPS not in the base", firm,
     [](Sample& s) { surcharge_of_four(s), s.invoice.Importo_Ritenuta = "€ 246,91"; },
     "//DatiCassaPrevidenziale/Ritenuta", ""},
    {"tie, INPS", firm, tie, "//DatiCassaPrevidenziale/Ritenuta", "SI"},
    {"tie, another fund", firm, [](Sample& s) { tie(s), s.issuer.TipoCassa = "TC01"; },
     "//DatiCassaPrevidenziale/Ritenuta", ""},
    {"old row with expenses in the base", firm,
     [](Sample& s) {
         surcharge_of_four(s);
         s.invoice.IVA_Spese = "20";
         s.invoice.Importo_Spese = "€ 49,38";
         s.invoice.Importo_Ritenuta = "€ 256,79";
     },
     "//DatiCassaPrevidenziale/Ritenuta", ""},
    {"INPS without withholding", firm, [](Sample& s) { surcharge_of_four(s), s.invoice.Ritenuta = ""; },
     "//Ritenuta|//DatiRitenuta", ""},
    {"withholding of nought", firm, [](Sample& s) { s.invoice.Importo_Ritenuta = "€ 0,00"; },
     "//Ritenuta|//DatiRitenuta", ""},
    {"share in an older text", reduced_base,
     [](Sample& s) {
         s.invoice.Percentuale_Ritenuta = "20% (su 75% imp.)";
         s.invoice.Ritenuta_Su = "";
     },
     "//AliquotaRitenuta|//DatiCassaPrevidenziale/Ritenuta", "20.00"},
    {"surcharge of nought", firm, [](Sample& s) { s.invoice.Importo_Rivalsa = "€ 0,00"; },
     "//DatiCassaPrevidenziale", ""},
    {"surcharge without VAT", flat_rate,
     [](Sample& s) {
         s.invoice.Rivalsa = "Sì";
         s.invoice.Percentuale_Rivalsa = "4";
         s.invoice.Importo_Rivalsa = "€ 12,00";
     },
     "//DatiCassaPrevidenziale/*", "TC22|4.00|12.00|300.00|0.00|N2.2"},
    // lines and summaries
    {"line without amount", firm, [](Sample& s) { s.invoice.Importo[1] = " "; }, "//DettaglioLinee[2]/*",
     "2|Sopralluogo|0.00|0.00|20.00"},
    {"amount without text", firm, [](Sample& s) { s.invoice.Prestazione[0] = " "; },
     "//DettaglioLinee[1]/Descrizione", "Prestazione professionale"},
    {"a line further down", firm, [](Sample& s) { std::swap(s.invoice.Importo[1], s.invoice.Importo[4]); },
     "//DettaglioLinee/PrezzoTotale", "1000.00|0.00|234.56|14.62"},
    {"exempt expenses", firm, [](Sample& s) { s.invoice.Articolo_Esenzione = "(Art. 10 D.p.r. 633/72)"; },
     "//DatiRiepilogo[2]/*", "0.00|N4|14.62|0.00|Esente art. 10 DPR 633/72"},
    {"expenses that must be asked", firm,
     [](Sample& s) { s.invoice.Articolo_Esenzione = "(Art. 74 D.p.r. 633/72)"; }, "//Natura", ""},
    {"words of the issuer for expenses", firm,
     [](Sample& s) { s.issuer.DescrizioneSpese = "Bolli e visure"; }, "//DettaglioLinee[3]/Descrizione",
     "Bolli e visure"},
    {"no expenses", firm, [](Sample& s) { s.invoice.Spese = ""; }, "//DatiRiepilogo/AliquotaIVA", "20.00"},
    {"nothing but expenses", firm,
     [](Sample& s) {
         s.invoice.Prestazione = {};
         s.invoice.Importo = {};
         s.invoice.Rivalsa = "";
         s.invoice.Imponibile = s.invoice.Imposta_IVA = "€ 0,00";
     },
     "//DatiRiepilogo/Natura", "N1"},
    {"a rate of nought is exempt", flat_rate, [](Sample& s) { s.invoice.Aliquota_IVA = "0"; }, "//Natura",
     "N2.2|N2.2|N2.2"},
    {"cash VAT", firm, [](Sample& s) { s.issuer.RegimeFiscale = "RF17"; }, "//EsigibilitaIVA", "D"},
    {"own words for the law", abroad, [](Sample& s) { s.decisions.RiferimentoNormativo = "Art. 7 quater"; },
     "//RiferimentoNormativo", "Art. 7 quater"},
    {"outside of the Union", abroad, [](Sample& s) { s.customer.Nazione = "CH"; }, "//RiferimentoNormativo",
     "Art. 7-ter DPR 633/72 - operazione non soggetta"},
    {"letter of intent", firm,
     [](Sample& s) {
         s.invoice.Aliquota_IVA = "Esente";
         s.decisions.Natura = "N3.5";
         s.decisions.ProtocolloIntento = "12345678901234567-000001";
         s.decisions.DataIntento = make_date(2026, 1, 7);
     },
     "//DettaglioLinee[1]/AltriDatiGestionali/*", "INTENTO|12345678901234567-000001|2026-01-07"},
    // document and payment
    {"plain number", firm, [](Sample& s) { s.issuer.number_form = NumberForm::plain; }, "//Numero", "1"},
    {"year of the row", firm, [](Sample& s) { s.invoice.Anno = "2025"; }, "//Numero", "1/2025"},
    {"no number", firm, [](Sample& s) { s.invoice.Numero_Fattura = ""; }, "//Numero", ""},
    {"kind of the issuer", firm,
     [](Sample& s) {
         s.decisions.TipoDocumento = "";
         s.issuer.TipoDocumento = "TD01";
     },
     "//TipoDocumento", "TD01"},
    {"credit note", firm, negative,
     "//TipoDocumento|//Importo|//PrezzoTotale|//ImportoContributoCassa|//ImponibileImporto|//Imposta|"
     "//ImportoTotaleDocumento|//ImportoRitenuta|//DatiPagamento|//DatiFattureCollegate/*",
     "TD04|246.91|24.69|1525.72|7/2026|2026-02-01|1000.00|234.56|14.62|1259.25|251.85|14.62|0.00"},
    {"credit note written with plus", firm, [](Sample& s) { s.decisions.TipoDocumento = "TD04"; },
     "//ImportoTotaleDocumento|//DatiPagamento", "1525.72"},
    {"not to be paid by transfer", firm, [](Sample& s) { s.invoice.Check_Pagamento = ""; }, "//DatiPagamento",
     ""},
    {"split payment", firm, [](Sample& s) { s.decisions.EsigibilitaIVA = "S"; },
     "//EsigibilitaIVA|//ImportoPagamento", "S|1026.96"},
    {"nothing to pay", firm, [](Sample& s) { s.invoice.Importo_Netto = "€ 0,00"; }, "//DatiPagamento", ""},
    {"no account", firm, [](Sample& s) { s.issuer.CC = ""; }, "//DettaglioPagamento/*",
     "MP05|1278.81|Banca di Prova S.p.A.|05428|11101"},
    {"IBAN in the account's box", firm,
     [](Sample& s) { s.invoice.Pagamento = s.issuer.CC = "IT60 X054 2811 1010 0000 0123 456"; }, "//IBAN",
     "IT60X0542811101000000123456"},
    {"IBAN of another bank there", firm,
     [](Sample& s) { s.invoice.Pagamento = s.issuer.CC = "IT17O0542810808000000063057"; }, "//IBAN", ""},
    {"IBAN typed", firm, [](Sample& s) { s.issuer.IBAN = "it17 o054 2810 8080 0000 0063 057"; }, "//IBAN",
     "IT17O0542810808000000063057"},
    {"bank edited away", firm, [](Sample& s) { s.invoice.Pagamento = "contanti"; }, "//DettaglioPagamento/*",
     "MP05|1278.81"},
    {"bank edited and wanted", firm,
     [](Sample& s) {
         s.invoice.Pagamento = "contanti";
         s.decisions.bank = BankDetails::letterhead;
     },
     "//IBAN", "IT60X0542811101000000123456"},
    {"bank not wanted", firm, [](Sample& s) { s.decisions.bank = BankDetails::none; },
     "//DettaglioPagamento/*", "MP05|1278.81"},
    {"order and agreement", firm,
     [](Sample& s) {
         s.decisions.reference_kind = ReferenceKind::order;
         s.decisions.reference = {"O-1", make_date(2026, 1, 2), "3", "Lotto 4", "CUP5", "CIG6"};
     },
     "//DatiOrdineAcquisto/*", "O-1|2026-01-02|3|Lotto 4|CUP5|CIG6"},
    // parties
    {"firm by certified mail", firm,
     [](Sample& s) { s.customer = {"", "pec@officine.example", "", false, false, "", "", "", ""}; },
     "//CodiceDestinatario|//PECDestinatario", "0000000|pec@officine.example"},
    {"the code wins over certified mail", firm,
     [](Sample& s) { s.customer.PECDestinatario = "pec@officine.example"; },
     "//CodiceDestinatario|//PECDestinatario", "ABC1234"},
    {"codes as typed", firm,
     [](Sample& s) {
         s.customer.CodiceDestinatario = "abc 1234";
         s.invoice.Partita_IVA = "IT 05432100963";
     },
     "//CodiceDestinatario|//CessionarioCommittente//IdCodice", "ABC1234|05432100963"},
    {"member of a VAT group", firm, [](Sample& s) { s.customer.vat_group = true; },
     "//CessionarioCommittente//IdCodice|//CessionarioCommittente//CodiceFiscale", "05432100963|05432100963"},
    {"administration that acts for VAT", administration,
     [](Sample& s) { s.invoice.Partita_IVA = "05432100963"; },
     "//CessionarioCommittente//IdCodice|//CessionarioCommittente//CodiceFiscale", "05432100963|80012340040"},
    {"person with a VAT number", firm,
     [](Sample& s) { s.invoice.Nome = "Anna", s.invoice.Cognome_Ragione_Sociale = "Neri"; },
     "//CessionarioCommittente/DatiAnagrafici/Anagrafica/*", "Anna|Neri"},
    {"recipient abroad", abroad, [](Sample& s) { s.customer.CodiceDestinatario = ""; },
     "//CodiceDestinatario", "XXXXXXX"},
    {"recipient abroad with a code of its own", abroad,
     [](Sample& s) { s.customer.CodiceDestinatario = "2R4GTO8"; }, "//CodiceDestinatario", "2R4GTO8"},
    {"firm abroad without number", abroad, [](Sample& s) { s.invoice.Partita_IVA = ""; },
     "//CessionarioCommittente/DatiAnagrafici/IdFiscaleIVA/*", "DE|99999999999"},
    {"person abroad without number", abroad,
     [](Sample& s) { s.invoice.Partita_IVA = "", s.invoice.Nome = "Jörg", s.invoice.Codice_Fiscale = "X"; },
     "//CessionarioCommittente/DatiAnagrafici/*/*", "DE|0000000|Jörg|Gießerei Lódz GmbH"},
    {"number with its country", abroad, [](Sample& s) { s.customer.IdCodice = "de 987.654.321"; },
     "//CessionarioCommittente//IdCodice", "987654321"},
    {"firm abroad with an Italian number", abroad,
     [](Sample& s) {
         s.customer.IdPaese = "IT";
         s.customer.IdCodice = "05432100963";
         s.customer.CodiceDestinatario = "";
     },
     "//CodiceDestinatario|//CessionarioCommittente//IdFiscaleIVA/*|//CessionarioCommittente//Nazione",
     "0000000|IT|05432100963|DE"},
    {"the postcode abroad is never cut off", abroad,
     [](Sample& s) {
         s.customer.Indirizzo = "Straße der Deutsch-Sowjetischen Freundschaft unter den Linden 12345";
     },
     "//CessionarioCommittente/Sede/*",
     "Straße der Deutsch-Sowjetischen Freundschaft unter de, 80331|00000|München|DE"},
    {"issuer that is a firm", firm,
     [](Sample& s) {
         s.issuer.Nome = s.issuer.Titolo = "";
         s.issuer.Nome_Azienda = "Studio Prova S.t.p.";
         s.issuer.IscrizioneREA = {"MI", "123456", 1'000'000, "SM", "LN"};
     },
     "//CedentePrestatore//Anagrafica/*|//IscrizioneREA/*", "Studio Prova S.t.p.|MI|123456|10000.00|SM|LN"},
    {"numbers of contact", firm,
     [](Sample& s) {
         s.issuer.Telefono = "+39 02/5830.12";
         s.issuer.Fax = "02 583012 / 02 583013";
         s.issuer.email = "senza chiocciola";
     },
     "//Contatti/*", "02583012"},
    {"professional body", firm,
     [](Sample& s) {
         s.issuer.AlboProfessionale = "Ordine degli ingegneri";
         s.issuer.ProvinciaAlbo = "mi";
         s.issuer.NumeroIscrizioneAlbo = "A-1234";
         s.issuer.DataIscrizioneAlbo = make_date(2001, 2, 3);
     },
     "//CedentePrestatore/DatiAnagrafici/*[position() > 3]",
     "Ordine degli ingegneri|MI|A-1234|2001-02-03|RF01"},
};

TEST(EInvoiceRow, GoesToItsElements) {
    for (const RowCase& row : row_cases) {
        Sample changed = sample(row.sample);
        row.change(changed);
        EXPECT_EQ(found(changed.draft(), row.path), row.expected) << row.what;
    }
}

TEST(EInvoiceRow, LongReasonsAreSeveral) {
    Sample changed = sample(firm);
    const std::string word = "perché"; // the 29th would end beyond the 200th character
    std::string text;
    for (int i = 0; i < 30; ++i) text += word + " ";
    changed.decisions.Causale = {text, "", std::string(201, 'x')};
    const auto& reasons =
        changed.draft().document.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento.Causale;
    ASSERT_EQ(reasons.size(), 4u);
    EXPECT_EQ(reasons[0] + " " + reasons[1], trim(text));
    EXPECT_EQ(reasons[1], "perché perché");
    EXPECT_EQ(reasons[3], "x");
}

TEST(EInvoiceProposals, FollowFromRegimeAndAmounts) {
    Sample old_regime = sample(flat_rate);
    old_regime.issuer.RegimeFiscale = "RF02";
    Decisions decisions = propose(old_regime.invoice, old_regime.issuer, old_regime.customer, {}, italian);
    EXPECT_EQ(decisions.Natura, "N2.2");
    EXPECT_EQ(decisions.Causale.size(), 3u);
    EXPECT_NE(decisions.Causale.front().find("L. 244/2007"), std::string::npos);

    Sample back = sample(firm);
    negative(back);
    EXPECT_EQ(propose(back.invoice, back.issuer, back.customer, {}, italian).TipoDocumento, "TD04");

    Sample swiss = sample(abroad);
    swiss.customer.Nazione = "CH";
    decisions = propose(swiss.invoice, swiss.issuer, swiss.customer, {}, italian);
    EXPECT_EQ(decisions.Natura, "") << "must be asked";
    EXPECT_FALSE(decisions.bollo) << "as long as the nature is not known";
    decisions.Natura = "N2.1";
    decisions = propose(swiss.invoice, swiss.issuer, swiss.customer, decisions, italian);
    EXPECT_EQ(decisions.Causale.front(), "Operazione non soggetta ad IVA, art. 7-ter DPR 633/72");

    Sample stamped = sample(firm);
    stamped.invoice.Importo_Spese = "€ 2,00";
    stamped.invoice.Articolo_Esenzione = "Bollo";
    EXPECT_EQ(propose(stamped.invoice, stamped.issuer, stamped.customer, {}, italian).NaturaSpese, "N1");
}

} // namespace
} // namespace tarvello::e_invoice
