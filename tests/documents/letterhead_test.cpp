#include "documents/letterhead_form.h"

#include "documents/template_info_form.h"
#include "fiscal_code/calculator_form.h"
#include "shell/help_form.h"
#include "support/program_test.h"

#include <filesystem>

namespace tarvello {
namespace {

struct Letterhead : testing::ProgramTest {
    std::string app = fake.program_directory;

    Letterhead() { program->NomeIntestatario = "Studio Bianchi"; }
    frmIntestazioneFatture& form() { return program->form<frmIntestazioneFatture>(); }
    MDIForm1& main() { return program->form<MDIForm1>(); }

    void fill() {
        form().Text1[1].type("Via Roma 1");
        form().Text1[2].type("06 123");
        form().Text1[3].type("BNCMRA80A01H501U");
        form().Text1[4].type("studio@bianchi.it");
        form().Text1[6].type("01234567890");
        form().Text1[7].type("06 124");
        form().txtDescrizione.type("Consulenza");
        form().txtBanca[0].type("Banca di Roma");
        form().txtBanca[1].type("03002");
        form().txtBanca[2].type("03200");
        form().txtBanca[3].type("000123");
    }
    std::vector<std::map<std::string, std::string>> rows() { return sql("SELECT * FROM DatiIntestazione"); }
};

TEST_F(Letterhead, SavesOneRowAndShowsItAgain) {
    EXPECT_FALSE(form().Command1[0].enabled());
    fill();
    for (int save = 0; save < 2; ++save) {
        form().txtBanca[3].paste("4"); // without a key
        EXPECT_TRUE(form().Command1[0].enabled());
        boxes().expect({"Dati Intestazione Salvati correttamente.", "Tarvello 4", BoxIcon::information});
        form().Command1[0].click();
        EXPECT_FALSE(form().Command1[0].enabled());
    }
    ASSERT_EQ(rows().size(), 1u);
    const std::map<std::string, std::string> expected =
        testing::as_row("Nome_Azienda=Studio Bianchi; Indirizzo=Via Roma 1; Telefono=06 123; Fax=06 124; "
                        "Codice_Fiscale=BNCMRA80A01H501U; Partita_IVA=01234567890; "
                        "email=studio@bianchi.it; Descrizione_Attività=Consulenza; Banca=Banca di Roma; "
                        "ABI=03002; CAB=03200; CC=00012344");
    EXPECT_EQ(rows()[0], expected);
    EXPECT_TRUE(main().session.mnuChiudiDatabase.enabled()) << "the connection has been renewed";

    form().Command1[1].click();
    program->NomeIntestatario = "Studio Verdi";
    EXPECT_EQ(form().Text1[0].text(), "Studio Verdi") << "the session's name, not the column";
    EXPECT_EQ(form().Text1[3].text(), "BNCMRA80A01H501U");
    EXPECT_EQ(form().Text1[7].text(), "06 124");
    EXPECT_EQ(form().txtDescrizione.text(), "Consulenza");
    EXPECT_EQ(form().txtBanca[3].text(), "00012344");
}

TEST_F(Letterhead, ChecksInOrder) {
    program->NomeIntestatario = "";
    form().txtDescrizione.type("x");
    boxes().expect({"Inserire nome della Ditta", "Tarvello 4", BoxIcon::exclamation});
    form().Command1[0].click();
    form().Text1[0].set_text("Studio");
    boxes().expect({"Inserire indirizzo della Ditta", "Tarvello 4", BoxIcon::exclamation});
    form().Command1[0].click();
    EXPECT_EQ(form().focus(), &form().Text1[1]);
    form().Text1[1].type("Via Roma 1");
    boxes().expect({"Inserire Codice Fiscale o Partita IVA", "Tarvello 4", BoxIcon::exclamation});
    form().Command1[0].click();
    EXPECT_EQ(form().focus(), &form().Text1[3]);
    form().Text1[6].type("01234567890");
    boxes().expect("Dati Intestazione Salvati correttamente.");
    form().Command1[0].click();
}

TEST_F(Letterhead, AnApostropheEmptiesTheTable) {
    fill();
    boxes().expect("Dati Intestazione Salvati correttamente.");
    form().Command1[0].click();
    form().txtDescrizione.type("L'arte");
    expect_process_end([&] { form().Command1[0].click(); });
    program->database().close_results();
    EXPECT_TRUE(rows().empty());
    // What was in it and what was typed come back.
    program->loaded<frmIntestazioneFatture>()->Command1[0].set_enabled(false);
    form().unload();
    boxes().expect_any(Answer::yes);
    form().show();
    EXPECT_EQ(form().txtDescrizione.text(), "ConsulenzaL'arte");
    EXPECT_EQ(form().Text1[1].text(), "Via Roma 1");
    form().txtDescrizione.set_text("Arte");
    boxes().expect("Dati Intestazione Salvati correttamente.");
    form().Command1[0].click();
    form().unload();
    form().show();
}

TEST_F(Letterhead, AsksBeforeChangesAreLost) {
    fill();
    const MessageBox question{"Le impostazioni sono state modificate.Salvare le modifiche?", "Tarvello 4",
                              BoxIcon::information, BoxButtons::yes_no, 2};
    boxes().expect(question, Answer::yes);
    boxes().expect("Dati Intestazione Salvati correttamente.");
    form().Command1[1].click();
    EXPECT_TRUE(program->loaded<frmIntestazioneFatture>()) << "stays open after the save";
    form().txtDescrizione.type("x");
    boxes().expect(question, Answer::cancel);
    form().Command1[1].click();
    EXPECT_TRUE(boxes().last().may_go_back && form().Command1[0].enabled()) << "as Escape does";
    boxes().expect(question, Answer::no);
    form().Command1[1].click();
    EXPECT_FALSE(program->loaded<frmIntestazioneFatture>());
    EXPECT_EQ(rows().at(0).at("Descrizione_Attività"), "Consulenza");
    form().Command1[1].click();
    EXPECT_FALSE(program->loaded<frmIntestazioneFatture>()) << "nothing changed, nothing asked";
}

TEST_F(Letterhead, TheLogoIsChosenFittedAndRemoved) {
    const std::string logo = app + "/logo.jpg";
    fake.pictures.sizes[logo] = {4000, 1000};
    fake.settings.set("CheckAdattaLogo", "value", "0");
    EXPECT_FALSE(form().logo.CheckAdattaLogo.enabled());
    EXPECT_FALSE(form().logo.Command8.enabled());

    fake.dialogs.answer_next(logo);
    form().logo.Command7.click();
    EXPECT_EQ(fake.dialogs.last().title, "Seleziona Logo");
    EXPECT_EQ(fake.dialogs.last().filters.at(0).pattern, "*.JPG");
    EXPECT_EQ(main().session.txtPercorsoLogo.text(), logo);
    EXPECT_EQ(form().logo.PicDest.picture(), logo);
    EXPECT_FALSE(form().logo.PicDest.painted()) << "at its own size";
    EXPECT_FALSE(form().logo.PicInStampa.visible() || form().logo.LabelInStampa.visible());

    form().logo.CheckAdattaLogo.click();
    EXPECT_EQ(fake.settings.get("CheckAdattaLogo", "value"), "1") << "stored without a save";
    EXPECT_TRUE(form().logo.PicInStampa.visible() && form().logo.PicInStampa.painted()) << "as it is printed";
    EXPECT_EQ(form().logo.PicDest.painted(), (PictureBox{0, 682.5, 2640, 660}));
    EXPECT_TRUE(form().logo.PicInStampa.visible() && form().logo.LabelInStampa.visible());
    EXPECT_EQ(form().logo.PicInStampa.painted()->width, 1320) << "the paper shows it in the whole box";

    form().Command1[1].click(); // and once more, from what is stored
    EXPECT_TRUE(form().logo.CheckAdattaLogo.checked());
    EXPECT_EQ(form().logo.PicDest.painted(), (PictureBox{0, 682.5, 2640, 660}));

    form().logo.Command8.click();
    EXPECT_EQ(main().session.txtPercorsoLogo.text(), "");
    EXPECT_EQ(form().logo.PicDest.picture(), "");
    EXPECT_FALSE(form().logo.PicInStampa.visible());
    EXPECT_FALSE(form().logo.CheckAdattaLogo.enabled());
    EXPECT_FALSE(form().logo.Command8.enabled());
}

TEST_F(Letterhead, FitsBySides) {
    const auto fitted = [&](PictureSize size) {
        form().logo.PicOrigine.set_picture("x");
        form().logo.PicOrigine.set_size(size.width, size.height);
        RidimensionaImmagine(form().logo.PicOrigine, form().logo.PicDest);
        return form().logo.PicDest.painted().value_or(PictureBox{});
    };
    form().logo.PicDest.set_size(1000, 500);
    EXPECT_EQ(fitted({100, 100}), (PictureBox{250, 0, 500, 500}));
    EXPECT_EQ(fitted({400, 100}), (PictureBox{0, 125, 1000, 250}));
    EXPECT_EQ(fitted({4000, 2000}), (PictureBox{0, 0, 1000, 500}));
    form().logo.PicOrigine.clear();
    form().logo.PicDest.clear();
    RidimensionaImmagine(form().logo.PicOrigine, form().logo.PicDest);
    EXPECT_EQ(form().logo.PicDest.picture(), "");
}

TEST_F(Letterhead, ALogoThatIsNoPicture) {
    fake.dialogs.answer_next(app + "/testo.jpg");
    boxes().expect({"Immagine non valida.", "Tarvello 4", BoxIcon::exclamation});
    form().logo.Command7.click();
    form().Command1[1].click();
    EXPECT_EQ(form().logo.PicDest.picture(), "") << "a bad path leaves the boxes blank";
    EXPECT_TRUE(form().logo.Command8.enabled());
    fake.dialogs.answer_next(std::nullopt);
    form().logo.Command7.click();
    EXPECT_EQ(main().session.txtPercorsoLogo.text(), app + "/testo.jpg");
}

TEST_F(Letterhead, TheLayoutIsStoredByItsOwnButton) {
    EXPECT_EQ(form().logo.ListModelliReport.items(),
              (std::vector<std::string>{"Arial (modello-1)", "Thaoma (modello-2)"}));
    EXPECT_EQ(form().logo.ListModelliReport.list_index(), -1);
    form().logo.ListModelliReport.choose(1);
    EXPECT_EQ(main().session.txtModelloReport.text(), "2");
    EXPECT_FALSE(fake.settings.get("txtModelloReport"));
    form().logo.Command6.click();
    EXPECT_EQ(fake.settings.get("txtModelloReport"), "2");
    EXPECT_FALSE(form().logo.Command6.enabled());
}

struct Templates : Letterhead {
    std::string folder = app + "/modelli";

