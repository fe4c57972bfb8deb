#include "desktop/desktop_test.h"
#include "invoices/invoice_form.h"
#include "places.h"
#include "program/version.h"
#include "store/database.h"
#include "support/invoice_columns.h"

#include <QAbstractItemView>
#include <QProcess>
#include <QTest>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarvello::testing {
namespace {

/// What a person does from the first start on: keeps customers, issues invoices, finds everything again.
struct InvoiceRoad : DesktopTest {
    using Row = std::map<std::string, std::string>;
    const std::string invoice = "frmTarvello";

    /// The next modal window must be of that form; the user acts when it has come up.
    void expect_modal(const std::string& form, const std::function<void()>& acts = {}) {
        user.expect_modal(form, [this, form, acts] {
            QWidget* window = user.window(form);
            EXPECT_TRUE(QTest::qWaitFor([window] { return window->isActiveWindow(); }, 5000)) << form;
            if (acts) acts();
        });
    }

    void first_start() {
        std::filesystem::create_directory(program_folder() + "/modelli");
        expect_modal("DialogAggiornamento"); // nobody has ever looked for updates
        expect_modal("frmRegister", [this] {
            user.type("frmRegister", "Text1", "Studio Bianchi");
            user.expect_box("Se i dati inseriti sono corretti premere 'Si'.\n"
                            "Attenzione! I dati verranno visualizzati nell'intestazione\n"
                            "delle fatture da stampare.\n"
                            "Continuare?",
                            Answer::yes);
            user.click("frmRegister", "Command1");
        });
        start_with_splash();
        user.expect_none_left();
    }

    void add_customer() {
        expect_modal("frmClienti", [this] {
            user.click("frmClienti", "Toolbar1_1");
            const std::pair<int, const char*> boxes[] = {
                {11, "D'Angelo"}, {1, "Mario"}, {0, "DNGMRA80A01H501X"}, {2, "Via Roma 1"}, {3, "00100"},
                {4, "RM"},        {5, "Roma"}};
            for (const auto& [box, text] : boxes) {
                user.type("frmClienti", "txtfields_" + std::to_string(box), text);
            }
            user.click("frmClienti", "Toolbar1_1");
        });
        user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
        user.expect_none_left();
        expect_row(stored("Clienti", "Numero_Cliente=1"),
                   {{"Cognome_Ragione_Sociale", "D'Angelo"}, {"Città", "Roma"}});
    }

    void open_invoices() { user.choose_menu("MDIForm1", "mnuFatture"); }

    /// Starts a new invoice and picks the first customer of the list.
    void start_invoice() {
        user.click(invoice, "Toolbar1_1");
        EXPECT_EQ(user.shown(invoice, "Toolbar1_1"), "Salva Fattura");
        expect_modal("frmCercaCliente", [this] { user.double_click("frmCercaCliente", "ListView1", 0); });
        user.press(Qt::Key_Space); // the picker's button has the focus, unless a first number is to be typed
        user.expect_none_left();
    }

    void type_line(int line, const std::string& description, const std::string& amount) {
        user.type(invoice, "PrestazioneSingola_" + std::to_string(line), description);
        user.press(Qt::Key_Return);
        user.type(amount);
        user.press(Qt::Key_Return);
    }

    struct Rates {
        std::string rivalsa;
        std::string spese = {};
        std::string ritenuta_su = "100";
    };
    void set_rates(const Rates& rates) {
        user.click(invoice, "CheckRivalsa");
        user.type(invoice, "ComboPercentualeRivalsa", rates.rivalsa);
        user.type(invoice, "ComboIVAApplicata", "20");
        if (!rates.spese.empty()) {
            expect_modal("frmArticoloEsenzione", [this] {
                user.click("frmArticoloEsenzione", "Option2");
                user.take_picture("frmArticoloEsenzione", "esenzione");
                user.click("frmArticoloEsenzione", "OKButton");
            });
            user.click(invoice, "CheckSpese");
            user.type(invoice, "txtImportoSpeseAnticipate", rates.spese);
        }
        user.click(invoice, "CheckRitenuta");
        user.type(invoice, "ComboRitenuta", "20");
        user.type(invoice, "ComboRitenutaSu", rates.ritenuta_su);
    }

