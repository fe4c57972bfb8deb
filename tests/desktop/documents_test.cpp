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

/// The letterhead, the documents and the preview in their real windows, with the real word processor.
class Documents : public DesktopTest {
protected:
    const std::string form = "frmIntestazioneFatture";

    Documents() {
        start();
        program().NomeIntestatario = "Studio Bianchi";
    }
    ~Documents() override { user.expect_none_left(); }

    std::string in_program(const std::string& name) const { return program_folder() + "/" + name; }
    void open_letterhead() {
        program().run([&] { program().form<frmIntestazioneFatture>().show(); });
        user.settle();
    }
    void turn_to(int page) {
        user.widget<QTabWidget>(form, "SSTab1")->setCurrentIndex(page);
        user.settle();
    }
    void save_letterhead() {
        user.expect_box("Dati Intestazione Salvati correttamente.");
        user.click(form, "Command1_0");
        user.expect_none_left();
    }
    void fill_letterhead() {
        user.type(form, "Text1_1", "Via Roma 1 - 00100 Roma");
        user.type(form, "Text1_3", "BNCMRA80A01H501U");
        user.type(form, "Text1_2", "06 1234567");
        user.type(form, "txtDescrizione", "Ingegneria civile");
        user.type(form, "txtBanca_0", "Banca di Roma");
    }
};

TEST_F(Documents, TheLetterheadIsSavedAndShownAgain) {
    open_letterhead();
    EXPECT_FALSE(user.widget(form, "Command1_0")->isEnabled());
    EXPECT_EQ(user.shown(form, "Text1_0"), "Studio Bianchi");
    fill_letterhead();
    EXPECT_TRUE(user.widget(form, "Command1_0")->isEnabled()) << "a key has been pressed";
    for (const char* button : {"Command2", "Command3"}) {
        EXPECT_GE(user.widget(form, button)->width(), user.widget(form, button)->sizeHint().width())
            << button << " shows all of its words";
    }
    user.take_picture(form, "documents-letterhead");
    save_letterhead();
    user.click(form, "Command1_1");
    EXPECT_FALSE(user.is_shown(form));
    open_letterhead();
    EXPECT_EQ(user.shown(form, "Text1_1"), "Via Roma 1 - 00100 Roma");
    EXPECT_EQ(user.shown(form, "Text1_2"), "06 1234567");
    EXPECT_EQ(user.shown(form, "txtBanca_0"), "Banca di Roma");

    // Changes are not lost without a question, and the answer Yes keeps the window.
    user.type(form, "txtBanca_1", "03002");
    user.expect_box("Le impostazioni sono state modificate.Salvare le modifiche?", Answer::yes);
    user.expect_box("Dati Intestazione Salvati correttamente.");
    user.close_window(form);
    user.expect_none_left();
    EXPECT_TRUE(user.is_shown(form));
    user.close_window(form);
    EXPECT_FALSE(user.is_shown(form));
}

TEST_F(Documents, WhatIsWrongWithTheLetterheadComesIntoView) {
    open_letterhead();
    user.type(form, "Text1_2", "06 1234567");
    turn_to(2);
    user.expect_box("Inserire indirizzo della Ditta");
    user.click(form, "Command1_0");
    EXPECT_EQ(user.widget<QTabWidget>(form, "SSTab1")->currentIndex(), 0);
    EXPECT_EQ(user.focus(), "Text1_1");
    user.type("Via Roma 1");
    EXPECT_EQ(user.shown(form, "Text1_1"), "Via Roma 1");
    EXPECT_EQ(program().form<frmIntestazioneFatture>().SSTab1.tab(), 0);
    user.expect_box("Le impostazioni sono state modificate.Salvare le modifiche?", Answer::no);
    user.close_window(form);
}

TEST_F(Documents, TheLogoIsChosenFittedAndRemoved) {
    const std::string file = in_program("logo.jpg");
    QImage logo(400, 100, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(to_qt(file)));
    open_letterhead();
    turn_to(1);
    EXPECT_FALSE(user.widget(form, "Command8")->isEnabled());
    user.expect_file_dialog(file);
    user.click(form, "Command7");
    user.expect_none_left();
    const auto red_at = [&](double x, double y) {
        const QImage area = user.widget<QLabel>(form, "PicDest")->pixmap().toImage();
        const QColor dot = area.pixelColor(int(area.width() * x), int(area.height() * y));
        return dot.alpha() > 200 && dot.red() > 200;
    };
    EXPECT_TRUE(red_at(0.02, 0.02)) << "at its own size, from the corner";
    EXPECT_FALSE(red_at(0.5, 0.9));
    user.click(form, "CheckAdattaLogo");
    EXPECT_FALSE(red_at(0.5, 0.1)) << "a wide logo leaves room above";
    EXPECT_TRUE(red_at(0.02, 0.5));
    EXPECT_TRUE(red_at(0.98, 0.5));
    const QImage printed = user.widget<QLabel>(form, "PicInStampa")->pixmap().toImage();
    for (const double y : {0.02, 0.98}) {
        EXPECT_GT(printed.pixelColor(printed.width() / 2, int(printed.height() * y)).alpha(), 200)
            << "the paper shows it so";
    }
    user.take_picture(form, "documents-logo");
    user.click(form, "Command8");
    EXPECT_FALSE(red_at(0.5, 0.5));
    EXPECT_FALSE(user.widget(form, "PicInStampa")->isVisible());

    std::ofstream(in_program("testo.jpg")) << "nessuna immagine";
    user.expect_file_dialog(in_program("testo.jpg"));
    user.expect_box("Il file " + in_program("testo.jpg") + " non è un'immagine valida.");
    user.click(form, "Command7");
}

