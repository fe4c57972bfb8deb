#include "desktop/desktop_test.h"

#include <QAbstractItemView>
#include <QTest>

namespace tarvello::testing {
namespace {

/// What a person does from the first start on: keeps customers, issues invoices, finds everything again.
struct InvoiceRoad : DesktopTest {
    const std::string invoice = "frmTarvello";

    /// The next modal window must be of that form; the user acts when it has come up.
    void expect_modal(const std::string& form, const std::function<void()>& acts = {}) {
        user.expect_modal(form, [this, form, acts] {
            QWidget* window = user.window(form);
            EXPECT_TRUE(QTest::qWaitFor([window] { return window->isActiveWindow(); }, longest_wait)) << form;
            if (acts) acts();
        });
    }
    void first_start() {
        user.expect_modal("DialogAggiornamento"); // nobody has ever looked for updates
        answer_first_run();
        start_with_splash();
        user.expect_none_left();
    }
    void start_again() {
        finish();
        user.expect_modal("DialogAggiornamento");
        start_with_splash();
        user.expect_none_left(); // the name is not asked for again
    }
    void add_customer() {
        expect_modal("frmClienti", [this] {
            user.click("frmClienti", "Toolbar1_1");
            const std::pair<int, const char*> boxes[] = {
                {11, "D'Amico €"}, {1, "Anna"}, {0, "DMCNNA80A41H501U"}, {2, "Via Roma 1"}, {3, "00100"},
                {4, "RM"},         {5, "Roma"}};
            for (const auto& [box, text] : boxes)
                user.type("frmClienti", "txtfields_" + std::to_string(box), text);
            user.click("frmClienti", "Toolbar1_1");
        });
        user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
        user.expect_none_left();
    }
    void expect_first_number() {
        user.expect_box(
            "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n");
    }
    /// Starts a new invoice and picks the last customer of the list.
    void start_invoice() {
        user.click(invoice, "Toolbar1_1");
        EXPECT_EQ(user.shown(invoice, "Toolbar1_1"), "Salva Fattura");
        expect_modal("frmCercaCliente", [this] {
            const auto* list = user.widget<QAbstractItemView>("frmCercaCliente", "ListView1");
            user.double_click("frmCercaCliente", "ListView1", list->model()->rowCount() - 1);
        });
        // The picker's button has the focus, unless a first number is to be typed.
        if (user.focus() != "cmdCercaCliente")
            user.click(invoice, "cmdCercaCliente");
        else
            user.press(Qt::Key_Space);
        user.expect_none_left();
    }
    void type_line(int line, const std::string& description, const std::string& amount) {
        user.type(invoice, "PrestazioneSingola_" + std::to_string(line), description);
        user.press(Qt::Key_Return);
        user.type(amount);
        user.press(Qt::Key_Return);
    }
    void type_lines_and_rates() {
        type_line(0, "Perizia dell'immobile", "1000");
        type_line(1, "Sopralluogo", "234,56");
        EXPECT_EQ(user.shown(invoice, "txtImportoPrestazioni_0"), "€ 1.000,00");
        user.click(invoice, "CheckRivalsa");
        user.type(invoice, "ComboPercentualeRivalsa", "2");
        user.type(invoice, "ComboIVAApplicata", "20");
        user.click(invoice, "CheckRitenuta");
        user.type(invoice, "ComboRitenuta", "20");
        user.type(invoice, "ComboRitenutaSu", "100");
    }
    void save() {
        user.expect_box("\nSalvare la fattura?", Answer::yes);
        user.click(invoice, "Toolbar1_1");
        user.expect_none_left();
        EXPECT_EQ(user.shown(invoice, "Toolbar1_1"), "Nuova Fattura");
    }
    std::string stored(const std::string& table, const std::string& condition, const std::string& column) {
        Recordset rows;
        rows.open("SELECT * FROM " + table + " WHERE " + condition, program().database().dbConnection);
        return rows.eof() ? "(none)" : rows.text_or_empty(column);
    }
};

TEST_F(InvoiceRoad, FromTheFirstStartToTheRowReadBack) {
    first_start();
    add_customer();
    user.choose_menu("MDIForm1", "mnuFatture");
    user.take_picture(invoice, "fatture-vuoto");
    expect_first_number();
    start_invoice();
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "1");
    EXPECT_EQ(user.shown(invoice, "txtAnagrafica_5"), "D'Amico €");
    type_lines_and_rates();
    expect_modal("frmArticoloEsenzione", [this] {
        user.click("frmArticoloEsenzione", "Option2");
        user.take_picture("frmArticoloEsenzione", "esenzione");
        user.click("frmArticoloEsenzione", "OKButton");
    });
    user.click(invoice, "CheckSpese");
    user.type(invoice, "txtImportoSpeseAnticipate", "14,62");
    user.click(invoice, "cmdCalcola");
    EXPECT_EQ(user.shown(invoice, "LabelRitenuta"), "€ 1.234,56");
    user.take_picture(invoice, "fatture-nuova");
    save();
    user.take_picture(invoice, "fatture");
    user.click(invoice, "Toolbar1_2");
    EXPECT_EQ(user.shown(invoice, "Toolbar1_2"), "Aggiorna Dati");
    user.take_picture(invoice, "fatture-modifica");
    user.click(invoice, "Toolbar1_6");
    user.click(invoice, "cmdCerca");
    user.take_picture(invoice, "fatture-cerca");
    user.click(invoice, "Toolbar1_6");

