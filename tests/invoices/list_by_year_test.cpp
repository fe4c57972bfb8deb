#include "invoices/list_by_year_form.h"

#include "invoices/invoice_form.h"
#include "invoices/invoice_results.h"
#include "support/program_test.h"

namespace tarvello {
namespace {

struct ListByYear : testing::ProgramTest {
    frmTarvello& form() { return program->form<frmTarvello>(); }

    /// Presses "Show" and closes the window with this choice; then the windows that `expecting` expects come.
    void open(const std::string& choice, const std::function<void()>& expecting = {},
              bool by_close_box = false) {
        windows().expect_modal("frmSelectYear", [=](Form& window) {
            auto& select = dynamic_cast<frmSelectYear&>(window);
            select.Combo1.set_text(choice);
            if (by_close_box) {
                select.close_by_user();
            } else {
                select.Command1.click();
            }
        });
        if (expecting) expecting();
        form().Toolbar1.press("Show");
        windows().expect_none_left();
    }
    void given_invoices() {
        given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "10/01/2005"}, {"Nome", "Uno"}});
        given_invoice(
            testing::as_row("Numero_Fattura=2; Data_Fattura=11/01/2005; Nome=Due; Percentuale_Rivalsa=4; "
                            "Importo_Rivalsa=€ 4,00; Percentuale_Ritenuta=20; Importo_Ritenuta=€ 20,00"));
        given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "10/01/2006"}, {"Nome", "Tre"}});
    }
    void expect_list(const std::string& caption, const std::string& heading,
                     const std::vector<std::string>& names,
                     const std::function<void(frmRisultatiRicercaFatture&)>& user = {}) {
        windows().expect_modal("frmRisultatiRicercaFatture", [=](Form& window) {
            auto& list = dynamic_cast<frmRisultatiRicercaFatture&>(window);
            EXPECT_EQ(list.caption(), caption);
            EXPECT_EQ(list.Label1.caption(), heading);
            std::vector<std::string> listed;
            for (std::size_t row = 0; row < list.ListView1.rows().size(); ++row) {
                listed.emplace_back(list.ListView1.rows().cell(row, 4));
            }
            EXPECT_EQ(listed, names);
            EXPECT_EQ(list.txtAnnoDiRicerca.text(), "");
            if (user) user(list);
        });
    }
};

TEST_F(ListByYear, OffersItsChoicesAndNothingForNone) {
    const auto& items = program->form<frmSelectYear>().Combo1.items();
    ASSERT_EQ(items.size(), 20U);
    EXPECT_EQ(items[0], "Annulla");
    EXPECT_EQ(items[1], "Elenca tutte le fatture");
    EXPECT_EQ(items[2], "Elenca fatture anno corrente");
    EXPECT_EQ(items[3], "2004");
    EXPECT_EQ(items[19], "2020");
    given_invoices();
    open("Annulla");
    open("", {}, true);
}

TEST_F(ListByYear, ListsAllTheCurrentYearOrOneYear) {
    given_invoices();
    open("Elenca tutte le fatture", [&] {
        expect_list("Tabella Fatture", "Elenco Fatture", {"Tre", "Due", "Uno"});
    });
    // The year of the newest invoice, as it stood when the form was opened.
    open("Elenca fatture anno corrente", [&] {
        expect_list("Tabella Fatture (anno 2006)", "Elenco Fatture dell'anno 2006 - Totale Fatture: 1",
                    {"Tre"});
    });
    open(
        "2005",
        [&] {
            expect_list("Tabella Fatture (anno 2005)", "Elenco Fatture dell'anno 2005 - Totale Fatture: 2",
                        {"Due", "Uno"}, [](const frmRisultatiRicercaFatture& list) {
                            const ListRows& rows = list.ListView1.rows();
                            EXPECT_EQ(rows.cell(0, 17), "4");
                            EXPECT_EQ(rows.cell(0, 18), "€ 4,00");
                            EXPECT_EQ(rows.cell(0, 24), "") << "the withholding's percentage is left out";
                            EXPECT_EQ(rows.cell(0, 25), "€ 20,00");
                            EXPECT_EQ(rows.cells_in(1), 27U);
                        });
        },
        true);
    open("2004", [&] {
        expect_list("Tabella Fatture (anno 2004)", "Elenco Fatture dell'anno 2004 - Totale Fatture: 0", {});
    });
}

