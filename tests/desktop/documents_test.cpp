#include "desktop/desktop_test.h"
#include "documents/letterhead_form.h"
#include "platform/qt/qt_text.h"

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QPrinterInfo>
#include <QProcess>
#include <QTabWidget>

#include <filesystem>
#include <fstream>

namespace tarvello::testing {
namespace {

using qt::to_qt;

const std::string letterhead = "frmIntestazioneFatture";

/// The letterhead, the documents and the preview in their real windows, with the real word processor.
class Documents : public DesktopTest {
protected:
    Documents() {
        start();
        program().NomeIntestatario = "Studio Bianchi";
    }
    ~Documents() override { user.expect_none_left(); }

    std::string in_program(const std::string& name) const { return program_folder() + "/" + name; }
    void open_letterhead(int page = 0) {
        program().run([&] { program().form<frmIntestazioneFatture>().show(); });
        turn_to(page);
    }
    void turn_to(int page) {
        user.widget<QTabWidget>(letterhead, "SSTab1")->setCurrentIndex(page);
        user.settle();
    }
};

TEST_F(Documents, TheLetterheadIsCheckedSavedAndShownAgain) {
    open_letterhead();
    EXPECT_EQ(user.shown(letterhead, "Text1_0"), "Studio Bianchi");
    user.type(letterhead, "Text1_2", "06 1234567");
    turn_to(2);
    user.expect_box("Inserire indirizzo della Ditta");
    user.click(letterhead, "Command1_0");
    EXPECT_EQ(user.widget<QTabWidget>(letterhead, "SSTab1")->currentIndex(), 0)
        << "what is wrong comes into view";
    EXPECT_EQ(user.focus(), "Text1_1");
    user.type("Via Roma 1");
    user.type(letterhead, "Text1_3", "BNCMRA80A01H501U");
    user.type(letterhead, "txtDescrizione", "Ingegneria civile");
    user.type(letterhead, "txtBanca_0", "Banca di Roma");
    for (const char* button : {"Command2", "Command3"}) {
        EXPECT_GE(user.widget(letterhead, button)->width(),
                  user.widget(letterhead, button)->sizeHint().width())
            << button << " shows all of its words";
    }
    user.take_picture(letterhead, "documents-letterhead");
    user.expect_box("Le impostazioni sono state modificate.Salvare le modifiche?", Answer::yes);
    user.expect_box("Dati Intestazione Salvati correttamente.");
    user.close_window(letterhead);
    user.expect_none_left();
    EXPECT_TRUE(user.is_shown(letterhead));
    user.close_window(letterhead);
    EXPECT_FALSE(user.is_shown(letterhead));
    open_letterhead();
    EXPECT_EQ(user.shown(letterhead, "Text1_1") + user.shown(letterhead, "txtBanca_0"),
              "Via Roma 1Banca di Roma");
}

TEST_F(Documents, TheLogoIsChosenFittedAndRemoved) {
    const std::string file = in_program("logo.jpg");
    QImage logo(400, 100, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(to_qt(file)));
    open_letterhead(1);
    user.expect_file_dialog(file);
    user.click(letterhead, "Command7");
    user.expect_none_left();
    const auto red_at = [&](double x, double y) {
        const QImage area = user.widget<QLabel>(letterhead, "PicDest")->pixmap().toImage();
        const QColor dot = area.pixelColor(int(area.width() * x), int(area.height() * y));
        return dot.alpha() > 200 && dot.red() > 200;
    };
    EXPECT_TRUE(red_at(0.02, 0.02)) << "at its own size, from the corner";
    EXPECT_FALSE(red_at(0.5, 0.9));
    user.click(letterhead, "CheckAdattaLogo");
    EXPECT_FALSE(red_at(0.5, 0.1)) << "a wide logo leaves room above";
    EXPECT_TRUE(red_at(0.02, 0.5));
    EXPECT_TRUE(red_at(0.98, 0.5));
    const QImage printed = user.widget<QLabel>(letterhead, "PicInStampa")->pixmap().toImage();
    for (const double y : {0.02, 0.98}) {
        EXPECT_GT(printed.pixelColor(printed.width() / 2, int(printed.height() * y)).alpha(), 200)
            << "the paper shows it so";
    }
    user.take_picture(letterhead, "documents-logo");
    user.click(letterhead, "Command8");
    EXPECT_FALSE(red_at(0.5, 0.5));
    EXPECT_FALSE(user.widget(letterhead, "PicInStampa")->isVisible());

    std::ofstream(in_program("testo.jpg")) << "nessuna immagine";
    user.expect_file_dialog(in_program("testo.jpg"));
    user.expect_box("Il file " + in_program("testo.jpg") + " non è un'immagine valida.");
    user.click(letterhead, "Command7");
}

TEST_F(Documents, LayoutAndTemplateAreChosen) {
    open_letterhead(1);
    user.widget(letterhead, "ListModelliReport")->setFocus(Qt::TabFocusReason);
    user.press(Qt::Key_Down);
    EXPECT_EQ(program().session().txtModelloReport.text(), "1");
    EXPECT_TRUE(user.widget(letterhead, "Command6")->isEnabled()) << "by the keyboard, from the first row on";
    user.click_row(letterhead, "ListModelliReport", 1);
    EXPECT_EQ(program().session().txtModelloReport.text(), "2");

    turn_to(2);
    auto* list = user.widget<QListWidget>(letterhead, "File1");
    EXPECT_EQ(list->count(), 3) << "the shipped .rtf templates";
    user.click(letterhead, "Option2");
    EXPECT_EQ(list->count(), 3) << "the shipped .doc templates";
    user.click_row(letterhead, "File1", 1);
    EXPECT_EQ(user.shown(letterhead, "txtModello"), "Standard.doc");
    user.take_picture(letterhead, "documents-templates");

    user.expect_modal("frmInfoModelli", [this] {
        user.take_picture("frmInfoModelli", "documents-info");
        user.click("frmInfoModelli", "Label3");
    });
    user.click(letterhead, "cmdInfoModelli");
}

/// With a letterhead and an invoice, from the invoice window.
class Printing : public Documents {
protected:
    Printing() {
        auto& connection = program().database().dbConnection;
        connection.execute("INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Telefono,Fax,Codice_Fiscale,"
                           "Partita_IVA,email,Descrizione_Attività) VALUES "
                           "('Studio Bianchi','Via Nazionale 120','06 1','06 2','','01234567890','','')");
        const std::string long_text(250, 'm');
        connection.execute(
            "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Codice_Fiscale,Partita_IVA,Nome,"
            "Cognome_Ragione_Sociale,Indirizzo,CAP,Provincia,Città,Prestazione1,Importo1,Prestazione2,"
            "Importo2,"
            "Prestazione3,Importo3,Prestazione4,Importo4,Prestazione5,Importo5,Percentuale_Rivalsa,"
            "Importo_Rivalsa,Imponibile,Aliquota_IVA,Imposta_IVA,Articolo_Esenzione,Totale_Fattura,"
            "Importo_Netto,Pagamento) VALUES ('7','05/03/2006','2006','','','','Rossi & Figli','','','','',"
            "'Progetto','€ 12.000,00','" +
            long_text + "','','" + long_text + "','','','','','','','','','20','','','','€ 13.874,01','')");
        user.choose_menu("MDIForm1", "mnuFatture");
    }
};

TEST_F(Printing, ADocumentIsMadeAndWithoutATemplateTheLetterheadComes) {
    const std::string path = in_program("fattura.rtf");
    std::ofstream(in_program("modelli/print.conf")) << in_program("modelli/Moderno.rtf") << "\r\n";
    user.expect_file_dialog(path);
    user.expect_box("File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" +
                    path);
    user.click("frmTarvello", "Toolbar1_3");
    user.expect_none_left();
    EXPECT_FALSE(user.is_shown("frmAttesa"));
    std::ifstream document(path);
    EXPECT_NE(std::string(std::istreambuf_iterator<char>(document), {}).find("13.874,01"), std::string::npos);

    std::filesystem::remove(in_program("modelli/print.conf"));
    for (const bool open_before : {false, true}) {
        if (open_before) open_letterhead();
        user.expect_file_dialog(in_program("altra.doc"));
        user.expect_box(
            "Il modello per la stampa delle fatture non è impostato correttamente.\nSelezionarne uno nella "
            "finesta 'Intestazione' e ripetere la stampa.");
        user.expect_modal(letterhead, [&] {
            EXPECT_TRUE(user.window(letterhead)->window()->isModal());
            user.click(letterhead, "Command1_1");
        });
        user.click("frmTarvello", "Toolbar1_3");
        user.expect_none_left();
        EXPECT_FALSE(user.is_shown(letterhead));
    }
}

TEST_F(Printing, ThePreviewEnlargesNamesWhatIsCutAndMakesAPdf) {
    for (const std::string layout : {"1", "2"}) {
        program().session().txtModelloReport.set_text(layout);
        const std::string report = "DataReport" + layout;
        const std::string path = in_program("fattura" + layout);
        const auto press = [&](const char* action) {
            auto* found = user.window(report)->findChild<QAction*>(action);
            ASSERT_TRUE(found) << action;
            found->trigger();
            user.settle();
        };
        user.expect_modal(report, [&] {
            EXPECT_EQ(user.window(report)->windowTitle(), "Anteprima di stampa");
            EXPECT_EQ(user.shown(report, "ui_cut"), "Troppo lungo per il suo spazio, stampato solo in parte: "
                                                    "prestazione 2, prestazione 3. Accorciare il testo.");
            user.take_picture(report, "documents-preview" + layout);
            const int width = user.widget(report, "ui_page")->width();
            press("ui_larger");
            EXPECT_GT(user.widget(report, "ui_page")->width(), width);
            press("ui_whole_page");
            EXPECT_LE(user.widget(report, "ui_page")->height(), user.window(report)->height());
            user.expect_file_dialog(path);
            user.expect_box("La fattura è stata salvata in:\n" + path + ".pdf");
            press("ui_pdf");
            if (!QPrinterInfo::availablePrinterNames().isEmpty()) return;
            user.expect_box(
                "Nessuna stampante è installata su questo computer.\nLa fattura si può salvare in PDF.");
            press("ui_print");
        });
        user.click("frmTarvello", "Toolbar1_4");
        user.expect_none_left();
        QProcess reader;
        reader.start("pdftotext", {"-layout", to_qt(path + ".pdf"), "-"});
        ASSERT_TRUE(reader.waitForFinished(longest_wait));
        EXPECT_TRUE(
            QString::fromUtf8(reader.readAllStandardOutput()).contains(QStringLiteral("€ 13.874,01")));
    }
}

} // namespace
} // namespace tarvello::testing