    start_again();
    user.choose_menu("MDIForm1", "mnuFatture");
    const std::string year = std::to_string(QDate::currentDate().year());
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "1 - " + year);
    const std::pair<const char*, const char*> fields[] = {
        {"txtAnagrafica_5", "D'Amico €"},         {"PrestazioneSingola_0", "Perizia dell'immobile"},
        {"txtImportoPrestazioni_1", "€ 234,56"},  {"txtImportoRivalsa", "€ 24,69"},
        {"txtImponibile", "€ 1.259,25"},          {"txtIVA", "€ 251,85"},
        {"txtImportoSpeseAnticipate", "€ 14,62"}, {"txtTotaleFattura", "€ 1.525,72"},
        {"txtRitenutaAcconto", "€ 246,91"},       {"txtImportoNetto", "€ 1.278,81"}};
    for (const auto& [field, text] : fields) EXPECT_EQ(user.shown(invoice, field), text) << field;
    finish();
}

TEST_F(InvoiceRoad, ANewCustomerIsTypedAndWhatIsMissingGetsTheFocus) {
    start();
    user.choose_menu("MDIForm1", "mnuFatture");
    expect_first_number();
    user.click(invoice, "Toolbar1_1");
    expect_modal("frmCercaCliente", [this] { user.click("frmCercaCliente", "cmdNuovoCliente"); });
    user.click(invoice, "cmdCercaCliente");
    const std::pair<const char*, const char*> boxes[] = {{"txtAnagrafica_5", "ROSSI"},
                                                         {"txtAnagrafica_0", "rssmra80a01h501u"},
                                                         {"txtAnagrafica_1", "via roma 5"},
                                                         {"txtAnagrafica_2", "20100"},
                                                         {"txtAnagrafica_4", "milano"},
                                                         {"txtAnagrafica_3", "mi"},
                                                         {"txtNome", "mario"}};
    for (const auto& [box, text] : boxes) user.type(invoice, box, text);
    user.type(invoice, "PrestazioneSingola_0", "Consulenza");
    user.press(Qt::Key_Return);
    user.type("abc");
    user.expect_box("L'importo inserito non è valido!");
    user.press(Qt::Key_Return);
    EXPECT_EQ(user.focus(), "txtImportoPrestazioni_0");
    user.type("100");
    user.expect_box("Selezionare l'aliquota IVA.");
    user.click(invoice, "Toolbar1_1");
    EXPECT_EQ(user.focus(), "ComboIVAApplicata");
    user.choose(invoice, "ComboIVAApplicata", 0);
    save();
    EXPECT_EQ(stored("Clienti", "Numero_Cliente=1", "Cognome_Ragione_Sociale"), "Rossi");
    EXPECT_EQ(stored("Fatture", "ID=1", "Totale_Fattura"), "€ 120,00");

    user.expect_box("\nEliminare la fattura?", Answer::yes);
    user.click(invoice, "cmdEliminaFattura");
    user.expect_none_left();
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "");
    user.click(invoice, "Toolbar1_8");
    EXPECT_FALSE(user.is_shown(invoice));
    finish();
}

} // namespace
} // namespace tarvello::testing