TEST_F(ListByYear, AYearThatIsNoNumberListsNothing) {
    given_invoices();
    for (const char* text : {"duemila", "99999", "'; DELETE * FROM Fatture"}) {
        open(text, [&] {
            expect_list("Tabella Fatture (anno 0)", "Elenco Fatture dell'anno 0 - Totale Fatture: 0", {});
        });
    }
    open("2005 circa", [&] {
        expect_list("Tabella Fatture (anno 2005)", "Elenco Fatture dell'anno 2005 - Totale Fatture: 2",
                    {"Due", "Uno"});
    });
}

TEST_F(ListByYear, AClickedRowIsShownAndNoClickShowsNothing) {
    given_invoices();
    open("Elenca tutte le fatture", [&] {
        expect_list("Tabella Fatture", "Elenco Fatture", {"Tre", "Due", "Uno"});
    });
    EXPECT_EQ(form().customer.txtNome.text(), "Tre");
    open("Elenca tutte le fatture", [&] {
        expect_list("Tabella Fatture", "Elenco Fatture", {"Tre", "Due", "Uno"},
                    [](frmRisultatiRicercaFatture& list) {
                        list.ListView1.select_row(2);
                        EXPECT_EQ(list.txtAnnoDiRicerca.text(), "2005");
                        list.close_by_user();
                    });
    });
    EXPECT_EQ(form().customer.txtNome.text(), "Uno");
    open("2005", [&] {
        expect_list("Tabella Fatture (anno 2005)", "Elenco Fatture dell'anno 2005 - Totale Fatture: 2",
                    {"Due", "Uno"}, [](frmRisultatiRicercaFatture& list) { list.ListView1.double_click(0); });
    });
    EXPECT_EQ(form().customer.txtNome.text(), "Due");
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

TEST_F(ListByYear, LaterYearsOfTheArchiveComeAtTheEnd) {
    for (const char* date : {"01/01/2024", "01/01/2019", "02/01/2022", "03/01/2024"})
        given_invoice({{"Data_Fattura", date}});
    const auto last_items = [](const ComboBox& combo) {
        return std::vector<std::string>(combo.items().end() - 3, combo.items().end());
    };
    const std::vector<std::string> expected{"2020", "2022", "2024"};
    EXPECT_EQ(last_items(program->form<frmSelectYear>().Combo1), expected);
    form().search.cmdCerca.click();
    EXPECT_EQ(last_items(form().search.Combo3), expected);
    EXPECT_EQ(form().search.Combo3.items().size(), 19u);
}

TEST_F(ListByYear, ARowShowsWhatCanBeRead) {
    given_invoice({{"Numero_Fattura", "8"}, {"Nome", "Tre"}});
    program->database().dbConnection.close();
    testing::change_database(database_path, "ALTER TABLE Fatture DROP COLUMN Importo_Netto;"
                                            "ALTER TABLE Fatture DROP COLUMN Codice_Fiscale");
    program->database().dbConnection.open(database_path);
    for (const char* choice : {"Elenca tutte le fatture", "2006"}) {
        open(choice, [&] {
            windows().expect_modal("frmRisultatiRicercaFatture", [](Form& window) {
                const ListRows& rows = dynamic_cast<frmRisultatiRicercaFatture&>(window).ListView1.rows();
                ASSERT_EQ(rows.size(), 1U);
                EXPECT_EQ(rows.cell(0, 0), "8");
                EXPECT_EQ(rows.cell(0, 4), "Tre");
                EXPECT_EQ(rows.cell(0, 5), "");
            });
        });
    }
}

TEST_F(ListByYear, TheCountStopsAt16BitsAndSaysSo) {
    EXPECT_EQ(frmSelectYear::total_of(32767), " - Totale Fatture: 32767");
    EXPECT_EQ(frmSelectYear::total_of(32768),
              " - Totale Fatture: 32767 (il conteggio si ferma qui: le righe in elenco sono 32768)");
}

TEST_F(ListByYear, WithoutADatabaseTheListIsEmpty) {
    form();
    program->database().dbConnection.close();
    open("Elenca tutte le fatture", [&] { expect_list("Tabella Fatture", "Elenco Fatture", {}); });
    open("2005", [&] {
        expect_list("Tabella Fatture (anno 2005)", "Elenco Fatture dell'anno 2005 - Totale Fatture: 0", {});
    });
}

} // namespace
} // namespace tarvello
