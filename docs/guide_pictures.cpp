#include "desktop/desktop_test.h"
#include "e_invoice/delivery_state.h"
#include "e_invoice/receipt_support.h"
#include "platform/qt/qt_text.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QImageWriter>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// The walk of the guide through the real windows, from the first start to the restored backup, that takes
/// its pictures. Whatever the guide tells the reader to do is done here in that order, with one set of
/// invented data and fixed dates, so that the pictures come out the same each time. make_pictures.sh beside
/// this file runs it.
namespace tarvello::testing {
namespace {

using qt::from_qt;
using qt::to_qt;

/// Where the data of the program lie in the pictures, instead of in the folder of this run.
const char* const shown_folder = "/home/elena/tarvello";
const char* const invoice = "frmTarvello";

/// A window as the desktop shows it: those in the main window have a frame of their own, the others get one
/// with their title.
QImage picture_of(QWidget& window, const QString& title) {
    if (auto* frame = qobject_cast<QMdiSubWindow*>(window.parentWidget())) return frame->grab().toImage();
    constexpr int bar = 27;
    const QImage inside = window.grab().toImage();
    QImage picture(inside.width() + 2, inside.height() + bar + 1, QImage::Format_RGB32);
    picture.fill(QColor(0xb4, 0xb9, 0xc1));
    QPainter painter(&picture);
    const QRect top(1, 1, inside.width(), bar - 1);
    painter.fillRect(top, QColor(0xe3, 0xe6, 0xea));
    painter.drawImage(1, bar, inside);
    QFont font = window.font();
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(0x2d, 0x33, 0x3b));
    painter.drawText(top.adjusted(8, 0, -8, 0), Qt::AlignCenter,
                     painter.fontMetrics().elidedText(title, Qt::ElideMiddle, top.width() - 24));
    return picture;
}

/// Sees the next message before the user does, who answers it at once.
class NextBox final : public QObject {
public:
    NextBox() { qApp->installEventFilter(this); }
    std::function<void(QWidget& box)> on_show;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::Show && on_show) {
            // The filter that was installed last comes first, so this timer is before that of the user.
            QTimer::singleShot(0, box, [box, act = std::exchange(on_show, {})] { act(*box); });
        }
        return false;
    }
};

/// The same picture with at most 256 colours: those most seen, and for the others the nearest of them. A
/// third of the bytes, and no eye finds the difference in a window.
QImage with_palette(const QImage& picture) {
    std::map<QRgb, int> seen;
    const QImage dots = picture.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < dots.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(dots.constScanLine(y));
        for (int x = 0; x < dots.width(); ++x) ++seen[row[x]];
    }
    std::vector<std::pair<int, QRgb>> colours;
    for (const auto& [colour, times] : seen) colours.emplace_back(-times, colour);
    std::sort(colours.begin(), colours.end());
    QList<QRgb> palette;
    for (std::size_t i = 0; i < std::min<std::size_t>(colours.size(), 256); ++i) palette << colours[i].second;
    return dots.convertToFormat(QImage::Format_Indexed8, palette, Qt::AvoidDither | Qt::ThresholdDither);
}

struct Line {
    std::string description;
    std::string amount;
};

class Guide : public DesktopTest {
protected:
    // Pictures

    void take(const std::string& form, const std::string& name) {
        user.settle();
        QWidget* window = user.window(form);
        const auto restore = hide_folder(*window);
        user.settle();
        save(picture_of(*window, in_pictures(window->windowTitle())), name);
        restore();
    }
    /// The next message gets a picture before it is answered.
    void take_next_box(const std::string& name) {
        next_box_.on_show = [this, name](QWidget& box) { save(picture_of(box, box.windowTitle()), name); };
    }
    /// What a file on paper looks like.
    void take_paper(const std::string& pdf, const std::string& name) const {
        QProcess reader;
        reader.start("pdftoppm", {"-png", "-r", "75", "-singlefile", to_qt(pdf), to_qt(pdf)});
        EXPECT_TRUE(reader.waitForFinished());
        QImage paper(to_qt(pdf + ".png"));
        QPainter(&paper).drawRect(0, 0, paper.width() - 1, paper.height() - 1);
        save(paper, name);
    }
    std::string in_pictures_folder(const std::string& name) const { return from_qt(pictures_) + "/" + name; }

