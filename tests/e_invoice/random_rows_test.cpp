// Rows as the program itself calculates them, and texts that no printer should see: every document that comes
// of them is valid for eyes that share nothing with the program (check_documents.py).
#include "e_invoice/proposals.h"
#include "e_invoice/sample.h"
#include "e_invoice/xml_reader.h"
#include "e_invoice/xml_writer.h"

#include "invoices/invoice_amounts.h"
#include "places.h"
#include "store/store_fixture.h"
#include "text/currency.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace tarvello::e_invoice {
namespace {

/// How many random rows a thorough run wants; null in a short one.
const char* const thorough = std::getenv("TARVELLO_E_INVOICES");

/// What check_documents.py says of the documents in a folder; it ends with 0 if it finds nothing.
void expect_valid(const testing::TemporaryFolder& folder) {
    const std::string command = "python3 '" TARVELLO_TEST_DATA
                                "/e_invoice/check_documents.py' '" TARVELLO_TEST_DATA
                                "/data/fatturapa/schemas' '" +
                                folder.path.string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
}

class RandomRows {
public:
    explicit RandomRows(unsigned seed) : random_(seed) {}

    Sample next() {
        Sample made = sample(one_of({firm, person, flat_rate, administration, abroad}));
        made.invoice.Numero_Fattura = std::to_string(number(1, 9999));
        made.decisions = {};
        vary_issuer(made.issuer);
        calculate(made.invoice, made.issuer);
        Decisions decided;
        if (is_without_vat(made.invoice) && nature_of(made.issuer, decided).empty())
            decided.Natura = one_of({"N1", "N2.1", "N2.2", "N3.4", "N3.6", "N4"});
        if (nature_of_expenses(made.invoice, decided).empty())
            decided.NaturaSpese = one_of({"N1", "N2.2", "N4"});
        made.decisions = propose(made.invoice, made.issuer, made.customer, decided, italian);
        if (made.customer.public_administration && chance(4)) made.decisions.EsigibilitaIVA = "S";
        return made;
    }

private:
    int number(int first, int last) { return std::uniform_int_distribution<int>(first, last)(random_); }
    bool chance(int in) { return number(1, in) == 1; }
    std::string one_of(std::vector<std::string> of) {
        return of[static_cast<std::size_t>(number(0, static_cast<int>(of.size()) - 1))];
    }

    std::string amount(int most) {
        const double cents = number(chance(12) ? -most : 0, most);
        return currency_text(cents / 100, italian);
    }

    void vary_issuer(Issuer& issuer) {
        if (issuer.RegimeFiscale == "RF01" && chance(5)) issuer.RegimeFiscale = one_of({"RF17", "RF18"});
        issuer.TipoCassa = one_of({"TC01", "TC04", "TC12", "TC22", "TC22"});
        if (chance(3)) issuer.number_form = NumberForm::plain;
    }

