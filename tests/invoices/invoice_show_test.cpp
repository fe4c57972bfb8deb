#include "invoices/invoice_form_fixture.h"
#include "preferences/tax_preferences.h"

namespace tarvello::testing {
namespace {

struct InvoiceShow : InvoiceFormTest {
    /// Puts a row on view in a form that is open already.
    void show(int id) {
        form();
        Database& database = program->database();
        database.rsFatture.open("SELECT * FROM Fatture WHERE ID=" + std::to_string(id),
                                database.dbConnection);
        form().MostraFattura();
        EXPECT_EQ(database.rsFatture.text("ID"), std::to_string(id)) << "the row must not move";
        database.rsFatture.close();
    }
};

TEST_F(InvoiceShow, TextsStandAsTheyAreStored) {
    settings().txt_RIVALSA_default.set_text("2");
    settings().txt_RitenutaSu_default.set_text("50");
    const int id = given_invoice({{"Importo1", "1000"},
                                  {"Rivalsa", "Sì"},
                                  {"Percentuale_Rivalsa", "4"},
                                  {"Importo_Rivalsa", "€ 40,00"},
                                  {"Imponibile", "€ 9,99"},
                                  {"Aliquota_IVA", "Esente"},
                                  {"Imposta_IVA", "€ 1,23"},
                                  {"Spese", "Sì"},
                                  {"IVA_Spese", "0"},
                                  {"Importo_Spese", "€ 14,62"},
                                  {"Articolo_Esenzione", "(Art. 15 D.p.r. 633/72)"},
                                  {"Totale_Fattura", "tanto"},
                                  {"Ritenuta", "Sì"},
                                  {"Importo_Ritenuta", "€ 15,04"},
                                  {"Percentuale_Ritenuta", "20"},
                                  {"Ritenuta_Su", "75"},
                                  {"Importo_Netto", "€ 0,01"}});
    EXPECT_EQ(form().txtCurrent_ID.text(), std::to_string(id)); // and no dialog for the expenses has come
    EXPECT_EQ(form().txtImportoPrestazioni[0].text(), "1000");
    EXPECT_EQ(form().ComboPercentualeRivalsa.text(), "4");
    EXPECT_EQ(form().txtImportoRivalsa.text(), "€ 40,00");
    EXPECT_EQ(form().txtImponibile.text(), "€ 9,99");
    EXPECT_EQ(form().LabelImponibile.caption(), "€ 9,99");
    EXPECT_EQ(form().ComboIVAApplicata.text(), "Esente");
    EXPECT_EQ(form().txtIVA.text(), "€ 1,23");
    EXPECT_TRUE(form().CheckSpese.checked());
    EXPECT_EQ(form().txtImportoSpeseAnticipate.text(), "€ 14,62");
    EXPECT_TRUE(form().txtImportoSpeseAnticipate.visible());
    EXPECT_EQ(form().txtArticoloEsenzione.text(), "(Art. 15 D.p.r. 633/72)");
    EXPECT_EQ(form().txtTotaleFattura.text(), "tanto");
    EXPECT_EQ(form().ComboRitenuta.list_index(), 0);
    EXPECT_EQ(form().ComboRitenutaSu.text(), "75");
    EXPECT_EQ(form().LabelRitenuta.caption(), "€ 75,20") << "rebuilt from the withholding";
    EXPECT_EQ(form().txtImportoNetto.text(), "€ 0,01");

    show(given_invoice({{"IVA_Spese", ""}}));
    EXPECT_FALSE(form().CheckRivalsa.checked());
    EXPECT_FALSE(form().CheckSpese.checked());
    EXPECT_FALSE(form().CheckRitenuta.checked());
    EXPECT_FALSE(form().txtImportoSpeseAnticipate.visible());
    for (TextEntry* empty : {static_cast<TextEntry*>(&form().ComboPercentualeRivalsa),
                             static_cast<TextEntry*>(&form().txtImportoRivalsa),
                             static_cast<TextEntry*>(&form().txtImportoSpeseAnticipate),
                             static_cast<TextEntry*>(&form().txtArticoloEsenzione),
                             static_cast<TextEntry*>(&form().ComboRitenuta),
                             static_cast<TextEntry*>(&form().txtRitenutaAcconto)}) {
        EXPECT_EQ(empty->text(), "") << empty->name();
    }
    EXPECT_EQ(form().LabelRitenuta.caption(), "");
    EXPECT_EQ(form().ComboIVASpeseAnticipate.text(), "");
}

TEST_F(InvoiceShow, BaseOfTheWithholdingByItsStoredRate) {
    struct Case {
        const char* stored;
        const char* combo;
        const char* base;
    };
    const Case cases[] = {{"10%", "10", "€ 150,40"}, {"20", "20", "€ 75,20"},
                          {"10", "10%", "€ 150,40"}, {"20%", "20", "€ 75,20"},
                          {"15", "15%", "€ 100,27"}, {"20% (su 75% imp.)", "15%", "€ 75,20"}};
    form();
    for (const Case& c : cases) {
        show(given_invoice(
            {{"Ritenuta", "Sì"}, {"Importo_Ritenuta", "€ 15,04"}, {"Percentuale_Ritenuta", c.stored}}));
        EXPECT_EQ(form().ComboRitenuta.text(), c.combo) << c.stored;
        EXPECT_EQ(form().LabelRitenuta.caption(), c.base) << c.stored;
    }
    // A rate of nothing divides by nothing: that field is left alone, the others are not.
    show(given_invoice({{"Ritenuta", "Sì"},
                        {"Importo_Ritenuta", "€ 1,00"},
                        {"Percentuale_Ritenuta", "niente"},
                        {"Importo_Netto", "€ 3,00"}}));
    EXPECT_EQ(form().LabelRitenuta.caption(), "€ 75,20");
    EXPECT_EQ(form().txtImportoNetto.text(), "€ 3,00");
}

TEST_F(InvoiceShow, TheRatesInUseComeBehindThoseOfTheLists) {
    given_invoice({{"Aliquota_IVA", "21"}}); // the 51st from the newest
    for (int i = 0; i < 48; ++i) given_invoice({{"Aliquota_IVA", "10"}});
    given_invoice({{"Aliquota_IVA", "22"}, {"Percentuale_Rivalsa", "5"}, {"Percentuale_Ritenuta", "20%"}});
    given_invoice({{"Aliquota_IVA", "Esente"}, {"Percentuale_Ritenuta", "23"}, {"Ritenuta_Su", "40"}});
    settings().txt_IVA_default.set_text("4");
    using Items = std::vector<std::string>;
    EXPECT_EQ(form().ComboIVAApplicata.items(), (Items{"20", "10", "Esente", "4", "22"}));
    EXPECT_EQ(form().ComboPercentualeRivalsa.items(), (Items{"4", "2", "5"}));
    EXPECT_EQ(form().ComboRitenuta.items(), (Items{"20", "10", "23"}));
    EXPECT_EQ(form().ComboRitenutaSu.items(), (Items{"100", "75", "50", "40"}));
    auto& preferences = program->form<frmImpostazioni>();
    EXPECT_EQ(preferences.ComboIVAApplicata.items(), form().ComboIVAApplicata.items());
    EXPECT_EQ(preferences.ComboRivalsa.items(), form().ComboPercentualeRivalsa.items());
    EXPECT_EQ(preferences.ComboRitenutaSu.items(), (Items{"50", "75", "100", "40"}));
    settings().txt_Ritenuta_default.set_text("30");
    press("Nuova Fattura");
    EXPECT_EQ(form().ComboRitenuta.items().back(), "30") << "set while the form was open";
}

TEST_F(InvoiceShow, ANullLeavesItsFieldAsItWas) {
    given_invoice(
        {{"Prestazione1", "Perizia"}, {"Città", "Roma"}, {"Check_Pagamento", "Sì"}, {"Pagamento", "Ora"}});
    form();
    sql("INSERT INTO Fatture (Prestazione2) VALUES ('Sopralluogo')");
    show(std::stoi(newest().at("ID")));
    EXPECT_EQ(form().txtCurrent_ID.text(), newest().at("ID"));
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia");
    EXPECT_EQ(form().PrestazioneSingola[1].text(), "Sopralluogo");
    EXPECT_EQ(form().customer.txtAnagrafica[4].text(), "Roma");
    EXPECT_EQ(form().txtPagamento.text(), "Ora");
    EXPECT_EQ(form().txtNumeroFattura.text(), "1 - 2006");
    EXPECT_EQ(form().DTPicker1.date(), make_date(2006, 3, 5));
}

} // namespace
} // namespace tarvello::testing