    // The user

    void expect_modal(const std::string& form, const std::function<void()>& acts) {
        user.expect_modal(form, [this, form, acts] {
            QWidget* window = user.window(form);
            EXPECT_TRUE(QTest::qWaitFor([window] { return window->isActiveWindow(); })) << form;
            acts();
        });
    }
    void turn_to(const std::string& form, int page) {
        user.widget<QTabWidget>(form, "SSTab1")->setCurrentIndex(page);
        user.settle();
    }
    void pick_date(const std::string& form, const QDate& date) {
        user.type(form, "DTPicker1", from_qt(date.toString(QStringLiteral("dd/MM/yyyy"))));
        user.press(Qt::Key_Return);
    }
    void type_customer(const std::vector<std::pair<int, std::string>>& boxes) {
        user.click("frmClienti", "Toolbar1_1");
        for (const auto& [box, text] : boxes)
            user.type("frmClienti", "txtfields_" + std::to_string(box), text);
    }
    void start_invoice(int customer, const QDate& date, const std::vector<Line>& lines) {
        user.click(invoice, "Toolbar1_1");
        expect_modal("frmCercaCliente", [&] { user.double_click("frmCercaCliente", "ListView1", customer); });
        user.click(invoice, "cmdCercaCliente");
        pick_date(invoice, date);
        type_lines(lines);
    }
    void type_lines(const std::vector<Line>& lines) {
        for (std::size_t i = 0; i < lines.size(); ++i) {
            user.type(invoice, "PrestazioneSingola_" + std::to_string(i), lines[i].description);
            user.press(Qt::Key_Return);
            user.type(lines[i].amount);
            user.press(Qt::Key_Return);
        }
    }
    void save_invoice() {
        user.expect_box("\nSalvare la fattura?", Answer::yes);
        user.click(invoice, "Toolbar1_1");
        user.expect_none_left();
        ASSERT_EQ(user.shown(invoice, "Toolbar1_1"), "Nuova Fattura");
    }
    void issue(int customer, const QDate& date, const std::vector<Line>& lines) {
        start_invoice(customer, date, lines);
        user.click(invoice, "CheckRivalsa");
        user.click(invoice, "CheckRitenuta");
        save_invoice();
    }

    // The chapters

    void first_start();
    void letterhead();
    void tax_preferences();
    void first_customer();
    void first_invoice();
    void more_customers_and_invoices();
    void find_again();
    void print();
    void word_document();
    void told_once();
    void electronic_invoice();
    void electronic_list();
    void new_year();
    void fiscal_code();
    void tools();

private:
    QString in_pictures(QString text) const {
        return text.replace(to_qt(program_folder()), QLatin1String(shown_folder));
    }
    /// Shows the folder of a user instead of that of this run. @return what undoes it
    std::function<void()> hide_folder(QWidget& window) const;
    void save(const QImage& picture, const std::string& name) const {
        QImageWriter writer(to_qt(in_pictures_folder(name + ".png")));
        writer.setQuality(0); // the smallest file
        EXPECT_TRUE(writer.write(with_palette(picture))) << name;
    }

    QString pictures_ = qEnvironmentVariable("TARVELLO_SHOTS");
    NextBox next_box_;
};

// Pictures

/// Draws the texts of a list with the folder of the pictures in the place of that of this run.
class FolderHider final : public QStyledItemDelegate {
public:
    FolderHider(QString real, QString shown, QObject* parent)
        : QStyledItemDelegate(parent), real_(std::move(real)), shown_(std::move(shown)) {}

    QString displayText(const QVariant& value, const QLocale& locale) const override {
        QString text = QStyledItemDelegate::displayText(value, locale);
        if (text.contains(real_)) return text.replace(real_, shown_);
        // A tree of folders shows them one by one.
        const qsizetype part = real_.split('/').indexOf(text.trimmed());
        if (part > 0) text.replace(text.trimmed(), shown_.split('/').at(part));
        return text;
    }

private:
    QString real_, shown_;
};