    Templates() {
        for (const char* name : {"blu.rtf", "Aria.RTF", "note.txt"})
            fake.files.write(folder + "/" + name, "%Anno%");
        fake.files.write(folder + "/Standard.doc", "modello");
    }
};

TEST_F(Templates, AreListedByFormatAndChosen) {
    EXPECT_TRUE(form().templates.Option1.selected());
    EXPECT_EQ(form().templates.File1.items(), (std::vector<std::string>{"Aria.RTF", "blu.rtf"}));
    form().templates.Option2.click();
    EXPECT_EQ(form().templates.File1.items(), std::vector<std::string>{"Standard.doc"});
    EXPECT_FALSE(form().templates.Command5.enabled());
    form().templates.File1.choose(0);
    EXPECT_EQ(form().templates.txtModello.text(), "Standard.doc");
    boxes().expect({"Impostazioni modello fattura per stampa su file salvate correttamente.", "Tarvello 4",
                    BoxIcon::information});
    form().templates.Command5.click();
    EXPECT_EQ(fake.files.read(folder + "/print.conf"), folder + "/Standard.doc\r\n");
    EXPECT_EQ(form().templates.txtModelloAttuale.text(), folder + "/Standard.doc");
    EXPECT_FALSE(form().templates.Command5.enabled());

    // Somebody has put a folder where the file belongs.
    std::filesystem::remove(folder + "/print.conf");
    std::filesystem::create_directory(folder + "/print.conf");
    form().templates.File1.choose(0);
    boxes().expect({"Impossibile salvare le impostazioni.", "Tarvello 4", BoxIcon::critical});
    form().templates.Command5.click();
    EXPECT_TRUE(form().templates.Command5.enabled());

    std::filesystem::remove_all(folder);
    boxes().expect({"La cartella \"" + folder + "\" non esiste.", "Tarvello 4", BoxIcon::exclamation});
    form().templates.Option1.click();
}

TEST_F(Templates, TheFormReadsTheFileOneFolderUp) {
    sql("INSERT INTO DatiIntestazione (Nome_Azienda) VALUES ('x')");
    const auto shown = [&](std::optional<std::string> above) {
        if (above) fake.files.write(app + "/print.conf", *above);
        form().Command1[1].click();
        return form().templates.txtModelloAttuale.text();
    };
    fake.files.write(folder + "/print.conf", folder + "/blu.rtf\r\n");
    EXPECT_EQ(shown(std::nullopt), "");
    EXPECT_EQ(shown("uno\r\ndue\r\n"), "due") << "the last line";
    EXPECT_EQ(shown("\r\nuno\r\n"), "") << "an empty line ends the reading";
    EXPECT_EQ(shown("uno\n\ndue"), "");
    EXPECT_EQ(shown(std::string("\xff\0\x01", 3)), std::string("\xff\0\x01", 3)) << "whatever bytes";
}

TEST_F(Templates, ThePreviewIsACopy) {
    boxes().expect({"Selezionare un modello dalla lista.", "Tarvello 4", BoxIcon::information});
    form().templates.cmdAnteprimaModelli.click();
    form().templates.File1.choose(1);
    form().templates.cmdAnteprimaModelli.click();
    EXPECT_EQ(fake.word_processor.log, (std::vector<std::string>{"start", "open " + folder + "/blu.rtf",
                                                                 "save " + app + "/temp/anteprima", "show"}));
    EXPECT_EQ(fake.word_processor.running, 0) << "let go of";

    fake.word_processor.installed = false;
    boxes().expect({"Il programma di scrittura non è installato.", "Tarvello 4", BoxIcon::exclamation});
    form().templates.cmdAnteprimaModelli.click();
    EXPECT_TRUE(form().templates.cmdAnteprimaModelli.enabled());
}

TEST_F(Templates, ANewOneStartsFromTheStandard) {
    boxes().expect(
        {"Per creare un nuovo modello modificare la fattura che verrà visualizzata e poi salvarlo col nome "
         "voluto nella cartella: " +
             folder + "\n\nN.B.  Non omettere nessuna delle voci presenti nella fattura!",
         "Tarvello 4", BoxIcon::information});
    form().templates.cmdNuovoModello.click();
    EXPECT_EQ(fake.files.read(app + "/temp/nuovo-modello"), "modello");
    EXPECT_EQ(fake.word_processor.log.back(), "show");

    std::filesystem::remove(folder + "/Standard.doc");
    boxes().expect_any();
    form().templates.cmdNuovoModello.click();
    EXPECT_EQ(boxes().last().icon, BoxIcon::exclamation);
    EXPECT_TRUE(form().templates.cmdNuovoModello.enabled());
    EXPECT_EQ(fake.word_processor.running, 0);
}

TEST_F(Templates, AreImported) {
    fake.files.write(app + "/mio.rtf", "nuovo");
    fake.dialogs.answer_next(app + "/mio.rtf");
    boxes().expect({"Importazione modello completata.", "Tarvello 4", BoxIcon::information});
    form().templates.ImportaModello.click();
    EXPECT_EQ(fake.dialogs.last().title, "Importa copia dei dati");
    EXPECT_EQ(fake.dialogs.last().filters.at(0).label, "Rich Text Format files (*.rtf)");
    EXPECT_EQ(fake.files.read(folder + "/mio.rtf"), "nuovo");
    EXPECT_EQ(fake.copy_dialog.titles.size(), 1u) << "the copy shows itself";
    EXPECT_EQ(form().templates.File1.items().size(), 2u) << "the list is not refreshed";

    form().templates.Option2.click();
    fake.dialogs.answer_next(app + "/manca.doc");
    boxes().expect({"Errore nella copia del file.", "Tarvello 4", BoxIcon::critical});
    form().templates.ImportaModello.click();
    EXPECT_EQ(fake.dialogs.last().filters.at(0).pattern, "*.doc");
    fake.dialogs.answer_next(std::nullopt);
    form().templates.ImportaModello.click();
}

TEST_F(Letterhead, OpensItsHelpers) {
    windows().expect_modal("frmRegister");
    form().Command3.click();
    EXPECT_TRUE(form().Command1[0].enabled());
    form().Command1[0].set_enabled(false);
    boxes().expect_any(); // there is no file of municipalities here
    windows().expect_modal("frmCalcolaCF", [&](Form& window) {
        auto& calculator = dynamic_cast<frmCalcolaCF&>(window);
        EXPECT_FALSE(calculator.cmdCopia.enabled()) << "nothing to copy yet";
        calculator.txtComune.set_text("Roma");
        calculator.cmdElabora.click();
        EXPECT_EQ(form().Text1[3].text(), "") << "the code stays in the calculator";
        calculator.cmdCopia.click();
        EXPECT_EQ(form().Text1[3].text(), calculator.txtCodiceFiscale.text());
        EXPECT_EQ(fake.desktop.clipboard, calculator.txtCodiceFiscale.text());
        EXPECT_NE(fake.desktop.clipboard, "");
        EXPECT_TRUE(form().Command1[0].enabled());
    });
    form().Command2.click();
    windows().expect_modal("frmInfoModelli",
                           [](Form& info) { dynamic_cast<frmInfoModelli&>(info).Label6.click(); });
    form().templates.cmdInfoModelli.click();
    windows().expect_modal("frmHelp", [](Form& help) {
        EXPECT_EQ(help.caption(), " Tarvello - Intestazione Fatture");
        EXPECT_NE(dynamic_cast<frmHelp&>(help).Text1.text().find("'Salva Dati'\n\n\nE' possibile"),
                  std::string::npos);
    });
    form().Command1[2].click();
}

} // namespace
} // namespace tarvello