    /// The preference "Includi Rivalsa 4% nel calcolo della R.A.", as it was last saved.
    void include_rivalsa(bool included) {
        program().platform().settings.write(application_name, "Check1", "value", included ? "1" : "0");
    }

    void save() {
        user.expect_box("\nSalvare la fattura?", Answer::yes);
        user.click(invoice, "Toolbar1_1");
        user.expect_none_left();
        EXPECT_EQ(user.shown(invoice, "Toolbar1_1"), "Nuova Fattura");
    }

    /// Picks a date in the calendar of the invoice.
    void pick_date(const QDate& date) {
        user.type(invoice, "DTPicker1", text(date));
        user.press(Qt::Key_Return);
    }

    static std::string text(const QDate& date) {
        return date.toString(QStringLiteral("dd/MM/yyyy")).toStdString();
    }

    Row stored(const std::string& table, const std::string& condition) {
        Recordset rows;
        rows.open("SELECT * FROM " + table + " WHERE " + condition, program().database().dbConnection);
        Row row;
        if (rows.eof()) {
            ADD_FAILURE() << "no row of " << table << " where " << condition;
            return row;
        }
        const std::vector<std::string> customer_columns = {"Numero_Cliente", "Cognome_Ragione_Sociale",
                                                           "Nome", "Codice_Fiscale", "Città"};
        for (const std::string& column : table == "Fatture" ? invoice_columns : customer_columns) {
            row[column] = rows.text(column);
        }
        return row;
    }

    /// What a row must hold, among its other columns.
    void expect_row(const Row& row, const Row& wanted) {
        for (const auto& [column, value] : wanted) EXPECT_EQ(row.at(column), value) << column;
    }
};

TEST_F(InvoiceRoad, FromTheFirstStartToTheRowsReadBack) {
    first_start();
    add_customer();
    include_rivalsa(true);
    open_invoices();
    user.take_picture(invoice, "fatture-vuoto");

    // Invoice A, the first ever.
    user.expect_box(
        "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n");
    user.click(invoice, "Toolbar1_1");
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "1");
    expect_modal("frmCercaCliente", [this] { user.double_click("frmCercaCliente", "ListView1", 0); });
    user.click(invoice, "cmdCercaCliente");
    EXPECT_EQ(user.shown(invoice, "txtAnagrafica_5"), "D'Angelo");
    type_line(0, "Perizia dell'immobile", "1000");
    type_line(1, "Sopralluogo", "234,56");
    EXPECT_EQ(user.shown(invoice, "txtImportoPrestazioni_0"), "€ 1.000,00");
    set_rates({.rivalsa = "2", .spese = "14,62"});
    user.click(invoice, "cmdCalcola");
    EXPECT_EQ(user.shown(invoice, "LabelRitenuta"), "€ 1.234,56");
    user.take_picture(invoice, "fatture-nuova");
    save();
    user.take_picture(invoice, "fatture");

    // Invoice B.
    start_invoice();
    type_line(0, "Perizia", "1000");
    type_line(1, "Sopralluogo", "234,56");
    set_rates({.rivalsa = "4"});
    save();
    EXPECT_EQ(user.shown(invoice, "LabelRitenuta"), "€ 1.283,94");

    // Invoice C.
    include_rivalsa(false);
    start_invoice();
    type_line(0, "Consulenza", "100,25");
    set_rates({.rivalsa = "2", .ritenuta_su = "75"});
    save();
    EXPECT_EQ(user.shown(invoice, "LabelRitenuta"), "€ 75,19");

