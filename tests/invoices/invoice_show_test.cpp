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

TEST_F(InvoiceShow, TheFieldsShowTheTextsAsTheyAreStored) {
    settings().txt_RIVALSA_default.set_text("2");
    settings().txt_RitenutaSu_default.set_text("50");
    given_invoice(as_row(
        "Numero_Fattura=12; Data_Fattura=31/12/2005; Numero_Cliente=7; Codice_Fiscale=CF; Partita_IVA=PI; "
        "Nome=Ada; Cognome_Ragione_Sociale=D'Amico; Indirizzo=Via; CAP=00100; Provincia=RM; Città=Roma; "
        "Prestazione1=P1; Importo1=1000; Prestazione2=P2; Importo2=I2; Prestazione3=P3; Importo3=I3; "
        "Prestazione4=P4; Importo4=I4; Prestazione5=Perizia 😀; Importo5=I5; Rivalsa=Sì; "
        "Dicitura_Rivalsa=Cassa; Percentuale_Rivalsa=4; Importo_Rivalsa=€ 40,00; Imponibile=€ 9,99; "
        "Aliquota_IVA=Esente; Imposta_IVA=€ 1,23; Spese=Sì; IVA_Spese=0; Importo_Spese=€ 14,62; "
        "Articolo_Esenzione=art. 15; Totale_Fattura=tanto; Ritenuta=Sì; Importo_Ritenuta=€ 15,04; "
        "Percentuale_Ritenuta=20; Ritenuta_Su=75; Importo_Netto=€ 0,01; Check_Pagamento=Sì; Pagamento=Ora"));
    // The base of the withholding is rebuilt from its amount; no dialog for the expenses comes.
    expect_shown(
        "txtCurrent_ID=1; txtNumeroFattura=12 - 2005; ComboNumeroCliente=7; txtAnagrafica_0=CF; "
        "txtAnagrafica_1=Via; txtAnagrafica_2=00100; txtAnagrafica_3=RM; txtAnagrafica_4=Roma; "
        "txtAnagrafica_5=D'Amico; txtAnagrafica_6=PI; txtNome=Ada; PrestazioneSingola_0=P1; "
        "txtImportoPrestazioni_0=1000; PrestazioneSingola_1=P2; txtImportoPrestazioni_1=I2; "
        "PrestazioneSingola_2=P3; txtImportoPrestazioni_2=I3; PrestazioneSingola_3=P4; "
        "txtImportoPrestazioni_3=I4; PrestazioneSingola_4=Perizia 😀; txtImportoPrestazioni_4=I5; "
        "CheckRivalsa=Sì; ComboPercentualeRivalsa=4; txtImportoRivalsa=€ 40,00; txtImponibile=€ 9,99; "
        "LabelImponibile=€ 9,99; ComboIVAApplicata=Esente; txtIVA=€ 1,23; CheckSpese=Sì; "
        "txtImportoSpeseAnticipate=€ 14,62; txtArticoloEsenzione=art. 15; txtTotaleFattura=tanto; "
        "CheckRitenuta=Sì; ComboRitenuta=20; ComboRitenutaSu=75; txtRitenutaAcconto=€ 15,04; "
        "LabelRitenuta=€ 75,20; txtImportoNetto=€ 0,01; CheckPagamento=Sì; txtPagamento=Ora; "
        "txtfield_CURRENT_YEAR=2005; txtfield_CURRENT_MONTH=12; txtfield_CURRENT_DAY=31");
    EXPECT_EQ(form().DTPicker1.date(), make_date(2005, 12, 31));
    EXPECT_EQ(form().CheckRivalsa.caption(), "Cassa");
    EXPECT_EQ(form().ComboRitenuta.list_index(), 0);
    EXPECT_TRUE(form().txtImportoSpeseAnticipate.visible());

    show(given_invoice({{"IVA_Spese", ""}}));
    expect_shown(
        "CheckRivalsa=; ComboPercentualeRivalsa=; txtImportoRivalsa=; CheckSpese=; "
        "ComboIVASpeseAnticipate=; txtImportoSpeseAnticipate=; txtArticoloEsenzione=; CheckRitenuta=; "
        "ComboRitenuta=; ComboRitenutaSu=; txtRitenutaAcconto=; LabelRitenuta=; CheckPagamento=; "
        "txtPagamento=");
    EXPECT_FALSE(form().txtImportoSpeseAnticipate.visible());
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
    show(given_invoice(as_row("Ritenuta=Sì; Importo_Ritenuta=€ 1,00; Percentuale_Ritenuta=niente; "
                              "Importo_Netto=€ 3,00")));
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
    expect_shown("PrestazioneSingola_0=Perizia; PrestazioneSingola_1=Sopralluogo; "
                 "txtAnagrafica_4=Roma; txtPagamento=Ora; txtNumeroFattura=1 - 2006");
    EXPECT_EQ(form().DTPicker1.date(), make_date(2006, 3, 5));
}

} // namespace
} // namespace tarvello::testing
