#include "desktop/desktop_test.h"

#include "e_invoice/delivery_state.h"
#include "e_invoice/receipt_support.h"
#include "platform/qt/qt_text.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTabWidget>
#include <QUrl>

#include <filesystem>

namespace tarvello::testing {
namespace {

using e_invoice::DeliveryState;

/// A year of electronic invoices in the real windows: told once, created, sent, answered.
class EInvoicesOnScreen : public DesktopTest {
protected:
    struct Row {
        int customer;
        const char *vat, *code, *first_name, *name;
        const char *text, *amount, *rate, *tax, *total;
        const char* expenses = "";
    };

    void given(const std::string& number, const Row& row) {
        const bool expenses = *row.expenses;
        program().database().dbConnection.execute(
            "INSERT INTO Fatture "
            "(Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Partita_IVA,Codice_Fiscale,Nome,"
            "Cognome_Ragione_Sociale,Indirizzo,CAP,Provincia,Città,Prestazione1,Importo1,Imponibile,Aliquota_"
            "IVA,"
            "Imposta_IVA,Totale_Fattura,Importo_Netto,Spese,Importo_Spese,Articolo_Esenzione) VALUES "
            "(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
            {number,
             "10/03/2025",
             std::int64_t{2025},
             std::int64_t{row.customer},
             row.vat,
             row.code,
             row.first_name,
             row.name,
             "Via dell'Industria 5",
             "24121",
             "BG",
             "Bergamo",
             row.text,
             row.amount,
             row.amount,
             row.rate,
             row.tax,
             row.total,
             row.total,
             expenses ? "Sì" : "",
             row.expenses,
             expenses ? "(Art. 15 D.p.r. 633/72)" : ""});
    }
    void given_year() {
        program().database().dbConnection.execute(
            "INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Codice_Fiscale,Partita_IVA) VALUES "
            "(?,?,?,?)",
            {"Ing. Niccolò D'Angelo", "Via Santa Sofia, 12", "DNGNCL75E14F205Y", "01234560157"});
        const char* const firm = "Officine Riunite S.r.l.";
        const char* const vat = "05432100963";
        const char* const fee = "Consulenza tecnica";
        const Row rows[] = {
            {1, vat, "", "", firm, fee, "€ 1.000,00", "22", "€ 220,00", "€ 1.220,00"},
            {2, "", "FRRLNE79E52D612M", "Anna", "Rossi", fee, "€ 500,00", "22", "€ 110,00", "€ 610,00"},
            {3, "", "94012345677", "", "Comune di Prova", fee, "€ 2.000,00", "22", "€ 440,00", "€ 2.440,00"},
            {4, "", "", "", "Müller GmbH", fee, "€ 300,00", "Esente", "€ 0,00", "€ 300,00"},
            {1, vat, "", "", firm, "Lezioni", "€ 200,00", "Esente", "€ 0,00", "€ 200,00"},
            {1, vat, "", "", firm, fee, "€ 100,00", "22", "€ 22,00", "€ 172,00", "€ 50,00"},
            {1, vat, "", "", firm, fee, "€ 50,00", "10", "€ 5,00", "€ 55,00"},
            {1, vat, "", "", firm, fee, "€ 60,00", "22", "€ 13,20", "€ 73,20"},
            {1, vat, "", "", firm, "Storno", "-€ 100,00", "22", "-€ 22,00", "-€ 122,00"},
            {1, vat, "", "", firm, fee, "€ 70,00", "4", "€ 2,80", "€ 72,80"}};
        int number = 0;
        for (const Row& row : rows) given(std::to_string(++number), row);
        std::filesystem::create_directory(folder());
        program().platform().settings.write("Tarvello", "FatturaElettronica", "cartella", folder());
    }
    std::string folder() const { return program_folder() + "/fatture"; }
    static std::string name(int progressive) {
        return std::string("ITDNGNCL75E14F205Y_0000") + "0123456789AB"[progressive] + ".xml";
    }