std::function<void()> Guide::hide_folder(QWidget& window) const {
    std::vector<std::function<void()>> undo;
    for (auto* line : window.findChildren<QLineEdit*>()) {
        const QString text = line->text();
        if (in_pictures(text) == text) continue;
        const auto show = [line](const QString& what) {
            const QSignalBlocker unseen(line); // the program keeps the real path
            line->setText(what);
            line->setCursorPosition(0);
        };
        show(in_pictures(text));
        undo.emplace_back([show, text] { show(text); });
    }
    for (auto* view : window.findChildren<QAbstractItemView*>()) {
        view->setItemDelegate(new FolderHider(to_qt(program_folder()), QLatin1String(shown_folder), view));
    }
    return [undo] {
        for (const auto& step : undo) step();
    };
}

// The chapters

void Guide::first_start() {
    expect_modal("DialogAggiornamento", [this] {
        take("DialogAggiornamento", "promemoria");
        user.click("DialogAggiornamento", "CancelButton");
    });
    expect_modal("frmRegister", [this] {
        user.type("frmRegister", "Text1", "Dott.ssa Elena Ferri");
        take("frmRegister", "nome");
        user.expect_box("Se i dati inseriti sono corretti premere 'Si'.\n"
                        "Attenzione! I dati verranno visualizzati nell'intestazione\n"
                        "delle fatture da stampare.\nContinuare?",
                        Answer::yes);
        user.click("frmRegister", "Command1");
    });
    start_with_splash();
    user.expect_none_left();
    user.window("MDIForm1")->resize(780, 560);
    user.move_mouse_over("MDIForm1", "Label2_0");
    take("MDIForm1", "finestra-principale");
    user.window("MDIForm1")->resize(1100, 860); // room for every window inside
}

void Guide::letterhead() {
    const std::string form = "frmIntestazioneFatture";
    user.click("MDIForm1", "Label2_2");
    const std::pair<const char*, const char*> boxes[] = {
        {"Text1_3", "FRRLNE79E52D612M"},
        {"Text1_6", "05512340489"},
        {"Text1_1", "Via Cavour 21 - 50129 Firenze"},
        {"Text1_4", "studio@elenaferri.example"},
        {"Text1_2", "055 0123456"},
        {"txtDescrizione", "Consulenza e formazione informatica"},
        {"txtBanca_0", "Banca Toscana di Credito"},
        {"txtBanca_1", "01234"},
        {"txtBanca_2", "02800"},
        {"txtBanca_3", "000000123456"}};
    for (const auto& [box, text] : boxes) user.type(form, box, text);
    user.expect_box("Dati Intestazione Salvati correttamente.");
    take(form, "intestazione");
    user.click(form, "Command1_0");
    turn_to(form, 1);
    user.click_row(form, "ListModelliReport", 0);
    user.click(form, "Command6");
    take(form, "impostazioni-di-stampa");
    user.click(form, "Command1_1");
    user.expect_none_left();
}

void Guide::tax_preferences() {
    const std::string form = "frmImpostazioni";
    user.click("MDIForm1", "Label2_5");
    user.choose(form, "ComboRivalsa", 0);
    user.click(form, "Check1");
    user.expect_box("Impostazioni rivalsa salvate correttamente.");
    take(form, "impostazioni-rivalsa");
    user.click(form, "Command1");
    turn_to(form, 1);
    user.type(form, "ComboIVAApplicata", "22");
    user.expect_box("Impostazioni IVA salvate correttamente.");
    take(form, "impostazioni-iva");
    user.click(form, "Command3");
    turn_to(form, 2);
    user.choose(form, "ComboRitenuta", 0);
    user.choose(form, "ComboRitenutaSu", 2);
    user.expect_box("Impostazioni Ritenuta d'Acconto salvate correttamente.");
    user.click(form, "Command4");
    user.click(form, "Command2");
    user.expect_none_left();
}

