#include "invoices/invoice_form.h"
#include "invoices/invoice_list.h"
#include "invoices/invoice_results.h"
#include "support/program_test.h"

namespace tarvello {
namespace {

const MessageBox none_found{"Nessua fattura trovata.", "Tarvello 4", BoxIcon::information};

struct InvoiceSearch : testing::ProgramTest {
    frmTarvello& form() { return program->form<frmTarvello>(); }

    /// Opens the search if it is closed, fills its entries and presses "OK".
    void search(const std::string& year, const std::string& field, const std::string& text) {
        if (form().search.cmdCerca.caption() == "Cerca Fattura") form().search.cmdCerca.click();
        form().search.Combo3.set_text(year);
        form().search.Combo1.set_text(field);
        form().search.Text2.set_text(text);
        form().search.cmdCerca.click();
    }
    /// The next result window lists these numbers; then `user` acts on it.
    void expect_results(const std::vector<std::string>& numbers,
                        const std::function<void(frmRisultatiRicercaFatture&)>& user = {}) {
        windows().expect_modal("frmRisultatiRicercaFatture", [=](Form& window) {
            auto& results = dynamic_cast<frmRisultatiRicercaFatture&>(window);
            std::vector<std::string> listed;
            for (std::size_t row = 0; row < results.ListView1.rows().size(); ++row) {
                listed.emplace_back(results.ListView1.rows().cell(row, 0));
            }
            EXPECT_EQ(listed, numbers);
            if (user) user(results);
        });
    }
    void given_invoices() {
        given_invoice(testing::as_row("Numero_Fattura=1; Nome=Mario; Cognome_Ragione_Sociale=ROSSI; "
                                      "Codice_Fiscale=RSSMRA80A01H501U"));
        given_invoice(testing::as_row("Numero_Fattura=2; Nome=Dell'Anna; Cognome_Ragione_Sociale=McDONALD; "
                                      "Partita_IVA=IT00123"));
        given_invoice(testing::as_row("Numero_Fattura=3; Nome=Maria; Cognome_Ragione_Sociale=Rossini; "
                                      "Codice_Fiscale=RSSMRA80A41H501Y"));
        given_invoice({{"Numero_Fattura", "1"}, {"Nome", "Maria"}, {"Data_Fattura", "07/02/2007"}});
    }
};

TEST_F(InvoiceSearch, OpensAndIsLeftByCancelling) {
    given_invoices();
    EXPECT_EQ(form().search.FrameRicerca.height(), 540);
    form().search.cmdCerca.click();
    EXPECT_EQ(form().search.cmdCerca.caption(), "OK");
    EXPECT_EQ(form().search.FrameRicerca.height(), 2580);
    form().search.Text2.press_key(keys::enter);
    EXPECT_EQ(form().focus(), &form().search.cmdCerca);
    EXPECT_EQ(form().customer.txtNome.text(), "");
    EXPECT_NE(form().txtCurrent_ID.text(), "");
    for (const CommandButton& move : form().cmdNavigazione) EXPECT_FALSE(move.enabled());
    for (const CommandButton* button :
         {&form().cmdNuovaFattura, &form().cmdModificaDati, &form().cmdEliminaFattura, &form().cmdChiudi,
          &form().cmdStampaFattura, &form().StampaWord, &form().CheckEmail}) {
        EXPECT_FALSE(button->enabled()) << button->name();
    }
    for (std::size_t place = 1; place <= 8; ++place) {
        EXPECT_EQ(form().Toolbar1.button(place).visible(), place == 6) << place;
    }
    EXPECT_TRUE(form().search.Combo1.reachable());
    EXPECT_TRUE(form().search.Combo3.reachable());
    EXPECT_TRUE(form().search.Text2.reachable());
    form().Toolbar1.press("Annulla");
    EXPECT_EQ(form().search.cmdCerca.caption(), "Cerca Fattura");
    EXPECT_EQ(form().search.FrameRicerca.height(), 540);
    EXPECT_EQ(form().customer.txtNome.text(), "Maria") << "the invoice on view before";
    EXPECT_TRUE(form().cmdNavigazione[0].enabled());
    EXPECT_TRUE(form().cmdChiudi.enabled());
}

TEST_F(InvoiceSearch, AMissingEntryIsToldAndThenThatNothingWasFound) {
    boxes().expect({"Selezionare l'anno.", "Tarvello 4", BoxIcon::exclamation});
    boxes().expect(none_found);
    search("", "", "");
    EXPECT_EQ(form().focus(), &form().search.Combo3);
    boxes().expect({"Selezionare il campo di ricerca", "Tarvello 4", BoxIcon::exclamation});
    boxes().expect(none_found);
    search("2006", "", "");
    EXPECT_EQ(form().focus(), &form().search.Combo1);
    boxes().expect({"Inserire il testo da cercare o selezionare una voce dall'elenco.", "Tarvello 4",
                    BoxIcon::exclamation});
    boxes().expect(none_found);
    search("2006", "Nome", "");
    EXPECT_EQ(form().focus(), &form().search.Text2);
    EXPECT_EQ(form().search.cmdCerca.caption(), "OK");
    EXPECT_EQ(form().search.FrameRicerca.height(), 2580);
}

TEST_F(InvoiceSearch, ListsTheNewestFirstAndShowsTheSelectedRow) {
    given_invoices();
    expect_results({"3", "1"}, [](frmRisultatiRicercaFatture& results) {
        EXPECT_EQ(results.caption(), "Risultati Ricerca Fatture");
        EXPECT_EQ(results.txtAnnoDiRicerca.text(), "2006");
        results.ListView1.select_row(1);
        results.cmdVisualizza.click();
    });
    search("2006", "Cognome/Ragione Sociale", "rossi");
    EXPECT_EQ(form().txtNumeroFattura.text(), "1 - 2006");
    EXPECT_EQ(form().customer.txtAnagrafica[5].text(), "ROSSI");
    EXPECT_EQ(form().search.cmdCerca.caption(), "Cerca Fattura");
    EXPECT_EQ(form().search.FrameRicerca.height(), 540);
    EXPECT_FALSE(form().search.Text2.enabled());
    EXPECT_TRUE(form().cmdNavigazione[0].enabled());
    for (std::size_t place = 1; place <= 8; ++place) EXPECT_TRUE(form().Toolbar1.button(place).visible());
    EXPECT_FALSE(form().customer.txtAnagrafica[5].locked()) << "the customer block is left unlocked";
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

TEST_F(InvoiceSearch, OneMatchOpensTheWindowTooAndItsCloseBoxShowsTheRow) {
    given_invoices();
    expect_results({"2"}, [](frmRisultatiRicercaFatture& results) {
        EXPECT_EQ(results.Label1.caption(),
                  "La ricerca ha prodotto più di un risultato. Selezionare quello desiderato e premere "
                  "'Visualizza'");
        results.close_by_user();
    });
    search("2006", "Partita IVA", "it0012");
    EXPECT_EQ(form().txtNumeroFattura.text(), "2 - 2006");
    form().cmdNavigazione[3].click();
    expect_results({"1"}, [](frmRisultatiRicercaFatture& results) { results.ListView1.double_click(0); });
    search("2007", "Nome", "maria");
    EXPECT_EQ(form().txtNumeroFattura.text(), "1 - 2007");
    for (const char* text : {"mcdonald", "McDONALD"}) {
        expect_results({"2"});
        search("2006", "Cognome/Ragione Sociale", text);
    }
}

TEST_F(InvoiceSearch, FindsTheRowAgainByYearAndNumber) {
    given_invoice({{"Numero_Fattura", "7"}, {"Nome", "Primo"}});
    given_invoice({{"Numero_Fattura", "7"}, {"Nome", "Secondo"}});
    expect_results({"7"});
    search("2006", "Nome", "secondo");
    EXPECT_EQ(form().customer.txtNome.text(), "Primo") << "the oldest row of that number";

    sql("INSERT INTO Fatture (Anno,Nome) VALUES ('2006','Senza Numero')");
    form().search.cmdCerca.click();
    expect_results({""});
    search("2006", "Nome", "senza");
    EXPECT_EQ(form().customer.txtNome.text(), "") << "a row that cannot be found again leaves the form empty";
}

TEST_F(InvoiceSearch, ANumberIsLookedForInTheFiscalCodes) {
    given_invoices();
    boxes().expect(none_found);
    search("2006", "Numero Fattura", "2");
    expect_results({"3", "1"});
    search("2006", "Numero Fattura", "80");
    expect_results({"1"});
    search("2006", "qualsiasi", "A01");
}

TEST_F(InvoiceSearch, HostileTexts) {
    given_invoice({{"Numero_Fattura", "1"}, {"Nome", "50% [sconto]"}});
    given_invoice({{"Numero_Fattura", "2"}, {"Nome", "Anna"}});
    expect_results({"2", "1"});
    search("2006", "Nome", "%");
    form().cmdAnnulla.click();
    expect_results({"2"});
    search("2006", "Nome", "a_na");
    form().cmdAnnulla.click();
    expect_results({"1"});
    search("2006", "Nome", "50[%] [[]");
    form().cmdAnnulla.click();
    boxes().expect(none_found);
    search("2006", "Nome", "\xC3\x28\\\"; DROP TABLE Fatture");
    boxes().expect(none_found);
    search("2006", "Nome", std::string(5000, '['));
    expect_process_end([&] { search("2006", "Nome", "d'angelo"); });
    expect_process_end([&] { search("duemila", "Nome", "anna"); });
    EXPECT_EQ(sql("SELECT * FROM Fatture").size(), 2U);
}

TEST_F(InvoiceSearch, ARowHasTheColumnsUnderTheirHeaders) {
    given_invoice(testing::as_row(
        "Numero_Fattura=12; Cognome_Ragione_Sociale=Rossi; Nome=Ada; Codice_Fiscale=CF; Partita_IVA=PI; "
        "Prestazione1=P1; Importo1=I1; Prestazione2=P2; Importo2=I2; Prestazione3=P3; Importo3=I3; "
        "Prestazione4=P4; Importo4=I4; Prestazione5=P5; Importo5=I5; Percentuale_Rivalsa=4; "
        "Importo_Rivalsa=RR; Imponibile=II; Aliquota_IVA=20; Imposta_IVA=VV; Importo_Spese=SS; "
        "Totale_Fattura=TT; Percentuale_Ritenuta=15; Importo_Ritenuta=WW; Importo_Netto=NN"));
    given_invoice({{"Nome", "Ada"}, {"Percentuale_Rivalsa", "4"}, {"Percentuale_Ritenuta", "20"}});
    program->session().txtProfessione.set_text("Cassa");
    const char* const columns[][2] = {{"n° fattura", "12"},
                                      {"Anno", "2006"},
                                      {"Data", "05/03/2006"},
                                      {"Cognome / Rag. Sociale", "Rossi"},
                                      {"Nome", "Ada"},
                                      {"C.F.", "CF"},
                                      {"P.I.", "PI"},
                                      {"Prestazione 1", "P1"},
                                      {"Importo 1", "I1"},
                                      {"Prestazione 2", "P2"},
                                      {"Importo 2", "I2"},
                                      {"Prestazione 3", "P3"},
                                      {"Importo 3", "I3"},
                                      {"Prestazione 4", "P4"},
                                      {"Importo 4", "I4"},
                                      {"Prestazione 5", "P5"},
                                      {"Importo 5", "I5"},
                                      {"% Cassa", "4"},
                                      {"Cassa", "RR"},
                                      {"Imponibile", "II"},
                                      {"% IVA", "20"},
                                      {"Imposta IVA", "VV"},
                                      {"Spese Anticipate", "SS"},
                                      {"Totale", "TT"},
                                      {"% Dedotta R.A.", "15"},
                                      {"Dedotta R.A.", "WW"},
                                      {"Importo Netto", "NN"}};
    expect_results({"1", "12"}, [&](frmRisultatiRicercaFatture& results) {
        const ListRows& rows = results.ListView1.rows();
        const auto& shown = results.ListView1.columns();
        ASSERT_EQ(shown.size(), std::size(columns));
        for (std::size_t i = 0; i < shown.size(); ++i) {
            EXPECT_EQ(shown[i].header, columns[i][0]);
            EXPECT_EQ(rows.cell(1, i), columns[i][1]) << columns[i][0];
            EXPECT_EQ(shown[i].width, 1440);
            EXPECT_EQ(shown[i].right_aligned, i >= 17 || (i >= 8 && i % 2 == 0)) << columns[i][0];
        }
        EXPECT_EQ(rows.cell(0, 17), "") << "no surcharge, no percentage";
        EXPECT_EQ(rows.cell(0, 24), "");
        EXPECT_EQ(rows.cells_in(0), 27U);
    });
    search("2006", "Nome", "ada");
}

} // namespace
} // namespace tarvello
