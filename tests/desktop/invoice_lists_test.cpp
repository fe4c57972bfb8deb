#include "desktop/desktop_test.h"
#include "platform/qt/qt_text.h"

#include <QAbstractItemView>

namespace tarvello::testing {
namespace {

const char* const invoice_form = "frmTarvello";
const char* const result_window = "frmRisultatiRicercaFatture";

/// What finds an invoice: the moves, the search and the register.
struct InvoiceLists : DesktopTest {
    struct Invoice {
        int number;
        std::string date; ///< day/month/year
        std::string name;
        std::string year = {}; ///< where it is not that of the date
    };
    /// Starts the program with these invoices, and the invoice form on the last of them.
    void start_with(const std::vector<Invoice>& invoices) {
        start();
        for (const Invoice& invoice : invoices) {
            const std::string year = invoice.year.empty() ? invoice.date.substr(6) : invoice.year;
            program().database().dbConnection.execute(
                "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Nome,Cognome_Ragione_Sociale,"
                "Codice_Fiscale,Prestazione1,Importo1,Percentuale_Rivalsa,Importo_Rivalsa,Imponibile,"
                "Aliquota_IVA,Imposta_IVA,Totale_Fattura,Ritenuta,Percentuale_Ritenuta,Importo_Ritenuta,"
                "Importo_Netto) VALUES ('" +
                std::to_string(invoice.number) + "','" + invoice.date + "','" + year + "','" + invoice.name +
                "','Rossi','RSSMRA80A01H501U','Consulenza','€ 1.000,00','4','€ 40,00','€ 1.040,00','20',"
                "'€ 208,00','€ 1.248,00','Sì','20','€ 200,00','€ 1.048,00')");
        }
        user.choose_menu("MDIForm1", "mnuFatture");
    }
    void start_with_some() {
        start_with({{1, "10/01/2005", "Anna"},
                    {2, "11/01/2005", "Bruno"},
                    {1, "10/01/2006", "Carla"},
                    {2, "11/01/2006", "Annalisa"}});
    }
    std::string on_view() { return user.shown(invoice_form, "txtNumeroFattura"); }