void Guide::first_customer() {
    expect_modal("frmClienti", [this] {
        type_customer({{11, "Officine Valdarno S.r.l."},
                       {12, "01987650452"},
                       {2, "via dell'industria 14"},
                       {3, "52025"},
                       {4, "AR"},
                       {5, "montevarchi"},
                       {6, "055 9876543"},
                       {8, "info@officinevaldarno.example"}});
        take("frmClienti", "cliente-nuovo");
        user.click("frmClienti", "Toolbar1_1");
        EXPECT_EQ(user.shown("frmClienti", "txtfields_2"), "Via Dell'industria 14");
        take("frmClienti", "clienti");
        user.click("frmClienti", "Toolbar1_6");
    });
    user.click("MDIForm1", "Label2_0");
    user.expect_none_left();
}

void Guide::first_invoice() {
    user.click("MDIForm1", "Label2_1");
    user.expect_box(
        "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n");
    start_invoice(
        0, QDate(2026, 1, 19),
        {{"Analisi del sistema informativo", "1250"}, {"Formazione del personale, 3 ore", "337,5"}});
    EXPECT_EQ(user.shown(invoice, "txtNumeroFattura"), "1");
    user.click(invoice, "CheckRivalsa");
    expect_modal("frmArticoloEsenzione", [this] {
        user.click("frmArticoloEsenzione", "Option2");
        take("frmArticoloEsenzione", "esenzione");
        user.click("frmArticoloEsenzione", "OKButton");
    });
    user.click(invoice, "CheckSpese");
    user.type(invoice, "txtImportoSpeseAnticipate", "32");
    user.click(invoice, "CheckRitenuta");
    user.click(invoice, "CheckPagamento");
    user.click(invoice, "cmdCalcola");
    take(invoice, "fattura-nuova");
    save_invoice();
    const std::pair<const char*, const char*> results[] = {{"txtImportoRivalsa", "€ 63,50"},
                                                           {"txtImponibile", "€ 1.651,00"},
                                                           {"txtIVA", "€ 363,22"},
                                                           {"txtImportoSpeseAnticipate", "€ 32,00"},
                                                           {"txtTotaleFattura", "€ 2.046,22"},
                                                           {"txtRitenutaAcconto", "€ 330,20"},
                                                           {"txtImportoNetto", "€ 1.716,02"}};
    for (const auto& [box, amount] : results) EXPECT_EQ(user.shown(invoice, box), amount) << box;
    take(invoice, "fattura");
}