TEST_F(Documents, LayoutAndTemplateAreChosen) {
    open_letterhead();
    turn_to(1);
    user.widget(form, "ListModelliReport")->setFocus(Qt::TabFocusReason);
    user.press(Qt::Key_Down);
    EXPECT_EQ(program().session().txtModelloReport.text(), "1");
    EXPECT_TRUE(user.widget(form, "Command6")->isEnabled()) << "by the keyboard, from the first row on";
    user.click_row(form, "ListModelliReport", 1);
    EXPECT_EQ(program().session().txtModelloReport.text(), "2");
    user.click(form, "Command6");
    EXPECT_FALSE(user.widget(form, "Command6")->isEnabled());

    turn_to(2);
    auto* list = user.widget<QListWidget>(form, "File1");
    EXPECT_EQ(list->count(), 3) << "the shipped .rtf templates";
    user.click(form, "Option2");
    EXPECT_EQ(list->count(), 3) << "the shipped .doc templates";
    user.click_row(form, "File1", 1);
    EXPECT_EQ(user.shown(form, "txtModello"), "Standard.doc");
    user.expect_box("Impostazioni modello fattura per stampa su file salvate correttamente.");
    user.click(form, "Command5");
    user.expect_none_left();
    EXPECT_EQ(user.shown(form, "txtModelloAttuale"), in_program("modelli/Standard.doc"));
    user.take_picture(form, "documents-templates");

    user.expect_modal("frmInfoModelli", [this] {
        user.take_picture("frmInfoModelli", "documents-info");
        user.click("frmInfoModelli", "Label3");
    });
    user.click(form, "cmdInfoModelli");
}

/// With a letterhead and an invoice, from the invoice window.
class Printing : public Documents {
protected:
    Printing() {
        auto& connection = program().database().dbConnection;
        connection.execute(
            "INSERT INTO DatiIntestazione "
            "(Nome_Azienda,Indirizzo,Telefono,Fax,Codice_Fiscale,Partita_IVA,email,"
            "Descrizione_Attività,Banca,ABI,CAB,CC) VALUES ('Studio Tecnico Ing. Mario Bianchi','Via "
            "Nazionale 120 - "
            "00184 Roma','06 1234567','06 1234568','BNCMRA60A01H501U','01234567890','studio@bianchi.it',"
            "'Ingegneria civile e consulenza strutturale','','','','')");
        connection.execute(
            "INSERT INTO Fatture "
            "(Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Codice_Fiscale,Partita_IVA,Nome,"
            "Cognome_Ragione_Sociale,Indirizzo,CAP,Provincia,Città,Prestazione1,Importo1,Prestazione2,"
            "Importo2,"
            "Prestazione3,Importo3,Prestazione4,Importo4,Prestazione5,Importo5,Rivalsa,Percentuale_Rivalsa,"
            "Importo_Rivalsa,Imponibile,Aliquota_IVA,Imposta_IVA,Spese,Importo_Spese,Articolo_Esenzione,"
            "Totale_Fattura,Ritenuta,Percentuale_Ritenuta,Ritenuta_Su,Importo_Ritenuta,Importo_Netto,"
            "Check_Pagamento,Pagamento) VALUES ('7','05/03/2006','2006','1','09876543210','09876543210','',"
            "'Costruzioni Rossi & Figli S.r.l.','Corso Italia 12','20122','MI','Milano',"
            "'Progetto esecutivo delle strutture','€ 12.000,00','Direzione dei lavori, febbraio 2006','€ "
            "1.234,56',"
            "'Sopralluoghi','€ 300,00','','','','','Sì','2','€ 270,69','€ 13.805,25','20','€ 2.761,05','Sì',"
            "'€ 14,62','art. 15 D.P.R. 633/72','€ 16.580,92','Sì','20','100','€ 2.706,91','€ 13.874,01','Sì',"
            "'Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123456')");
        program().session().txtProfessione.set_text("Contributo integrativo");
        program().session().txtModelloReport.set_text("1");
        user.choose_menu("MDIForm1", "mnuFatture");
    }

