#include "desktop/desktop_test.h"
#include "store/engine.h"

#include <QAbstractItemModel>
#include <QTreeView>

namespace tarvello::testing {
namespace {

const std::string clients = "frmClienti";
const std::string results = "frmRisultatiRicercaClienti";

/// The register of customers in its real windows.
class CustomersOnScreen : public DesktopTest {
protected:
    /// Text of a column in the first row of a statement; "(none)" without a row.
    std::string stored(const std::string& statement, const std::string& column) {
        Recordset rows;
        rows.open(statement, program().database().dbConnection);
        return rows.eof() ? "(none)" : rows.text_or_empty(column);
    }
    std::string box(int index) { return user.shown(clients, "txtfields_" + std::to_string(index)); }
    std::string cell(int row, int column) {
        const auto* model = user.widget<QTreeView>(results, "ListView1")->model();
        return model->index(row, column).data().toString().toStdString();
    }
    int rows() { return user.widget<QTreeView>(results, "ListView1")->model()->rowCount(); }

    void add();
    void change();
    void refuse_a_duplicate();
    void search();
    void list();
    void remove();
};

void CustomersOnScreen::add() {
    user.click(clients, "Toolbar1_1");
    EXPECT_EQ(user.shown(clients, "Toolbar1_1"), "Salva");
    EXPECT_FALSE(user.widget(clients, "Toolbar1_2")->isVisible());
    // From box to box with the Enter key.
    const std::pair<const char*, const char*> texts[] = {{"txtfields_11", "D'Angelo \"😀\" % ; -- שלום"},
                                                         {"txtfields_1", "Ada"},
                                                         {"txtfields_0", "dnglda70a41h501x"},
                                                         {"txtfields_12", "12345 67890123"},
                                                         {"txtfields_2", "VIA DELL'ORSO 5"},
                                                         {"txtfields_3", "I-00100"},
                                                         {"txtfields_4", "r2m"},
                                                         {"txtfields_5", "REGGIO NELL'EMILIA"},
                                                         {"txtfields_6", "06 123"},
                                                         {"txtfields_7", ""},
                                                         {"txtfields_8", "ada@example.it"},
                                                         {"txtfields_9", "paga TARDI"}};
    for (const auto& [name, text] : texts) {
        EXPECT_EQ(user.focus(), name);
        user.type(text);
        if (user.focus() == "txtfields_4") user.press(Qt::Key_Backspace); // refused there
        user.press(Qt::Key_Return);
    }
    user.take_picture(clients, "clienti-nuovo");
    user.click(clients, "Toolbar1_1");
    EXPECT_EQ(user.shown(clients, "Toolbar1_1"), "Nuovo Cliente");
    EXPECT_EQ(user.shown(clients, "txtCurrentClient"), "Ada D'Angelo \"😀\" % ; -- שלום");
    EXPECT_EQ(box(10), "1");
    const std::string row = "SELECT * FROM Clienti WHERE Numero_Cliente=1";
    EXPECT_EQ(stored(row, "Cognome_Ragione_Sociale"), "D'Angelo \"😀\" % ; -- שלום");
    EXPECT_EQ(stored(row, "Codice_Fiscale"), "DNGLDA70A41H501X");
    EXPECT_EQ(stored(row, "Partita_IVA"), "12345678901");
    EXPECT_EQ(stored(row, "Indirizzo"), "Via Dell'orso 5");
    EXPECT_EQ(stored(row, "CAP"), "00100");
    EXPECT_EQ(stored(row, "Provincia"), "RM");
    EXPECT_EQ(stored(row, "Città"), "Reggio Nell'emilia");
    EXPECT_EQ(stored(row, "Appunti"), "Paga Tardi");
    user.take_picture(clients, "clienti");
}

void CustomersOnScreen::change() {
    program().database().dbConnection.execute(
        "INSERT INTO Fatture (Numero_Fattura, Data_Fattura, Anno, Numero_Cliente, Indirizzo) "
        "VALUES ('1','05/03/2006','2006','1','Via Vecchia')");
    user.type("x"); // what is locked cannot be typed over
    user.click(clients, "Toolbar1_2");
    EXPECT_EQ(user.focus(), "txtfields_11");
    user.type(clients, "txtfields_2", "piazza navona 1");
    user.take_picture(clients, "clienti-modifica");
    user.expect_box("Apportare le modifiche anche a tutte le fatture emesse a nome del cliente?",
                    Answer::yes);
    user.expect_box("Aggiornamento riuscito.");
    user.click(clients, "Toolbar1_2");
    EXPECT_EQ(user.shown(clients, "Toolbar1_2"), "Modifica Dati");
    EXPECT_EQ(stored("SELECT * FROM Clienti", "Indirizzo"), "Piazza Navona 1");
    EXPECT_EQ(stored("SELECT * FROM Clienti", "Nome"), "Ada");
    EXPECT_EQ(stored("SELECT * FROM Fatture", "Indirizzo"), "Piazza Navona 1");
    EXPECT_EQ(stored("SELECT * FROM Fatture", "Cognome_Ragione_Sociale"), "D'Angelo \"😀\" % ; -- שלום");
}

void CustomersOnScreen::refuse_a_duplicate() {
    user.click(clients, "Toolbar1_1");
    user.type(clients, "txtfields_0", "dnglda70a41h501x");
    user.expect_box("Il Codice Fiscale che si sta cercando di inserire è già presente nel database.");
    user.click(clients, "Toolbar1_1");
    EXPECT_EQ(user.focus(), "txtfields_0");
    user.click(clients, "Toolbar1_4");
    EXPECT_EQ(box(1), "Ada");
}

void CustomersOnScreen::search() {
    user.click(clients, "cmd_8");
    EXPECT_EQ(user.shown(clients, "cmd_8"), "OK");
    EXPECT_EQ(box(1), "");
    user.choose(clients, "Combo1", 2);
    user.type(clients, "Text1", "aNGx-elo");
    for (int i = 0; i < 4; ++i) user.press(Qt::Key_Left);
    user.press(Qt::Key_Backspace); // takes the end with it
    EXPECT_EQ(user.shown(clients, "Text1"), "aNG");
    user.take_picture(clients, "clienti-ricerca");
    user.expect_modal(results, [this] {
        ASSERT_EQ(rows(), 1);
        EXPECT_EQ(cell(0, 1), "D'Angelo \"😀\" % ; -- שלום");
        user.take_picture(results, "clienti-risultati");
        user.double_click(results, "ListView1", 0);
    });
    user.click(clients, "cmd_8");
    EXPECT_FALSE(user.is_shown(results));
    EXPECT_EQ(box(1), "Ada");
    EXPECT_EQ(user.shown(clients, "cmd_8"), "Cerca Cliente");
    EXPECT_FALSE(user.widget(clients, "Text1")->isVisible());
}

void CustomersOnScreen::list() {
    user.expect_modal(results, [this] {
        EXPECT_EQ(user.shown(results, "Label1"), "Elenco Clienti");
        EXPECT_EQ(rows(), 1);
        EXPECT_EQ(cell(0, 12), "Paga Tardi");
        user.click_row(results, "ListView1", 0);
        user.close_window(results); // loads the row too
    });
    user.click(clients, "Toolbar1_5");
    EXPECT_EQ(box(10), "1");
}

void CustomersOnScreen::remove() {
    user.expect_box(
        "Impossibile Eliminare il cliente\n\nSono presenti fatture in archivio a nome del cliente "
        "selezionato.");
    user.click(clients, "cmd_4");
    program().database().dbConnection.execute("DELETE * FROM Fatture WHERE Numero_Cliente=1");
    user.click(clients, "cmd_1"); // closes the result of the refusal
    EXPECT_EQ(box(10), "1");
    user.expect_box(
        "Dati Cliente:\nAda - DNGLDA70A41H501X\nPiazza Navona 1 - 00100 - RM - Reggio Nell'emilia\n\n"
        "Sei sicuro di voler cancellare questo Cliente?",
        Answer::yes);
    user.click(clients, "cmd_4");
    EXPECT_EQ(box(1), "");
    EXPECT_EQ(stored("SELECT * FROM Clienti", "Nome"), "(none)");
}

TEST_F(CustomersOnScreen, AreAddedChangedFoundAndDeleted) {
    start();
    user.expect_modal(clients, [this] {
        add();
        change();
        refuse_a_duplicate();
        search();
        list();
        remove();
        user.click(clients, "Toolbar1_6");
        EXPECT_FALSE(user.is_shown(clients));
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    finish();
}

} // namespace
} // namespace tarvello::testing