    user.click(invoice, "Toolbar1_2");
    EXPECT_EQ(user.shown(invoice, "Toolbar1_2"), "Aggiorna Dati");
    user.take_picture(invoice, "fatture-modifica");
    user.click(invoice, "Toolbar1_6");
    user.click(invoice, "cmdCerca");
    user.take_picture(invoice, "fatture-cerca");
    user.click(invoice, "Toolbar1_6");
    finish();

    expect_modal("DialogAggiornamento");
    start_with_splash();
    user.expect_none_left(); // the name is not asked for again
    open_invoices();
    const std::string today = text(QDate::currentDate());
    const std::string year = std::to_string(QDate::currentDate().year());
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "3 - " + year);
    EXPECT_EQ(user.shown(invoice, "txtImportoNetto"), "€ 107,67");
    expect_row(stored("Fatture", "ID=1"), {{"Numero_Fattura", "1"},
                                           {"Data_Fattura", today},
                                           {"Anno", year},
                                           {"Numero_Cliente", "1"},
                                           {"Cognome_Ragione_Sociale", "D'Angelo"},
                                           {"Prestazione1", "Perizia dell'immobile"},
                                           {"Importo1", "€ 1.000,00"},
                                           {"Importo2", "€ 234,56"},
                                           {"Importo_Rivalsa", "€ 24,69"},
                                           {"Imponibile", "€ 1.259,25"},
                                           {"Imposta_IVA", "€ 251,85"},
                                           {"Importo_Spese", "€ 14,62"},
                                           {"Articolo_Esenzione", "(Art. 15 D.p.r. 633/72)"},
                                           {"Totale_Fattura", "€ 1.525,72"},
                                           {"Importo_Ritenuta", "€ 246,91"},
                                           {"Importo_Netto", "€ 1.278,81"}});
    expect_row(stored("Fatture", "ID=2"), {{"Numero_Fattura", "2"},
                                           {"Percentuale_Rivalsa", "4"},
                                           {"Importo_Rivalsa", "€ 49,38"},
                                           {"Imponibile", "€ 1.283,94"},
                                           {"Imposta_IVA", "€ 256,79"},
                                           {"Totale_Fattura", "€ 1.540,73"},
                                           {"Importo_Ritenuta", "€ 256,79"},
                                           {"Importo_Netto", "€ 1.283,94"}});
    expect_row(stored("Fatture", "ID=3"), {{"Numero_Fattura", "3"},
                                           {"Importo1", "€ 100,25"},
                                           {"Importo_Rivalsa", "€ 2,01"},
                                           {"Imponibile", "€ 102,26"},
                                           {"Imposta_IVA", "€ 20,45"},
                                           {"Totale_Fattura", "€ 122,71"},
                                           {"Ritenuta_Su", "75"},
                                           {"Importo_Ritenuta", "€ 15,04"},
                                           {"Importo_Netto", "€ 107,67"}});
    finish();
}

