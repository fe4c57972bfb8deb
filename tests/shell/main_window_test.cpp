#include "shell/main_window.h"

#include "invoices/invoice_form.h"
#include "preferences/tax_preferences.h"
#include "program/maker_site.h"
#include "program/open_database.h"
#include "shell/session.h"
#include "support/program_test.h"

#include <fstream>

namespace tarvello::testing {
namespace {

struct MainWindow : ProgramTest {
    MDIForm1& main = program->form<MDIForm1>();

    std::string another_database() {
        const std::string path = fake.program_directory + "/altro.mdb";
        make_database(path);
        return path;
    }
};

TEST_F(MainWindow, TheFirstCommandHasTheKeyboardFirst) {
    main.focus_next();
    EXPECT_EQ(main.focus(), &main.Label2[side_command::customers]);
}

TEST_F(MainWindow, OpeningOverAnOpenDatabaseFailsAndLeavesTheConnection) {
    const std::string other = another_database();
    for (const Answer stay : {Answer::yes, Answer::no}) {
        fake.dialogs.answer_next(other);
        boxes().expect({"Errore nel caricamento del database.", "Tarvello 4", BoxIcon::critical});
        boxes().expect_any(stay);
        main.mnuApri.click();
        EXPECT_EQ(fake.dialogs.last().title, "Apri Database");
        EXPECT_TRUE(
            boxes().last().text.starts_with("L'archivio di prima è rimasto aperto:\n" + database_path));
        const bool stays = stay == Answer::yes;
        EXPECT_EQ(main.caption(), "Tarvello 4 - [" + (stays ? database_path : other) + "]");
        EXPECT_EQ(main.session.mnuChiudiDatabase.enabled(), stays);
        EXPECT_TRUE(program->database().dbConnection.is_open());
    }
}

TEST_F(MainWindow, WithoutADatabaseStaleCommandsAreRefusedAtOnce) {
    boxes().expect_any(Answer::yes);
    main.session.mnuChiudiDatabase.click();
    for (MenuItem* entry : {&main.mnuAnagrafica_Clienti, &main.mnuFatture, &main.IntestaFatture}) {
        entry->set_enabled(true);
        entry->click();
        EXPECT_FALSE(entry->enabled());
    }
    main.Label2[side_command::customers].set_enabled(true);
    main.Label2[side_command::customers].click();
    EXPECT_TRUE(windows().shown.empty());
    ApriDatabase(*program);
    main.Visualizza.open();
    EXPECT_TRUE(main.mnuFatture.enabled()) << "also for those who open the menu by the keyboard";
}

TEST_F(MainWindow, WithoutADatabaseTheSessionLivesOn) {
    given_invoice();
    auto& form = program->form<frmTarvello>();
    program->database().dbConnection.close(); // as a restore leaves it that has failed
    const auto refused = [&](auto act) {
        boxes().expect_any();
        act();
        EXPECT_EQ(boxes().last().icon, BoxIcon::critical);
        EXPECT_TRUE(boxes().last().text.starts_with("Nessun database connesso.\nAprire un archivio"));
    };
    refused([&] { main.mnuAnagrafica_Clienti.click(); });
    refused([&] { form.cmdNavigazione[0].click(); });
    refused([&] { form.Toolbar1.press("Nuova Fattura"); });
    EXPECT_EQ(form.cmdNuovaFattura.caption(), "Nuova Fattura") << "nothing has been begun";
    refused([&] { form.Toolbar1.press("Annulla"); });
    form.close_by_user();
    refused([&] { main.mnuFatture.click(); });
    EXPECT_EQ(program->loaded<frmTarvello>(), nullptr);
    main.session.loaded = false; // nothing to go on with: the process ends
    expect_process_end([&] { main.mnuFatture.click(); });
}

TEST_F(MainWindow, AnInvoiceOfOneArchiveIsNotWrittenIntoAnother) {
    given_invoice();
    auto& form = program->form<frmTarvello>();
    form.Toolbar1.press("Modifica Dati");
    program->database().dbConnection.close();
    program->database().dbConnection.open(another_database());
    given_invoice({{"Cognome_Ragione_Sociale", "Neri"}});
    boxes().expect("È stato aperto un altro archivio, e la fattura a video non ne fa parte.\nOra "
                   "compare l'ultima fattura di quello aperto.");
    form.Toolbar1.press("Modifica Dati");
    EXPECT_EQ(form.cmdModificaDati.caption(), "Modifica Dati");
    EXPECT_EQ(form.customer.txtAnagrafica[CustomerBlock::cognome].text(), "Neri");
    form.Toolbar1.press("Modifica Dati");
    EXPECT_EQ(form.cmdModificaDati.caption(), "Aggiorna Dati");
}

TEST_F(MainWindow, CloseThenOpenAnother) {
    const MessageBox question{"Chiudere: " + database_path + "?", "Tarvello 4", BoxIcon::question,
                              BoxButtons::yes_no, 1};
    boxes().expect(question, Answer::no);
    main.session.mnuChiudiDatabase.click();
    EXPECT_TRUE(main.session.mnuChiudiDatabase.enabled());
    boxes().expect(question, Answer::yes);
    main.session.mnuChiudiDatabase.click();
    EXPECT_FALSE(main.session.mnuChiudiDatabase.enabled());
    EXPECT_EQ(main.caption(), "Tarvello - [Nessun Databsase Caricato]");
    EXPECT_EQ(main.session.txtDatabaseRoute.text(), database_path);

    fake.dialogs.answer_next(database_path);
    boxes().expect("Database caricato correttamente.");
    main.mnuApri.click();
    EXPECT_EQ(main.caption(), "Tarvello 4 - [" + database_path + "]") << "the same file again";
    boxes().expect(question, Answer::yes);
    main.session.mnuChiudiDatabase.click();

    const std::string broken = fake.program_directory + "/rotto.mdb";
    std::ofstream(broken) << "questo non è un archivio";
    fake.dialogs.answer_next(broken);
    boxes().expect("Errore nel caricamento del database.");
    main.mnuApri.click();
    EXPECT_FALSE(main.session.mnuChiudiDatabase.enabled());

    fake.dialogs.answer_next(another_database());
    boxes().expect({"Database caricato correttamente.", "Tarvello 4", BoxIcon::information});
    main.mnuApri.click();
    EXPECT_TRUE(main.session.mnuChiudiDatabase.enabled());
}

TEST_F(MainWindow, ACancelledDialogChangesNothing) {
    const std::string caption = main.caption();
    fake.dialogs.answer_next(std::nullopt);
    main.mnuApri.click();
    EXPECT_EQ(main.caption(), caption);
    EXPECT_TRUE(main.session.mnuChiudiDatabase.enabled());
}

TEST_F(MainWindow, TheCommandsFollowTheConnectionWhenThePointerMoves) {
    const auto enabled = [&] {
        const bool first = main.Label2[0].enabled();
        for (const Control* c : std::initializer_list<const Control*>{
                 &main.Label2[1], &main.Label2[2], &main.mnuAnagrafica_Clienti, &main.mnuFatture,
                 &main.IntestaFatture}) {
            EXPECT_EQ(c->enabled(), first) << c->name();
        }
        return first;
    };
    boxes().expect_any(Answer::yes);
    main.session.mnuChiudiDatabase.click();
    EXPECT_TRUE(enabled()) << "directly after the close they keep their state";
    main.move_mouse();
    EXPECT_FALSE(enabled());
    EXPECT_TRUE(main.mnuGestioneDatabase.enabled());
    EXPECT_TRUE(main.Label2[side_command::preferences].enabled());
    ApriDatabase(*program);
    EXPECT_FALSE(enabled());
    main.Label2[side_command::exit].move_mouse();
    EXPECT_TRUE(enabled());
}

TEST_F(MainWindow, HoverMarksOneCommand) {
    const Color quiet = Color::from_bgr(0x800000);
    const Color hover = Color::from_bgr(0xFF8080);
    main.Label2[1].move_mouse();
    main.Label2[3].move_mouse();
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(main.Label2[i].underline(), i == 3) << i;
        EXPECT_EQ(main.Label2[i].fore_color(), i == 3 ? hover : quiet) << i;
    }
    windows().expect_modal("frmAutore");
    main.Autore.click();
    main.Label2[5].click();
    EXPECT_FALSE(main.Label2[3].underline()) << "a click resets all";
    EXPECT_TRUE(program->loaded<frmImpostazioni>());
    main.session.mnuChiudiDatabase.set_enabled(false);
    main.Label2[0].move_mouse();
    EXPECT_FALSE(main.Label2[0].underline()) << "a command that has just been disabled";
}

TEST_F(MainWindow, TheArrowShowsWhatItWouldDoAndTheLabelFollows) {
    const auto showing = [&] {
        std::string names;
        for (const Picture* p : {&main.imgApn2, &main.imgApS2, &main.imgChN2, &main.imgChS2}) {
            if (p->visible()) names += p->name();
        }
        return names;
    };
    EXPECT_EQ(showing(), "imgApn2");
    main.imgApn2.move_mouse();
    EXPECT_EQ(showing(), "imgApS2");
    EXPECT_EQ(main.lblNome2.fore_color(), Color::from_bgr(0xFF8080));
    main.imgApS2.move_mouse();
    EXPECT_EQ(showing(), "imgApS2") << "still over it";
    main.lblNome2.move_mouse();
    EXPECT_EQ(showing(), "imgApn2");
    EXPECT_EQ(main.lblNome2.fore_color(), Color::from_bgr(0x800000));

    main.imgApn2.move_mouse();
    main.imgApS2.click();
    EXPECT_FALSE(main.Picture11.visible());
    EXPECT_EQ(main.Picture11.height(), 15);
    EXPECT_EQ(showing(), "imgChS2");
    main.move_mouse();
    EXPECT_EQ(showing(), "imgChN2");
    main.imgChN2.move_mouse();
    main.imgChS2.click();
    EXPECT_TRUE(main.Picture11.visible());
    EXPECT_EQ(main.Picture11.height(), 2715);
    EXPECT_EQ(showing(), "imgApS2");
}

TEST_F(MainWindow, TheWindowHasALeastHeight) {
    FormLife::resize(main, 12000, 8999);
    EXPECT_EQ(main.height(), 9000);
    EXPECT_EQ(main.width(), 12000);
}

TEST_F(MainWindow, ExitClosesTheWindowsAndTheProgram) {
    program->form<frmTarvello>().show();
    main.Label2[side_command::exit].click();
    EXPECT_TRUE(windows().has_quit);
    EXPECT_TRUE(windows().shown.empty());
    EXPECT_FALSE(program->database().dbConnection.is_open());
}

TEST_F(MainWindow, SearchAndDonation) {
    main.CercaFile.click();
    fake.desktop.can_find = false;
    boxes().expect("Impossibile accedere al modulo di ricerca file di Windows.");
    main.CercaFile.click();
    main.Image1.click();
    EXPECT_EQ(fake.desktop.opened.back(), "https://" + maker_host() + "/it/Tarvello/risorse_online.htm");
}

} // namespace
} // namespace tarvello::testing