    void use_template(const std::string& name) {
        std::ofstream(in_program("modelli/print.conf")) << in_program("modelli/" + name) << "\r\n";
    }
    /// What another program reads in the document.
    std::string text_of(const std::string& path) {
        const std::string folder = program_folder() + "/letto";
        QProcess reader;
        reader.start("soffice",
                     {to_qt("-env:UserInstallation=file://" + program_folder() + "/lettore"), "--headless",
                      "--convert-to", "txt:Text", "--outdir", to_qt(folder), to_qt(path)});
        EXPECT_TRUE(reader.waitForFinished());
        std::ifstream text(folder + "/" + std::filesystem::path(path).stem().string() + ".txt");
        return {std::istreambuf_iterator<char>(text), {}};
    }
};

TEST_F(Printing, ADocumentIsMadeInEitherFormat) {
    for (const std::string name : {"Moderno.rtf", "Standard.doc"}) {
        use_template(name);
        const std::string path = in_program("fattura" + name.substr(name.rfind('.')));
        user.expect_file_dialog(path);
        user.expect_box(
            "File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" + path);
        user.click("frmTarvello", "Toolbar1_3");
        user.expect_none_left();
        const std::string text = text_of(path);
        for (const char* value : {"Studio Tecnico Ing. Mario Bianchi",
                                  "Ingegneria civile e consulenza strutturale",
                                  "Via Nazionale 120 - 00184 Roma",
                                  "Tel. 06 1234567",
                                  "Fax. 06 1234568",
                                  "e-mail: studio@bianchi.it",
                                  "C.F. BNCMRA60A01H501U",
                                  "P.I. 01234567890",
                                  "7/2006",
                                  "5/3/2006",
                                  "Costruzioni Rossi & Figli S.r.l.",
                                  "Corso Italia 12",
                                  "20122\tMilano MI",
                                  "C.F. 09876543210",
                                  "P.I. 09876543210",
                                  "Progetto esecutivo delle strutture",
                                  "€ 12.000,00",
                                  "Direzione dei lavori, febbraio 2006",
                                  "€ 1.234,56",
                                  "Sopralluoghi",
                                  "€ 300,00",
                                  "Contributo integrativo",
                                  "2%",
                                  "€ 270,69",
                                  "€ 13.805,25",
                                  "20%",
                                  "€ 2.761,05",
                                  "Spese Anticipate esenti IVA art. 15 D.P.R. 633/72",
                                  "€ 14,62",
                                  "€ 16.580,92",
                                  "Dedotta R.A.",
                                  "20% su 100% Imponibile",
                                  "€ 2.706,91",
                                  "€ 13.874,01",
                                  "Banca d'appoggio:",
                                  "Banca di Roma",
                                  "C/C: 000123456"}) {
            EXPECT_NE(text.find(value), std::string::npos) << name << ": " << value << "\n" << text;
        }
        EXPECT_FALSE(user.is_shown("frmAttesa"));
    }
}

TEST_F(Printing, WithoutATemplateTheLetterheadComes) {
    std::filesystem::remove(in_program("modelli/print.conf"));
    for (const bool open_before : {false, true}) {
        if (open_before) open_letterhead();
        user.expect_file_dialog(in_program("fattura.doc"));
        user.expect_box(
            "Il modello per la stampa delle fatture non è impostato correttamente.\nSelezionarne uno nella "
            "finesta 'Intestazione' e ripetere la stampa.");
        user.expect_modal(form, [&] { user.click(form, "Command1_1"); });
        user.click("frmTarvello", "Toolbar1_3");
        user.expect_none_left();
        EXPECT_FALSE(user.is_shown(form));
    }
}

TEST_F(Printing, ThePreviewNamesTheTextsThatAreCut) {
    const std::string long_text(250, 'm');
    program().database().dbConnection.execute("UPDATE Fatture SET Prestazione2='" + long_text +
                                              "',Prestazione3='" + long_text + "' WHERE ID>0");
    user.expect_modal("DataReport1", [&] {
        EXPECT_EQ(user.shown("DataReport1", "ui_cut"),
                  "Troppo lungo per il suo spazio, stampato solo in parte: prestazione 2, prestazione 3. "
                  "Accorciare il testo.");
        user.take_picture("DataReport1", "documents-preview-cut");
    });
    user.click("frmTarvello", "Toolbar1_4");
}

TEST_F(Printing, ThePreviewEnlargesAndMakesAPdf) {
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
        ASSERT_TRUE(reader.waitForFinished());
        const QString text = QString::fromUtf8(reader.readAllStandardOutput());
        EXPECT_TRUE(text.contains("Totale Dovuto")) << qt::from_qt(text);
        EXPECT_TRUE(text.contains(QStringLiteral("€ 13.874,01")));
    }
}

} // namespace
} // namespace tarvello::testing
