#include "e_invoice/readable_view.h"

#include "e_invoice/sample.h"

#include "failure.h"

#include <gtest/gtest.h>

namespace tarvello::e_invoice {
namespace {

/// The view as plain lines.
std::string lines_of(const ReadableView& view) {
    std::string text = view.title + "\n";
    for (const ViewSection& section : view.sections) {
        text += "[" + section.title + "]\n";
        for (const ViewRow& row : section.rows) text += row.label + ": " + row.value + "\n";
        for (const auto& line : section.lines) {
            EXPECT_EQ(line.size(), section.columns.size());
            for (std::size_t i = 0; i < line.size(); ++i) text += (i > 0 ? " | " : "") + line[i];
            text += "\n";
        }
    }
    return text;
}

TEST(EInvoiceView, ShowsWhatTheFileSays) {
    EXPECT_EQ(lines_of(readable_view(sample(administration).xml)),
              R"(Parcella (TD06) n. 8/2026 del 17/03/2026
[Chi emette la fattura]
Nome: Avv. Niccolò D'Angelo
Partita IVA: IT01234560157
Codice fiscale: DNGNCL75E14F205Y
Sede: Via Santa Sofia, 12 - 20122 Milano (MI)
Regime fiscale: ordinario (RF01)
Telefono: 0258301234
E-mail: studio@dangelo.example
[Cliente]
Nome: Comune di Prova
Codice fiscale: 80012340040
Sede: Piazza Municipio 1 - 12100 Cuneo (CN)
[Documento]
Tipo: Parcella (TD06)
Numero: 8/2026
Data: 17/03/2026
Contratto: 12
CIG: Z1234567AB
[Prestazioni]
1 | Assistenza stragiudiziale | € 2.000,00 | 22% | Sì
2 | Parere scritto | € 750,50 | 22% | Sì
3 | Contributo unificato anticipato | € 98,00 | escluso art. 15 (N1) | 
[Cassa previdenziale]
Cassa Forense, avvocati (TC01) | 4% | € 2.750,50 | € 110,02 | 22% | 
[Riepilogo IVA]
22% | € 2.860,52 | € 629,31 | esigibilità immediata (I) | 
escluso art. 15 (N1) | € 98,00 | € 0,00 |  | Escluso art. 15 DPR 633/72
[Totali]
Totale del documento: € 3.587,83
Ritenuta d'acconto 20%: € 550,10
Tipo di ritenuta: ritenuta di persone fisiche (RT01)
Causale della ritenuta: lavoro autonomo abituale (arte o professione) (A)
[Pagamento]
Condizioni: completo (TP02)
Modalità: bonifico (MP05)
Importo da pagare: € 3.037,73
Banca: Banca di Prova S.p.A.
IBAN: IT60X0542811101000000123456
[Trasmissione]
Trasmessa da: ITDNGNCL75E14F205Y
Progressivo: 00008
Formato: FPA12
Codice destinatario: 1A2B3C
)");
    const std::string other = lines_of(readable_view(sample(abroad).xml));
    for (const char* line :
         {"Partita IVA: DE123456789\n", "Sede: Hauptstraße 1, 80331 - 00000 München - Germania\n",
          "Causale: Inversione contabile - reverse charge, art. 7-ter DPR 633/72\n",
          "Imposta di bollo virtuale: € 2,00\n"}) {
        EXPECT_NE(other.find(line), std::string::npos) << line;
    }
}

TEST(EInvoiceView, AsHtmlKeepsItsSigns) {
    const std::string html =
        to_html({"A & B <1>", {{"Righe", {{"Uno", "<b>"}}, {{"N."}, {"Importo", true}}, {{"1", "€ 2"}}}}});
    EXPECT_EQ(html, R"(<h2>A &amp; B &lt;1&gt;</h2>
<h3>Righe</h3>
<table cellpadding="2">
<tr><th align="left">Uno</th><td align="left">&lt;b&gt;</td></tr>
</table>
<table width="98%" cellpadding="4">
<tr><th align="left">N.</th><th align="right">Importo</th></tr>
<tr><td align="left">1</td><td align="right">€ 2</td></tr>
</table>
)");
}

TEST(EInvoiceView, RefusesWhatIsNoInvoice) {
    for (const char* xml : {"<a/>", "testo",
                            "<FatturaElettronica><FatturaElettronicaBody><DatiGenerali>"
                            "<DatiGeneraliDocumento><Data>ieri</Data></DatiGeneraliDocumento>"
                            "</DatiGenerali></FatturaElettronicaBody></FatturaElettronica>"}) {
        EXPECT_THROW(readable_view(xml), Failure) << xml;
    }
}

} // namespace
} // namespace tarvello::e_invoice
