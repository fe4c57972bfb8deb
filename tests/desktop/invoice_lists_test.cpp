#include "desktop/desktop_test.h"
#include "platform/qt/qt_text.h"

#include <QAbstractItemView>

namespace tarvello::testing {
namespace {

const char* const invoice_form = "frmTarvello";
const char* const result_window = "frmRisultatiRicercaFatture";

/// What finds an invoice: the moves, the search and the register.
struct InvoiceLists : DesktopTest {
    InvoiceLists() {
        start();
        for (const char* values : {"'1','10/01/2005','2005','Anna'", "'2','11/01/2005','2005','Bruno'",
                                   "'1','10/01/2006','2006','Carla'", "'2','11/01/2006','2006','Annalisa'"}) {
            program().database().dbConnection.execute(
                "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Nome,Cognome_Ragione_Sociale,"
                "Percentuale_Ritenuta,Importo_Ritenuta) VALUES (" +
                std::string(values) + ",'Rossi','20','€ 200,00')");
        }
        user.choose_menu("MDIForm1", "mnuFatture");
    }
    ~InvoiceLists() override { finish(); }

    std::string on_view() { return user.shown(invoice_form, "txtNumeroFattura"); }
    QAbstractItemModel* list() { return user.widget<QAbstractItemView>(result_window, "ListView1")->model(); }
    std::string cell(int row, int column) {
        return qt::from_qt(list()->index(row, column).data().toString());
    }
};

TEST_F(InvoiceLists, AnInvoiceIsFoundByTheMovesAndTheSearch) {
    user.click(invoice_form, "cmdNavigazione_4");
    EXPECT_EQ(on_view(), "2 - 2005");
    user.click(invoice_form, "cmdCerca");
    EXPECT_FALSE(user.widget(invoice_form, "cmdNavigazione_0")->isEnabled());
    EXPECT_FALSE(user.widget(invoice_form, "Toolbar1_1")->isVisible());
    user.type(invoice_form, "Combo3", "2005");
    user.choose(invoice_form, "Combo1", 4);
    user.type(invoice_form, "Text2", "zeno [%_]");
    user.expect_box("Nessua fattura trovata.");
    user.click(invoice_form, "cmdCerca");
    EXPECT_TRUE(user.widget(invoice_form, "Text2")->isVisible()) << "what was typed can be corrected";
    user.type(invoice_form, "Text2", "ROSSI");
    user.expect_modal(result_window, [this] {
        EXPECT_EQ(list()->rowCount(), 2);
        EXPECT_EQ(cell(0, 4) + cell(0, 24), "Bruno20");
        user.take_picture(result_window, "risultati-ricerca");
        user.click_row(result_window, "ListView1", 1);
        user.click(result_window, "cmdVisualizza");
    });
    user.click(invoice_form, "cmdCerca");
    EXPECT_EQ(on_view(), "1 - 2005");
    EXPECT_TRUE(user.widget(invoice_form, "Toolbar1_1")->isVisible());
}

TEST_F(InvoiceLists, TheRegisterIsReadWithTheKeyboard) {
    user.expect_modal("frmSelectYear", [this] {
        user.choose("frmSelectYear", "Combo1", 1);
        user.take_picture("frmSelectYear", "scelta-anno");
        user.expect_modal(result_window, [this] {
            EXPECT_EQ(user.window(result_window)->windowTitle(), "Tabella Fatture");
            EXPECT_EQ(user.shown(result_window, "Label1"), "Elenco Fatture");
            EXPECT_EQ(list()->rowCount(), 4);
            EXPECT_EQ(cell(0, 24) + cell(0, 25), "€ 200,00");
            user.take_picture(result_window, "registro");
            user.press(Qt::Key_Down);
            user.press(Qt::Key_End);
            user.press(Qt::Key_Return);
        });
        user.click("frmSelectYear", "Command1");
    });
    user.click(invoice_form, "Toolbar1_7");
    user.expect_none_left();
    EXPECT_EQ(on_view(), "1 - 2005");
}

} // namespace
} // namespace tarvello::testing