    std::string go(int move) {
        user.click(invoice_form, "cmdNavigazione_" + std::to_string(move));
        return on_view();
    }
    void search(const std::string& year, int field, const std::string& text) {
        if (user.shown(invoice_form, "cmdCerca") == "Cerca Fattura") user.click(invoice_form, "cmdCerca");
        user.type(invoice_form, "Combo3", year);
        user.choose(invoice_form, "Combo1", field);
        user.type(invoice_form, "Text2", text);
        user.click(invoice_form, "cmdCerca");
        user.expect_none_left();
    }
    std::string cell(int row, int column) {
        const auto* view = user.widget<QAbstractItemView>(result_window, "ListView1");
        return qt::from_qt(view->model()->index(row, column).data().toString());
    }
    int rows() { return user.widget<QAbstractItemView>(result_window, "ListView1")->model()->rowCount(); }
    /// Presses "Show" on the tool bar, types or chooses, and acts in the list that comes.
    void open_register(const std::function<void()>& choose, const std::function<void()>& acts) {
        user.expect_modal("frmSelectYear", [this, choose, acts] {
            choose();
            user.expect_modal(result_window, acts);
            user.click("frmSelectYear", "Command1");
        });
        user.click(invoice_form, "Toolbar1_7");
        user.expect_none_left();
    }
};

TEST_F(InvoiceLists, SixButtonsOverThreeYears) {
    enum { first, previous, next, last, earlier_year, later_year };
    start_with({{1, "10/01/2004", "A"},
                {2, "11/01/2004", "B"},
                {3, "12/01/2006", "C", "2004"},
                {4, "13/01/2004", "D"},
                {1, "10/01/2005", "E"},
                {1, "10/01/2006", "F"},
                {2, "11/01/2006", "G"}});
    EXPECT_EQ(on_view(), "2 - 2006");
    EXPECT_EQ(go(next), "2 - 2006");
    EXPECT_EQ(go(first), "1 - 2006");
    EXPECT_EQ(go(previous), "1 - 2006");
    EXPECT_EQ(go(last), "2 - 2006");
    EXPECT_EQ(go(previous), "1 - 2006");
    EXPECT_EQ(go(earlier_year), "1 - 2005");
    EXPECT_EQ(go(earlier_year), "4 - 2004");
    EXPECT_EQ(go(previous), "4 - 2004") << "the row before it is dated in another year";
    EXPECT_EQ(go(first), "1 - 2004");
    EXPECT_EQ(go(next), "2 - 2004");
    EXPECT_EQ(go(next), "2 - 2004");
    EXPECT_EQ(go(earlier_year), "2 - 2004");
    EXPECT_EQ(go(later_year), "1 - 2005");
}

TEST_F(InvoiceLists, SearchesForNoneOneAndMany) {
    enum { number, fiscal_code, vat_number, name, surname };
    start_with_some();
    user.click(invoice_form, "cmdCerca");
    EXPECT_FALSE(user.widget(invoice_form, "cmdNavigazione_0")->isEnabled());
    EXPECT_FALSE(user.widget(invoice_form, "Toolbar1_1")->isVisible());
    EXPECT_TRUE(user.widget(invoice_form, "Text2")->isVisible());
    user.expect_box("Nessua fattura trovata.");
    search("2006", name, "zeno [%_]");
    EXPECT_TRUE(user.widget(invoice_form, "Text2")->isVisible()) << "what was typed can be corrected";

    user.expect_modal(result_window, [this] {
        EXPECT_EQ(rows(), 1);
        EXPECT_EQ(cell(0, 4), "Carla");
        EXPECT_EQ(cell(0, 24), "20");
        user.close_window(result_window);
    });
    search("2006", name, "carla");
    EXPECT_EQ(on_view(), "1 - 2006") << "the close box shows the selected row";
    EXPECT_TRUE(user.widget(invoice_form, "Toolbar1_1")->isVisible());

    user.expect_modal(result_window, [this] {
        EXPECT_EQ(rows(), 2);
        EXPECT_EQ(cell(0, 4), "Bruno");
        user.take_picture(result_window, "risultati-ricerca");
        user.click_row(result_window, "ListView1", 1);
        user.click(result_window, "cmdVisualizza");
    });
    search("2005", surname, "ROSSI");
    EXPECT_EQ(on_view(), "1 - 2005");

    user.expect_modal(result_window, [this] { user.double_click(result_window, "ListView1", 0); });
    search("2005", number, "80a01");
    EXPECT_EQ(on_view(), "2 - 2005") << "a number is looked for in the fiscal codes";
}

TEST_F(InvoiceLists, TheKeyboardAloneIsEnough) {
    start_with_some();
    const auto all = [this] { user.type("frmSelectYear", "Combo1", "Elenca tutte le fatture"); };
    open_register(all, [this] {
        user.settle(); // until the keyboard has come to the window
        user.press(Qt::Key_Down);
        user.press(Qt::Key_Down);
        user.press(Qt::Key_End);
        user.press(Qt::Key_Return);
    });
    EXPECT_EQ(on_view(), "1 - 2005");
    // Without a row chosen there is none to show.
    open_register(all, [this] {
        user.settle();
        user.close_window(result_window);
    });
    EXPECT_EQ(on_view(), "1 - 2005");
}

TEST_F(InvoiceLists, TheRegisterInItsThreeForms) {
    start_with_some();
    open_register([this] { user.choose("frmSelectYear", "Combo1", 1); },
                  [this] {
                      EXPECT_EQ(user.window(result_window)->windowTitle(), "Tabella Fatture");
                      EXPECT_EQ(user.shown(result_window, "Label1"), "Elenco Fatture");
                      EXPECT_EQ(rows(), 4);
                      EXPECT_EQ(cell(0, 4), "Annalisa");
                      for (int row = 0; row < 4; ++row) EXPECT_EQ(cell(row, 24), "");
                      EXPECT_EQ(cell(0, 25), "€ 200,00");
                      user.take_picture(result_window, "registro");
                      user.click_row(result_window, "ListView1", 3);
                      user.close_window(result_window);
                  });
    EXPECT_EQ(on_view(), "1 - 2005");
    open_register([this] { user.choose("frmSelectYear", "Combo1", 2); },
                  [this] {
                      EXPECT_EQ(user.window(result_window)->windowTitle(), "Tabella Fatture (anno 2006)");
                      EXPECT_EQ(user.shown(result_window, "Label1"),
                                "Elenco Fatture dell'anno 2006 - Totale Fatture: 2");
                      EXPECT_EQ(cell(1, 24), "");
                      user.close_window(result_window);
                  });
    EXPECT_EQ(on_view(), "1 - 2005") << "without a click on a row nothing is shown";
    open_register(
        [this] {
            user.choose("frmSelectYear", "Combo1", 4);
            user.take_picture("frmSelectYear", "scelta-anno");
        },
        [this] {
            EXPECT_EQ(user.shown(result_window, "Label1"),
                      "Elenco Fatture dell'anno 2005 - Totale Fatture: 2");
            user.double_click(result_window, "ListView1", 0);
        });
    EXPECT_EQ(on_view(), "2 - 2005");
    open_register([this] { user.type("frmSelectYear", "Combo1", "duemila"); },
                  [this] { EXPECT_EQ(rows(), 0); });
    user.expect_modal("frmSelectYear", [this] { user.choose("frmSelectYear", "Combo1", 0); });
    user.click(invoice_form, "Toolbar1_7");
}

} // namespace
} // namespace tarvello::testing