void Guide::more_customers_and_invoices() {
    expect_modal("frmClienti", [this] {
        const std::vector<std::pair<int, std::string>> customers[] = {{{11, "Bianchi"},
                                                                       {1, "Giulia"},
                                                                       {0, "BNCGLI85D55D612F"},
                                                                       {2, "Borgo San Jacopo 7"},
                                                                       {3, "50125"},
                                                                       {4, "FI"},
                                                                       {5, "Firenze"}},
                                                                      {{11, "Condominio Via dei Tigli 18"},
                                                                       {0, "94012345677"},
                                                                       {2, "Via Dei Tigli 18"},
                                                                       {3, "50019"},
                                                                       {4, "FI"},
                                                                       {5, "Sesto Fiorentino"}},
                                                                      {{11, "Studio Conti & Neri"},
                                                                       {12, "02345670521"},
                                                                       {2, "Piazza Dante 3"},
                                                                       {3, "53100"},
                                                                       {4, "SI"},
                                                                       {5, "Siena"}}};
        for (const auto& customer : customers) {
            type_customer(customer);
            user.click("frmClienti", "Toolbar1_1");
        }
        user.click("frmClienti", "cmd_8");
        user.choose("frmClienti", "Combo1", 2);
        user.type("frmClienti", "Text1", "tigli");
        take("frmClienti", "cerca-cliente");
        user.click("frmClienti", "Toolbar1_4");
        user.click("frmClienti", "Toolbar1_6");
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    issue(3, QDate(2026, 2, 9), {{"Consulenza sulla protezione dei dati", "820"}});
    issue(0, QDate(2026, 3, 2),
          {{"Assistenza, gennaio e febbraio", "460"}, {"Installazione del server", "650"}});
    issue(2, QDate(2026, 3, 30), {{"Gestione dell'archivio, 1° trimestre", "300"}});
    issue(0, QDate(2026, 5, 4), {{"Assistenza, marzo e aprile", "460"}});
}

void Guide::find_again() {
    const char* const results = "frmRisultatiRicercaFatture";
    const auto take_list = [&](const char* name) {
        user.window(results)->resize(780, 300);
        user.click_row(results, "ListView1", 0);
        take(results, name);
        user.click(results, "cmdVisualizza");
    };
    user.click(invoice, "cmdCerca");
    user.type(invoice, "Combo3", "2026");
    user.choose(invoice, "Combo1", 4);
    user.type(invoice, "Text2", "valdarno");
    take(invoice, "cerca-fattura");
    expect_modal(results, [&] { take_list("risultati"); });
    user.click(invoice, "cmdCerca");
    user.expect_none_left();
    expect_modal("frmSelectYear", [&] {
        user.type("frmSelectYear", "Combo1", "2026");
        take("frmSelectYear", "scelta-anno");
        expect_modal(results, [&] { take_list("elenco-fatture"); });
        user.click("frmSelectYear", "Command1");
    });
    user.click(invoice, "Toolbar1_7");
    user.expect_none_left();
}

void Guide::print() {
    // Back on the first invoice.
    user.click(invoice, "cmdNavigazione_0");
    ASSERT_EQ(user.shown(invoice, "txtNumeroFattura"), "1 - 2026");
    const std::string pdf = folders_.path("home") + "/stampa";
    expect_modal("DataReport1", [&] {
        const auto press = [&](const char* action) {
            user.window("DataReport1")->findChild<QAction*>(action)->trigger();
            user.settle();
        };
        user.window("DataReport1")->resize(760, 620);
        press("ui_whole_page");
        take("DataReport1", "anteprima");
        user.expect_file_dialog(pdf);
        user.expect_box("La fattura è stata salvata in:\n" + pdf + ".pdf");
        press("ui_pdf");
    });
    user.click(invoice, "Toolbar1_4");
    user.expect_none_left();
    take_paper(pdf + ".pdf", "stampa");
}

void Guide::word_document() {
    const std::string form = "frmIntestazioneFatture";
    user.click("MDIForm1", "Label2_2");
    turn_to(form, 2);
    user.click_row(form, "File1", 2);
    user.expect_box("Impostazioni modello fattura per stampa su file salvate correttamente.");
    user.click(form, "Command5");
    take(form, "modelli");
    user.click(form, "Command1_1");
    const std::string document = folders_.path("home") + "/documento.rtf";
    user.expect_file_dialog(document);
    user.expect_box("File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" +
                    document);
    user.click(invoice, "Toolbar1_3");
    user.expect_none_left();
    QProcess office;
    office.start("soffice", {"--headless", "--convert-to", "pdf", "--outdir", to_qt(folders_.path("home")),
                             to_qt(document)});
    EXPECT_TRUE(office.waitForFinished());
    take_paper(folders_.path("home") + "/documento.pdf", "documento");
}

void Guide::told_once() {
    const char* const form = "frmDatiFatturaElettronica";
    expect_modal(form, [&] {
        EXPECT_EQ(user.shown(form, "txtTitolo") + user.shown(form, "txtNome") +
                      user.shown(form, "txtCognome"),
                  "Dott.ssaElenaFerri");
        EXPECT_EQ(user.shown(form, "txtCAP") + user.shown(form, "txtComune"), "50129Firenze");
        const auto* funds = user.widget<QComboBox>(form, "cboCassa");
        user.choose(form, "cboCassa", funds->findText(QStringLiteral("(TC22)"), Qt::MatchEndsWith));
        EXPECT_EQ(user.shown(form, "txtProvincia"), "FI");
        take(form, "elettronica-dati");
        user.expect_box("Dati per la fattura elettronica salvati correttamente.");
        user.click(form, "cmdSalva");
    });
    user.choose_menu("MDIForm1", "mnuDatiElettronica");
    user.expect_none_left();
}

void Guide::electronic_invoice() {
    const char* const form = "frmFatturaElettronica";
    const std::string folder = folders_.path("home") + "/fatture";
    ASSERT_TRUE(QDir().mkpath(to_qt(folder)));
    expect_modal("frmDatiClienteElettronica", [this] {
        user.type("frmDatiClienteElettronica", "txtCodice", "M5UXCR1");
        take("frmDatiClienteElettronica", "elettronica-cliente");
        user.click("frmDatiClienteElettronica", "cmdSalva");
    });
    expect_modal(form, [&] {
        take(form, "elettronica-decidere");
        turn_to(form, 1);
        take(form, "elettronica-documento");
        user.expect_file_dialog(folder);
        user.expect_box("La fattura elettronica è stata creata:\n" + folder +
                        "/ITFRRLNE79E52D612M_00001.xml\n\n" +
                        std::string(e_invoice::state_advice(e_invoice::DeliveryState::created)));
        user.click(form, "cmdCrea");
        user.click(form, "cmdChiudi");
    });
    user.click(invoice, "Toolbar1_9");
    user.expect_none_left();
}

void Guide::electronic_list() {
    const char* const form = "frmFattureElettroniche";
    const auto name = [](int file) { return "ITFRRLNE79E52D612M_0000" + std::to_string(file) + ".xml"; };
    const std::string receipts = folders_.path("home") + "/ricevute";
    ASSERT_TRUE(QDir().mkpath(to_qt(receipts)));
    user.choose_menu("MDIForm1", "mnuFattureElettroniche");
    user.type(form, "txtFiltro", "valdarno");
    user.expect_box("Creare i file di 2 fatture?", Answer::yes);
    user.expect_box("Fatture elettroniche create: 2.");
    user.click(form, "cmdCreaTutte");
    for (int file = 1; file <= 3; ++file) {
        user.click_row(form, "lstFatture", file - 1);
        user.expect_box(
            "La fattura è segnata come inviata.\n\nPreparare il messaggio di posta certificata a "
            "sdi01@pec.fatturapa.it, a cui allegare il file " +
                name(file) +
                "?\nDopo il primo invio si usa l'indirizzo che SdI indica nella sua risposta. Chi usa "
                "il sito Fatture e Corrispettivi risponda No.",
            Answer::no);
        user.click(form, "cmdInviata");
    }
    const std::pair<const char*, const char*> answers[] = {
        {"RicevutaConsegna", ""},
        {"RicevutaScarto",
         "<ListaErrori><Errore><Codice>00311</Codice><Descrizione>CodiceDestinatario non "
         "valido</Descrizione><Suggerimento>Verificare il codice con il cliente</Suggerimento>"
         "</Errore></ListaErrori>"}};
    int file = 0;
    for (const auto& [root, more] : answers) {
        ++file;
        program().platform().files.write(receipts + "/" + std::to_string(file) + ".xml",
                                         receipt_text(root, private_namespace,
                                                      "<IdentificativoSdI>1203948571" + std::to_string(file) +
                                                          "</IdentificativoSdI><NomeFile>" + name(file) +
                                                          "</NomeFile>" + more));
    }
    user.expect_file_dialog(receipts);
    user.expect_box("Ricevute registrate: 2.\n- Fattura 1/2026: consegnata.\n- Fattura 3/2026: scartata.");
    user.click(form, "cmdRicevute");
    user.window("MDIForm1")->activateWindow(); // offscreen no window manager gives the keyboard back
    user.settle();
    user.click_row(form, "lstFatture", 1);
    take(form, "elettronica-elenco");
    user.click(form, "cmdChiudi");
    user.expect_none_left();
}

void Guide::new_year() {
    start_invoice(1, QDate(2026, 5, 4), {});
    take_next_box("nuovo-anno");
    user.expect_box("Si è selezionato un nuovo anno di fatturazione.\n"
                    "Si desidera iniziare un nuovo anno di fatturazione?",
                    Answer::yes);
    user.expect_box(
        "Inserire manualmente il numero di fattura da cui si desidera iniziare la numerazione delle "
        "fatture (normalmente n°1).\n"
        "Il calendiario verrà ora bloccato. Se si è indicata una data errata sarà necessario premere "
        "il comando 'Annulla' e quindi ripetere la procedura di fatturazione per il nuovo anno.");
    pick_date(invoice, QDate(2027, 1, 18));
    user.expect_none_left();
    user.window("MDIForm1")->activateWindow(); // offscreen no window manager gives the keyboard back
    user.settle();
    user.type("1");
    type_lines({{"Consulenza", "500"}});
    save_invoice();
    ASSERT_EQ(user.shown(invoice, "txtNumeroFattura"), "1");
    user.click(invoice, "Toolbar1_8");
}

void Guide::fiscal_code() {
    const char* const form = "frmCalcolaCF";
    expect_modal("frmClienti", [&] {
        type_customer({{11, "Bianchi"}, {1, "Giulia"}});
        expect_modal(form, [&] {
            pick_date(form, QDate(1985, 4, 15));
            user.choose(form, "cboSesso", 1);
            user.type(form, "txtComune", "Firenze");
            user.click(form, "cmdElabora");
            EXPECT_EQ(user.shown(form, "txtCodiceFiscale"), "BNCGLI85D55D612F");
            take(form, "codice-fiscale");
            user.click(form, "cmdExit");
        });
        user.click("frmClienti", "cmdCalcolaCF");
        user.click("frmClienti", "Toolbar1_4");
        user.click("frmClienti", "Toolbar1_6");
    });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    user.expect_none_left();
}

void Guide::tools() {
    const std::string form = "frmGestioneDatabase";
    user.click("MDIForm1", "Label2_3");
    take(form, "database");
    turn_to(form, 1);
    user.click(form, "CheckBoxBackup");
    user.click(form, "OptionDestinazioneDefault");
    take(form, "backup");
    user.expect_box("Impostazioni di backup salvate.");
    user.click(form, "cmdSaveBackupSettings");
    user.expect_none_left();
    turn_to(form, 3);
    user.click(form, "CheckBoxImportaEsporta");
    user.type(form, "txtOrigine", shown_folder + std::string("/tarvello.mdb"));
    user.type(form, "txtDest", "/media/elena/CHIAVETTA/tarvello.mdb");
    take(form, "importa-esporta");
    user.click(form, "cmdClose");
    finish(); // makes the backup

    expect_modal("DialogAggiornamento", [] {}); // the update page has never been looked at
    start_with_splash();
    user.window("MDIForm1")->resize(1100, 860);
    user.click("MDIForm1", "Label2_3");
    turn_to(form, 2);
    user.click(form, "CheckBoxRipristinaBackup");
    user.click_row(form, "ListView1", 2); // after the folder above and the templates
    EXPECT_EQ(user.shown(form, "txtSelectedFile"), program_folder() + "/tarvello.bak");
    take(form, "ripristino");
    expect_modal("frmRipristinaBackup", [this] {
        user.type("frmRipristinaBackup", "Text1", "ripristinato.mdb");
        take("frmRipristinaBackup", "nome-ripristino");
        user.click("frmRipristinaBackup", "Command1");
    });
    user.expect_box("Si conferma l'operazione di ripristino?", Answer::yes);
    user.expect_box("Ripristino file di backup completato.\nOrigine Dati:      " + program_folder() +
                    "/tarvello.bak\nDestinazione:    " + program_folder() + "/ripristinato.mdb");
    user.click(form, "Command5");
    user.expect_none_left();
    finish();
}

TEST_F(Guide, Pictures) {
    ASSERT_FALSE(qEnvironmentVariable("TARVELLO_SHOTS").isEmpty()) << "make_pictures.sh says where they go";
    first_start();
    letterhead();
    tax_preferences();
    first_customer();
    first_invoice();
    more_customers_and_invoices();
    find_again();
    print();
    word_document();
    told_once();
    electronic_invoice();
    electronic_list();
    new_year();
    fiscal_code();
    tools();
}

} // namespace
} // namespace tarvello::testing