TEST_F(InvoiceRoad, NewCustomerNewYearAndARefusedDate) {
    const QDate today = QDate::currentDate();
    first_start();
    add_customer();
    open_invoices();

    // A customer who is announced as new in the picker.
    user.expect_box(
        "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n");
    user.click(invoice, "Toolbar1_1");
    expect_modal("frmCercaCliente", [this] { user.click("frmCercaCliente", "cmdNuovoCliente"); });
    user.click(invoice, "cmdCercaCliente");
    const std::pair<int, const char*> boxes[] = {{5, "ROSSI"}, {0, "rssmra80a01h501u"}, {1, "via roma 5"},
                                                 {2, "20100"}, {4, "milano"},           {3, "mi"}};
    for (const auto& [box, text] : boxes) {
        user.type(invoice, "txtAnagrafica_" + std::to_string(box), text);
    }
    user.type(invoice, "txtNome", "mario");
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
    expect_row(stored("Clienti", "Numero_Cliente=2"), {{"Cognome_Ragione_Sociale", "Rossi"},
                                                       {"Nome", "Mario"},
                                                       {"Codice_Fiscale", "RSSMRA80A01H501U"},
                                                       {"Città", "Milano"}});
    expect_row(stored("Fatture", "ID=1"), {{"Numero_Cliente", "2"}, {"Totale_Fattura", "€ 120,00"}});

    // A change of that customer, carried into the invoices.
    expect_modal("frmClienti", [this] {
        user.click("frmClienti", "cmd_3"); // the last one
        EXPECT_EQ(user.shown("frmClienti", "txtfields_11"), "Rossi");
        user.click("frmClienti", "Toolbar1_2");
        user.type("frmClienti", "txtfields_2", "Corso Italia 7");
        user.expect_box("Apportare le modifiche anche a tutte le fatture emesse a nome del cliente?",
                        Answer::yes);
        user.expect_box("Aggiornamento riuscito.");
        user.click("frmClienti", "Toolbar1_2");
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    user.expect_none_left();
    EXPECT_EQ(stored("Fatture", "ID=1").at("Indirizzo"), "Corso Italia 7");

    // A new invoicing year: first refused, then begun.
    const std::string question = "Si è selezionato un nuovo anno di fatturazione.\n"
                                 "Si desidera iniziare un nuovo anno di fatturazione?";
    const QDate new_year(today.year() + 1, 1, 15);
    start_invoice();
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "2");
    user.expect_box(question, Answer::no);
    pick_date(new_year);
    EXPECT_EQ(user.shown(invoice, "DTPicker1"), text(QDate(today.year(), 1, 15)));
    user.expect_box(question, Answer::yes);
    user.expect_box(
        "Inserire manualmente il numero di fattura da cui si desidera iniziare la numerazione delle "
        "fatture (normalmente n°1).\n"
        "Il calendiario verrà ora bloccato. Se si è indicata una data errata sarà necessario premere "
        "il comando 'Annulla' e quindi ripetere la procedura di fatturazione per il nuovo anno.");
    pick_date(new_year);
    EXPECT_FALSE(user.widget(invoice, "DTPicker1")->isEnabled());
    // Offscreen there is no window manager to give the keyboard back after two boxes in a row.
    user.window("MDIForm1")->activateWindow();
    user.settle();
    EXPECT_EQ(user.focus(), "txtNumeroFattura");
    user.type("1");
    type_line(0, "Consulenza", "50");
    user.choose(invoice, "ComboIVAApplicata", 0);
    save();
    expect_row(stored("Fatture", "ID=2"), {{"Numero_Fattura", "1"},
                                           {"Data_Fattura", text(new_year)},
                                           {"Anno", std::to_string(new_year.year())},
                                           {"Cognome_Ragione_Sociale", "D'Angelo"}});

    // A date before that of the last invoice is refused.
    start_invoice();
    pick_date(new_year.addDays(-1));
    type_line(0, "Consulenza", "50");
    user.choose(invoice, "ComboIVAApplicata", 0);
    user.expect_box("ERRORE INSERIMENTO DATA.\n"
                    "La data indicata è precedente a quella dell'ultima fattura emessa.\n"
                    "Data ultima fattura emessa: " +
                    text(new_year) + "\nData inserita: " + text(new_year.addDays(-1)) +
                    "\n\nModificare la data.");
    user.click(invoice, "Toolbar1_1");
    user.expect_none_left();
    EXPECT_EQ(user.shown(invoice, "Toolbar1_1"), "Salva Fattura");
    pick_date(new_year);
    save();
    EXPECT_EQ(stored("Fatture", "ID=3").at("Numero_Fattura"), "2");

    // Deleted again.
    user.expect_box("\nEliminare la fattura?", Answer::no);
    user.click(invoice, "cmdEliminaFattura");
    user.expect_box("\nEliminare la fattura?", Answer::yes);
    user.click(invoice, "cmdEliminaFattura");
    user.expect_none_left();
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "1 - " + std::to_string(new_year.year()));
    user.click(invoice, "Toolbar1_8");
    EXPECT_FALSE(user.is_shown(invoice));
    finish();
}

