#include "desktop/desktop_test.h"

#include <QAbstractItemModel>
#include <QTreeView>

namespace tarvello::testing {
namespace {

const std::string clients = "frmClienti";
const std::string results = "frmRisultatiRicercaClienti";
const std::string strange_name = "D'Angelo \"😀\" % ; -- שלום";

/// The register of customers in its real windows.
class CustomersOnScreen : public DesktopTest {
protected:
    std::string box(int index) { return user.shown(clients, "txtfields_" + std::to_string(index)); }
    std::string cell(int row, int column) {
        const auto* model = user.widget<QTreeView>(results, "ListView1")->model();
        EXPECT_EQ(model->rowCount(), 1);
        return model->index(row, column).data().toString().toStdString();
    }

    void add_from_box_to_box_with_enter() {
        user.click(clients, "Toolbar1_1");
        EXPECT_EQ(user.shown(clients, "Toolbar1_1"), "Salva");
        EXPECT_FALSE(user.widget(clients, "Toolbar1_2")->isVisible());
        struct {
            int box;
            std::string typed, stored;
        } const texts[] = {{11, strange_name, strange_name},
                           {1, "Ada", "Ada"},
                           {0, "dnglda70a41h501x", "DNGLDA70A41H501X"},
                           {12, "12345 67890123", "12345678901"},
                           {2, "VIA DELL'ORSO 5", "Via Dell'orso 5"},
                           {3, "I-00100", "00100"},
                           {4, "r2m", "RM"},
                           {5, "REGGIO NELL'EMILIA", "Reggio Nell'emilia"},
                           {6, "06 123", "06 123"},
                           {7, "", ""},
                           {8, "ada@example.it", "ada@example.it"},
                           {9, "paga TARDI", "Paga Tardi"}};
        for (const auto& it : texts) {
            EXPECT_EQ(user.focus(), "txtfields_" + std::to_string(it.box));
            user.type(it.typed);
            if (it.box == 4) user.press(Qt::Key_Backspace); // refused there
            user.press(Qt::Key_Return);
        }
        user.take_picture(clients, "clienti-nuovo");
        user.click(clients, "Toolbar1_1");
        EXPECT_EQ(user.shown(clients, "Toolbar1_1"), "Nuovo Cliente");
        EXPECT_EQ(user.shown(clients, "txtCurrentClient"), "Ada " + strange_name);
        for (const auto& it : texts) EXPECT_EQ(box(it.box), it.stored) << "as it was loaded back";
        user.take_picture(clients, "clienti");
    }

    void change() {
        user.type("x"); // what is locked cannot be typed over
        user.click(clients, "Toolbar1_2");
        EXPECT_EQ(user.focus(), "txtfields_11");
        user.take_picture(clients, "clienti-modifica");
        user.type(clients, "txtfields_5", "");
        user.expect_box("Inserire la Città.");
        user.click(clients, "Toolbar1_2");
        EXPECT_EQ(user.focus(), "txtfields_5");
        user.type("Roma");
        user.expect_box("Apportare le modifiche anche a tutte le fatture emesse a nome del cliente?",
                        Answer::yes);
        user.expect_box("Aggiornamento riuscito.");
        user.click(clients, "Toolbar1_2");
        EXPECT_EQ(user.shown(clients, "Toolbar1_2"), "Modifica Dati");
    }

    void search_and_list() {
        user.click(clients, "cmd_8");
        user.choose(clients, "Combo1", 2);
        user.type(clients, "Text1", "aNGx-elo");
        for (int i = 0; i < 4; ++i) user.press(Qt::Key_Left);
        user.press(Qt::Key_Backspace); // takes the end with it
        EXPECT_EQ(user.shown(clients, "Text1"), "aNG");
        user.take_picture(clients, "clienti-ricerca");
        user.expect_modal(results, [this] {
            EXPECT_EQ(cell(0, 1), strange_name);
            user.take_picture(results, "clienti-risultati");
            user.double_click(results, "ListView1", 0);
        });
        user.click(clients, "cmd_8");
        EXPECT_FALSE(user.is_shown(results));
        EXPECT_EQ(box(1), "Ada");
        EXPECT_FALSE(user.widget(clients, "Text1")->isVisible());
        user.expect_modal(results, [this] {
            EXPECT_EQ(cell(0, 12), "Paga Tardi");
            user.click_row(results, "ListView1", 0);
            user.close_window(results); // loads the row too
        });
        user.click(clients, "Toolbar1_5");
        EXPECT_EQ(box(5), "Roma");
    }
};

TEST_F(CustomersOnScreen, AreAddedChangedFoundAndDeleted) {
    start();
    user.expect_modal(clients, [this] {
        add_from_box_to_box_with_enter();
        change();
        search_and_list();
        user.expect_box("Dati Cliente:\nAda - DNGLDA70A41H501X\nVia Dell'orso 5 - 00100 - RM - Roma\n\n"
                        "Sei sicuro di voler cancellare questo Cliente?",
                        Answer::yes);
        user.click(clients, "cmd_4");
        EXPECT_EQ(box(1), "");
        user.click(clients, "Toolbar1_6");
        EXPECT_FALSE(user.is_shown(clients));
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    finish();
}

} // namespace
} // namespace tarvello::testing