    /// As the invoice form does it: texts in, texts out, step by step.
    void calculate(StoredInvoice& row, const Issuer& issuer) {
        row.Prestazione = {"Consulenza"};
        row.Importo = {amount(one_of_size())};
        for (std::size_t i = 1; i < StoredInvoice::lines; ++i) {
            if (chance(3)) row.Importo[i] = amount(one_of_size());
            if (chance(2))
                row.Prestazione[i] = one_of({"Perizia – “urgente”", "Sopralluogo", "Rimborso € 5"});
        }
        invoice_amounts::Lines lines;
        for (std::size_t i = 0; i < lines.size(); ++i) lines[i] = row.Importo[i];

        row.Rivalsa = chance(2) ? "Sì" : "";
        row.Percentuale_Rivalsa = row.Rivalsa.empty() ? "" : one_of({"4", "2", "4.0", "5", "2.25"});
        std::optional<std::string_view> surcharge;
        row.Importo_Rivalsa = "";
        if (!row.Rivalsa.empty()) {
            row.Importo_Rivalsa = invoice_amounts::rivalsa(lines, row.Percentuale_Rivalsa, italian);
            surcharge = row.Importo_Rivalsa;
        }
        const bool without_vat = issuer.RegimeFiscale == "RF19" || chance(5);
        row.Aliquota_IVA =
            without_vat ? one_of({"Esente", "0"}) : one_of({"22", "20", "10", "4", "19.5", "22.25"});
        row.Imponibile = invoice_amounts::imponibile(lines, surcharge, false, italian);
        row.Imposta_IVA = invoice_amounts::iva(row.Imponibile, row.Aliquota_IVA, italian);

        row.Spese = chance(3) ? "Sì" : "";
        row.Importo_Spese = row.Spese.empty() ? "" : amount(9999);
        row.Articolo_Esenzione = one_of(
            {"", "(Art. 15 D.p.r. 633/72)", "(Art. 10 D.p.r. 633/72)", "(Art. 74 D.p.r. 633/72)", "bollo"});
        std::optional<std::string_view> expenses;
        if (!row.Spese.empty()) expenses = row.Importo_Spese;
        row.Totale_Fattura = invoice_amounts::totale(row.Imponibile, row.Imposta_IVA, expenses, italian);

        row.Ritenuta = chance(2) ? "Sì" : "";
        row.Percentuale_Ritenuta =
            row.Ritenuta.empty() ? "" : one_of({"20", "10", "23", "20% (su 75% imp.)"});
        row.Ritenuta_Su =
            row.Ritenuta.empty() || row.Percentuale_Ritenuta.size() > 2 ? "" : one_of({"100", "75", "50"});
        row.Importo_Ritenuta = "";
        if (!row.Ritenuta.empty()) {
            const bool in_base = surcharge && row.Percentuale_Rivalsa == "4" && chance(2);
            row.Importo_Ritenuta =
                invoice_amounts::ritenuta(lines, in_base ? surcharge : std::nullopt, {},
                                          row.Percentuale_Ritenuta,
                                          row.Ritenuta_Su.empty() ? "75" : row.Ritenuta_Su, italian)
                    .amount;
        }
        row.Importo_Netto = invoice_amounts::netto(row.Totale_Fattura, row.Importo_Ritenuta, italian);
    }

    int one_of_size() { return chance(4) ? 100 : chance(4) ? 999'999'999 : 500'000; }

    std::mt19937 random_;
};

TEST(EInvoiceRandom, RowsGiveValidDocuments) {
    const int rows = thorough ? std::atoi(thorough) : 150;
    const testing::TemporaryFolder folder;
    RandomRows random(20260310);
    for (int i = 0; i < rows; ++i) {
        const Sample made = random.next();
        for (const Finding& finding : made.findings()) {
            EXPECT_EQ(finding.severity, Severity::warning)
                << "row " << i << ": " << finding.code << finding.words;
        }
        const std::string xml = to_xml(made.draft().document);
        if (i % 100 == 0) {
            EXPECT_EQ(to_xml(read_document(xml)), xml);
        }
        testing::write_bytes(folder.in(std::to_string(i) + ".xml"), xml);
    }
    expect_valid(folder);
}

TEST(EInvoiceTorture, AnyTextInAnyFieldIsRefusedOrValid) {
    const std::string texts[] = {"Costo € 12,50",
                                 "“Casa dell’arco” – «è» — …",
                                 "Gießerei Łódź Őry",
                                 "Αθήνα 7",
                                 "Москва 7",
                                 "😀👨‍👩‍👧 7",
                                 std::string("con\x01trolli\x7F\x80 \0 7", 16) + "\u0085\t\r\n7",
                                 std::string(1999, 'x') + "7",
                                 " \t\u00A0 ",
                                 "]]><!-- & --> <7",
                                 "rotto \xE0 \xED\xA0\x80 7"};
    const testing::TemporaryFolder folder;
    int written = 0;
    int refused = 0;
    const auto write_if_allowed = [&](const Sample& changed) {
        const Draft draft = changed.draft();
        if (any_refusal(check(draft, {.today = soon_after}))) {
            ++refused;
            return;
        }
        testing::write_bytes(folder.in(std::to_string(written++) + ".xml"), to_xml(draft.document));
    };
    for (const char* const name : {firm, abroad}) {
        if (written > 0 && !thorough) break;
        Sample counted = sample(name);
        const std::size_t fields = texts_of(counted).size();
        for (const std::string& text : texts) {
            for (std::size_t field = 0; field < fields; ++field) {
                Sample changed = sample(name);
                changed.decisions.reference_kind = ReferenceKind::contract;
                changed.decisions.reference.IdDocumento = "1";
                *texts_of(changed)[field] = text;
                write_if_allowed(changed);
            }
        }
    }
    EXPECT_GT(written, 500);
    EXPECT_GT(refused, 200);
    expect_valid(folder);
}

} // namespace
} // namespace tarvello::e_invoice