/// The same on the files that users bring along.
struct AccessSample {
    const char* file;
    int customers; ///< keys given so far
    int invoices;
    int last_number;
};

struct AccessRoad : InvoiceRoad, ::testing::WithParamInterface<AccessSample> {};

TEST_P(AccessRoad, AnInvoiceIsIssuedAndFoundAgain) {
    const AccessSample& sample = GetParam();
    const std::string original =
        std::string(TARVELLO_TEST_DATA "/store/access/../../data/access/") + sample.file;
    const std::string file = program_folder() + "/tarvello.mdb";
    std::filesystem::copy_file(original, file, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(file,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    first_start();
    expect_modal("frmClienti", [this] {
        user.click("frmClienti", "Toolbar1_1");
        const std::pair<int, const char*> boxes[] = {{11, "D'Amico €"}, {1, "Anna"},  {0, "DMCNNA80A41H501U"},
                                                     {2, "Via Roma 1"}, {3, "00100"}, {4, "RM"},
                                                     {5, "Roma"}};
        for (const auto& [box, text] : boxes)
            user.type("frmClienti", "txtfields_" + std::to_string(box), text);
        user.click("frmClienti", "Toolbar1_1");
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    const std::string customer = std::to_string(sample.customers + 1);
    EXPECT_EQ(stored("Clienti", "Numero_Cliente=" + customer).at("Cognome_Ragione_Sociale"), "D'Amico €");

    open_invoices();
    const bool first = sample.invoices == 0;
    if (first) {
        user.expect_box(
            "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n");
    }
    user.click(invoice, "Toolbar1_1");
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), std::to_string(sample.last_number + 1));
    expect_modal("frmCercaCliente", [this] {
        const int rows = user.widget<QAbstractItemView>("frmCercaCliente", "ListView1")->model()->rowCount();
        user.double_click("frmCercaCliente", "ListView1", rows - 1);
    });
    user.click(invoice, "cmdCercaCliente");
    EXPECT_EQ(user.shown(invoice, "ComboNumeroCliente"), customer);
    type_line(0, "Perizia dell'immobile", "1000");
    type_line(1, "Sopralluogo", "234,56");
    set_rates({.rivalsa = "2"});
    save();
    finish();

    expect_modal("DialogAggiornamento");
    start_with_splash();
    user.expect_none_left();
    open_invoices();
    EXPECT_TRUE(
        user.shown(invoice, "txtNumeroFattura").starts_with(std::to_string(sample.last_number + 1) + " - "));
    expect_row(stored("Fatture", "ID=" + std::to_string(sample.invoices + 1)),
               {{"Numero_Cliente", customer},
                {"Prestazione1", "Perizia dell'immobile"},
                {"Importo1", "€ 1.000,00"},
                {"Importo_Rivalsa", "€ 24,69"},
                {"Totale_Fattura", "€ 1.511,10"}});
    finish();

    QProcess checker;
    checker.start(QStringLiteral("python3"),
                  {QStringLiteral(TARVELLO_TEST_DATA "/store/access/access_checker.py"),
                   QString::fromStdString(file), QStringLiteral("--before"),
                   QString::fromStdString(original)});
    ASSERT_TRUE(checker.waitForFinished());
    EXPECT_EQ(checker.exitCode(), 0) << checker.readAll().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessRoad,
                         ::testing::Values(AccessSample{"vuoto.mdb", 0, 0, 0},
                                           AccessSample{"archivio.mdb", 40, 300, 37},
                                           AccessSample{"indici.mdb", 600, 900, 112}),
                         [](const auto& info) { return std::string(info.param.file, 5); });

} // namespace
} // namespace tarvello::testing