    void tell_the_issuer() {
        const std::string form = "frmDatiFatturaElettronica";
        user.expect_modal(form, [&] {
            EXPECT_EQ(user.shown(form, "txtCognome"), "D'Angelo");
            user.type(form, "txtCAP", "2012");
            user.type(form, "txtComune", "Milano");
            user.type(form, "txtIBAN", "IT60X0542811101000000123457");
            user.press(Qt::Key_Tab);
            EXPECT_NE(user.shown(form, "lblAvviso"), "");
            user.take_picture(form, "elettronica-emittente");
            user.type(form, "txtIBAN", "");
            user.type(form, "txtCAP", "20122");
            user.expect_box("Dati per la fattura elettronica salvati correttamente.");
            user.click(form, "cmdSalva");
        });
        user.choose_menu("MDIForm1", "mnuDatiElettronica");
    }

    /// The first invoice of a customer asks where it goes.
    void expect_customer(const std::function<void()>& tell) {
        user.expect_modal(customer, [this, tell] {
            tell();
            user.click(customer, "cmdSalva");
        });
    }
    void create(int number, int progressive, const std::function<void()>& decide = {},
                DeliveryState state = DeliveryState::created) {
        user.expect_modal(invoice, [=, this] {
            if (decide) decide();
            const std::string path = folder() + "/" + name(progressive);
            user.expect_box("La fattura elettronica è stata creata:\n" + path + "\n\n" +
                            std::string(state_advice(state)));
            user.click(invoice, "cmdCrea");
            user.click(invoice, "cmdChiudi");
            EXPECT_TRUE(std::filesystem::exists(path));
        });
        user.double_click(list, "lstFatture", number - 1);
        user.expect_none_left();
    }
    void choose_code(const std::string& form, const char* control, const std::string& code) {
        const auto* box = user.widget<QComboBox>(form, control);
        user.choose(form, control, box->findText(qt::to_qt("(" + code + ")"), Qt::MatchEndsWith));
    }

    void answer(const std::string& root, int progressive, const std::string& more = {}) {
        const std::string text =
            receipt_text(root, private_namespace,
                         "<IdentificativoSdI>" + std::to_string(100 + progressive) +
                             "</IdentificativoSdI><NomeFile>" + name(progressive) + "</NomeFile>" + more);
        std::filesystem::create_directory(folder() + "/ricevute");
        program().platform().files.write(receipt(progressive), text);
    }
    std::string receipt(int progressive) const {
        return folder() + "/ricevute/" + std::to_string(progressive) + ".xml";
    }
    void drop(const std::string& path) {
        QWidget* ground = user.widget<QAbstractItemView>(list, "lstFatture")->viewport();
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(qt::to_qt(path))});
        const QPoint place(20, 20);
        QDragEnterEvent enter(place, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(ground, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent dropped(place, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(ground, &dropped);
    }

    /// Offscreen no window manager gives the keyboard back.
    void take_keyboard() {
        user.window("MDIForm1")->activateWindow();
        user.settle();
    }

    /// Number and state of each row.
    std::string states() {
        std::string all;
        const QAbstractItemModel* rows = user.widget<QAbstractItemView>(list, "lstFatture")->model();
        for (int row = 0; row < rows->rowCount(); ++row) {
            all += qt::from_qt(rows->index(row, 0).data().toString() + QLatin1Char(' ') +
                               rows->index(row, 4).data().toString() + QLatin1Char('\n'));
        }
        return all;
    }
    void send(int number) {
        user.click_row(list, "lstFatture", number - 1);
        user.expect_box(
            "La fattura è segnata come inviata.\n\nPreparare il messaggio di posta certificata a "
            "sdi01@pec.fatturapa.it, a cui allegare il file " +
                name(number) +
                "?\nDopo il primo invio si usa l'indirizzo che SdI indica nella sua risposta. Chi usa "
                "il sito Fatture e Corrispettivi risponda No.",
            Answer::no);
        user.click(list, "cmdInviata");
    }

    const std::string list = "frmFattureElettroniche";
    const std::string invoice = "frmFatturaElettronica";
    const std::string customer = "frmDatiClienteElettronica";
};

TEST_F(EInvoicesOnScreen, AYear) {
    start();
    given_year();
    tell_the_issuer();
    user.choose_menu("MDIForm1", "mnuFattureElettroniche");

    expect_customer([&] {
        user.type(customer, "txtCodice", "abc1234");
        user.take_picture(customer, "elettronica-cliente");
    });
    create(1, 1, [&] {
        user.take_picture(invoice, "elettronica-da-decidere");
        user.widget<QTabWidget>(invoice, "SSTab1")->setCurrentIndex(1);
        user.take_picture(invoice, "elettronica-documento");
    });
    expect_customer([] {}); // a private person has no code
    create(2, 2);
    expect_customer([&] {
        user.click(customer, "chkPA");
        user.type(customer, "txtCodice", "UFABC1");
    });
    create(
        3, 3,
        [&] {
            user.choose(invoice, "cboRiferimento", 2);
            user.type(invoice, "txtIdDocumento", "Rep. 12");
            user.type(invoice, "txtCIG", "Z123456789");
        },
        DeliveryState::to_sign);
    expect_customer([&] {
        choose_code(customer, "cboNazione", "DE");
        user.type(customer, "txtIVAEstera", "129273398");
    });
    create(4, 4, [&] { choose_code(invoice, "cboNatura", "N2.1"); });
    create(5, 5, [&] {
        choose_code(invoice, "cboNatura", "N4");
        EXPECT_EQ(user.shown(invoice, "chkBollo"), "1");
    });
    create(9, 6, [&] {
        EXPECT_EQ(user.shown(invoice, "cboTipo"), "nota di credito (TD04)");
        user.type(invoice, "txtCollegata", "1/2025");
        user.type(invoice, "txtDataCollegata", "10/03/2025");
        user.press(Qt::Key_Tab);
    });
    user.expect_box("Creare i file di 4 fatture?", Answer::yes);
    user.expect_box("Fatture elettroniche create: 4.");
    user.click(list, "cmdCreaTutte");

    send(1);
    send(2);
    answer("RicevutaConsegna", 1);
    answer("RicevutaImpossibilitaRecapito", 2);
    answer("RicevutaScarto", 9,
           "<ListaErrori><Errore><Codice>00305</Codice><Descrizione>IdFiscaleIVA del cessionario non "
           "valido</Descrizione></Errore></ListaErrori>");
    user.expect_file_dialog(folder() + "/ricevute");
    user.expect_box("Ricevute registrate: 3.\n- Fattura 1/2025: consegnata.\n- Fattura 2/2025: messa a "
                    "disposizione.\n- Fattura 8/2025: scartata.");
    user.click(list, "cmdRicevute");
    take_keyboard();
    user.click_row(list, "lstFatture", 7);
    user.take_picture(list, "elettronica-elenco");

    // The cure: the invoice is corrected and created again under a new name.
    user.click(list, "cmdFattura");
    user.click("frmTarvello", "cmdModificaDati");
    user.type("frmTarvello", "PrestazioneSingola_0", "Consulenza corretta");
    user.click("frmTarvello", "cmdModificaDati");
    create(8, 11);
    answer("RicevutaConsegna", 11);
    user.expect_box("Ricevute registrate: 1.\n- Fattura 8/2025: consegnata.");
    drop(receipt(11));
    EXPECT_EQ(states(), "1 consegnata\n2 messa a disposizione\n3 da firmare\n4 creata\n5 creata\n6 creata\n"
                        "7 creata\n8 consegnata\n9 creata\n10 creata\n");
    const std::string corrected = program().platform().files.read(folder() + "/" + name(11));
    EXPECT_NE(corrected.find("Consulenza corretta"), std::string::npos);
    EXPECT_NE(corrected.find("<Numero>8/2025</Numero>"), std::string::npos);

    // What has arrived is changed only after a word.
    user.expect_box(
        "La fattura elettronica di questa fattura risulta consegnata.\nIl documento che ha SdI non "
        "cambia: per correggerlo serve una nota di credito, o una nuova fattura se SdI l'ha "
        "scartata.\n\nModificare comunque i dati in archivio?",
        Answer::no);
    user.click("frmTarvello", "cmdModificaDati");
    EXPECT_EQ(user.shown("frmTarvello", "cmdModificaDati"), "Modifica Dati");
}

} // namespace
} // namespace tarvello::testing
