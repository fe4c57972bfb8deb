#include "shell/session.h"

#include "customers/customer_form.h"
#include "documents/letterhead_form.h"
#include "failure.h"
#include "preferences/tax_preferences.h"
#include "program/open_database.h"
#include "shell/issuer_name_form.h"
#include "shell/splash.h"
#include "support/program_test.h"

#include <filesystem>

namespace tarvello::testing {
namespace {

/// A program that has not started yet, on a machine where it ran yesterday: no reminder, no first run.
struct Session : ::testing::Test {
    FakePlatform fake;
    std::unique_ptr<Program> program;

    Session() {
        fake.settings.set("txtDataUltimoAggiornamento", "text", "04/03/2006");
        fake.settings.set("txtContatoreAccessi", "text", "2");
        restart();
    }

    void restart() { program = std::make_unique<Program>(fake.platform()); }
    MDIForm1& main() { return program->form<MDIForm1>(); }
    std::string in_directory(const std::string& name) { return fake.program_directory + "/" + name; }
    void set(const std::string& section, const std::string& text) {
        fake.settings.set(section, "text", text);
    }

    /// The default database beside the program.
    void given_database() { make_database(in_directory("tarvello.mdb")); }
    bool connected() { return main().session.mnuChiudiDatabase.enabled(); }
};

TEST_F(Session, TheSplashMakesWayForTheMainWindowAtTick51) {
    given_database();
    start_program(*program);
    auto& splash = program->form<frmSplash>();
    EXPECT_EQ(fake.windows.shown, std::vector<std::string>{"frmSplash"});
    EXPECT_EQ(fake.windows.pointer, Pointer::hourglass);
    EXPECT_EQ(splash.LabelAttesa.caption(), "Caricamento Sessione...");
    EXPECT_EQ(splash.lblversion.caption(), "Version 4.0.0");
    for (int i = 0; i < 40; ++i) splash.Timer1.tick();
    EXPECT_EQ(splash.LabelAttesa.caption(), "Caricamento Sessione...");
    for (int i = 40; i < 50; ++i) splash.Timer1.tick();
    EXPECT_EQ(splash.LabelAttesa.caption(), "Ripristino connessione database...attendere!");
    EXPECT_EQ(fake.windows.shown, std::vector<std::string>{"frmSplash"});
    splash.Timer1.tick();
    EXPECT_EQ(fake.windows.shown, std::vector<std::string>{"MDIForm1"});
    EXPECT_EQ(fake.windows.pointer, Pointer::normal);
    EXPECT_TRUE(connected());
    EXPECT_EQ(main().width(), 14000);
    EXPECT_EQ(main().height(), 10080);
    EXPECT_EQ(main().StatusBar2.panel(1), "Tarvello 4.0.0");
    EXPECT_EQ(main().caption(), "Tarvello 4 - [" + in_directory("tarvello.mdb") + "]");
}

TEST_F(Session, ASecondCopyEndsSilently) {
    fake.desktop.another_copy = true;
    try {
        start_program(*program);
        ADD_FAILURE() << "it goes on";
    } catch (const ProcessEnded& end) {
        EXPECT_EQ(end.exit_status, 0);
    }
    EXPECT_TRUE(fake.windows.shown.empty());
}

TEST_F(Session, TheVeryFirstStart) {
    fake.settings.values.clear();
    std::vector<std::string> order;
    fake.windows.expect_modal("DialogAggiornamento", [&](Form&) {
        order.push_back("reminder");
        EXPECT_FALSE(program->database().dbConnection.is_open());
    });
    fake.windows.expect_modal("frmRegister", [&](Form& form) {
        order.push_back("register");
        EXPECT_FALSE(program->database().dbConnection.is_open());
        static_cast<frmRegister&>(form).Text1.type("Anna");
    });
    load_session(*program);
    EXPECT_EQ(order, (std::vector<std::string>{"reminder", "register"}));
    EXPECT_FALSE(connected()) << "there is no database, and nobody says so";
    EXPECT_EQ(main().caption(), "Tarvello 4 - [" + in_directory("tarvello.mdb") + "]");
    EXPECT_EQ(main().session.txtProfessione.text(), "False");
    EXPECT_EQ(main().session.txt_IVA_default.text() + main().session.txt_Ritenuta_default.text() +
                  main().session.txt_RitenutaSu_default.text() + main().session.txt_RIVALSA_default.text() +
                  main().session.txtPercorsoLogo.text(),
              "");
    EXPECT_EQ(main().session.txtModelloReport.text(), "1");
    EXPECT_EQ(main().session.txtContatoreAccessi.text(), "1");
    EXPECT_EQ(main().session.TxtDestinazioneBackup.text(), in_directory("tarvello.bak"));
    EXPECT_FALSE(main().session.CheckBoxBackup.checked());
    EXPECT_EQ(program->NomeIntestatario, "Anna");

    main().close_by_user();
    EXPECT_TRUE(fake.windows.has_quit);
    EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), "2");
    EXPECT_EQ(fake.settings.get("txtProfessione"), "False");
    EXPECT_EQ(fake.settings.get("txt_IVA_default"), "");

    restart(); // no first-run dialog: an unexpected one would fail here
    given_database();
    set("txtDataUltimoAggiornamento", "04/03/2006");
    load_session(*program);
    EXPECT_TRUE(connected());
    EXPECT_EQ(program->NomeIntestatario, "Anna");
}

TEST_F(Session, EachSettingHasItsOwnWordsForMissing) {
    const auto loaded = [&](const std::string& section, const std::string& stored) {
        set(section, stored);
        restart();
        load_session(*program);
        return dynamic_cast<TextBox&>(*main().find(section)).text();
    };
    for (const char* word : {"False", "false", "falso", "Falso"}) {
        EXPECT_EQ(loaded("txtModelloReport", word), "1") << word;
        EXPECT_EQ(loaded("txt_IVA_default", word), word == std::string("False") ? "" : word);
        EXPECT_EQ(loaded("txtDatabaseRoute", word),
                  word == std::string("falso") ? "falso" : in_directory("tarvello.mdb"));
        EXPECT_EQ(loaded("TxtDestinazioneBackup", word),
                  word == std::string("False") ? in_directory("tarvello.bak") : word);
        EXPECT_EQ(loaded("txtProfessione", word), word);
    }
    EXPECT_EQ(loaded("txtModelloReport", ""), "1");
    EXPECT_EQ(loaded("txtDatabaseRoute", ""), in_directory("tarvello.mdb"));
    EXPECT_EQ(loaded("TxtDestinazioneBackup", ""), in_directory("tarvello.bak"));
    EXPECT_EQ(loaded("txtModelloReport", "FALSE"), "FALSE");
}

TEST_F(Session, TheAccessCounter) {
    struct {
        const char* stored;
        bool first_run;
        const char* after;
    } const cases[] = {
        {"1", true, "2"},    {" 1,9", true, "2"},       {"falso", true, "2"},      {"", true, "2"},
        {"abc", false, "1"}, {"32767", false, "32767"}, {"99999", false, "99999"}, {"7x", false, "8"},
    };
    for (const auto& c : cases) {
        set("txtContatoreAccessi", c.stored);
        restart();
        if (c.first_run) fake.windows.expect_modal("frmRegister");
        load_session(*program);
        fake.windows.expect_none_left();
        main().close_by_user();
        EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), c.after) << c.stored;
    }
}

TEST_F(Session, AGarbledSettingsStoreIsNoObstacle) {
    const std::string garbage = "\x01\xff;=[]\n";
    for (const char* section : {"txtDatabaseRoute", "txtProfessione", "txt_IVA_default", "txtPercorsoLogo",
                                "txtContatoreAccessi", "txtModelloReport", "TxtDestinazioneBackup",
                                "txtDataUltimoAggiornamento", "txtGiorniTraCuiAvvisare", "Text1"}) {
        set(section, garbage);
    }
    fake.settings.set("CheckBoxBackup", "value", garbage);
    load_session(*program);
    EXPECT_FALSE(connected());
    EXPECT_FALSE(main().session.CheckBoxBackup.checked());
    main().close_by_user();
    EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), "1");
}

const char* const failed_backup = "Si è verificato un errore durante il backup. \n"
                                  "Se l'errore dovesse ripetersi controllare le impostazioni di backup.";

TEST_F(Session, ClosingWritesInItsOrder) {
    given_database();
    load_session(*program);
    program->form<frmClienti>().show();
    main().session.CheckBoxBackup.set_checked(true);
    std::vector<std::string> done;
    fake.settings.on_write = [&](const std::string& section) {
        EXPECT_EQ(program->loaded<frmClienti>(), nullptr);
        EXPECT_EQ(program->database().dbConnection.is_open(), done.size() < 8) << section;
        done.push_back(section);
    };
    main().session.txtDatabaseRoute.set_text("/altrove.mdb");
    fake.boxes.expect(failed_backup); // there is no such file to copy
    main().close_by_user();
    EXPECT_EQ(done, (std::vector<std::string>{"txtDatabaseRoute", "txtProfessione", "txt_IVA_default",
                                              "txt_Ritenuta_default", "txt_RitenutaSu_default",
                                              "txt_RIVALSA_default", "txtPercorsoLogo", "txtContatoreAccessi",
                                              "CheckEscludiRivalsaImponibile", "txtDatabaseRoute"}));
}

TEST_F(Session, AFailedBackupSendsTheNextSessionToTheDefaultDatabase) {
    const std::string studio = in_directory("studio.mdb");
    make_database(studio);
    set("txtDatabaseRoute", studio);
    fake.settings.set("CheckBoxBackup", "value", "1");
    for (const bool copied : {true, false}) {
        set("TxtDestinazioneBackup", in_directory(copied ? "copia.bak" : "nessuna/cartella/copia.bak"));
        restart();
        load_session(*program);
        if (!copied) fake.boxes.expect(failed_backup);
        main().close_by_user();
        EXPECT_TRUE(fake.windows.has_quit);
        EXPECT_EQ(fake.settings.get("txtDatabaseRoute"), copied ? studio : in_directory("tarvello.mdb"));
    }
    EXPECT_TRUE(std::filesystem::exists(in_directory("copia.bak")));
}

TEST_F(Session, TheEndOfTheDesktopIsAClosing) {
    end_with_desktop(*program);
    EXPECT_TRUE(fake.windows.has_quit);
    EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), "2") << "nothing was read, nothing is written";

    fake.windows.has_quit = false;
    load_session(*program);
    main().session.txt_IVA_default.set_text("22");
    program->form<frmImpostazioni>().show();
    end_with_desktop(*program);
    EXPECT_TRUE(fake.windows.has_quit);
    EXPECT_EQ(program->loaded<frmImpostazioni>(), nullptr);
    EXPECT_EQ(fake.settings.get("txt_IVA_default"), "22");
    EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), "3");
}

TEST_F(Session, TheClosingRunsOnceWhateverComesWhileABoxStands) {
    given_database();
    set("TxtDestinazioneBackup", in_directory("nessuna/cartella/copia.bak"));
    fake.settings.set("CheckBoxBackup", "value", "1");
    const std::function<void()> events[] = {[&] { main().close_by_user(); },
                                            [&] { end_with_desktop(*program); }};
    for (std::size_t i = 0; i < std::size(events); ++i) {
        restart();
        load_session(*program);
        fake.boxes.meanwhile = events[i];
        fake.boxes.expect(failed_backup);
        main().close_by_user();
        fake.boxes.expect_none_left();
        EXPECT_TRUE(fake.windows.has_quit);
        EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), i == 0 ? "3" : "4");
    }
}

TEST_F(Session, AtTheEndOfTheDesktopNothingWaitsAndWhatWasTypedIsKept) {
    given_database();
    set("TxtDestinazioneBackup", in_directory("nessuna/cartella/copia.bak"));
    fake.settings.set("CheckBoxBackup", "value", "1");
    // By itself; and under the question of a closing by hand, which would then be answered by nobody.
    for (const bool by_hand : {false, true}) {
        restart();
        load_session(*program);
        program->form<frmIntestazioneFatture>().Text1[1].type("Via Roma");
        if (by_hand) {
            fake.boxes.meanwhile = [&] { end_with_desktop(*program); };
            fake.boxes.expect("Le impostazioni sono state modificate.Salvare le modifiche?", Answer::yes);
            main().mnuFileExit.click();
        } else {
            end_with_desktop(*program);
        }
        fake.boxes.deserted = false;
        EXPECT_EQ(fake.settings.get("txtDatabaseRoute"), in_directory("tarvello.mdb")) << "the backup failed";
        EXPECT_EQ(fake.settings.get("txtContatoreAccessi"), by_hand ? "4" : "3");
        EXPECT_EQ(program->loaded<frmIntestazioneFatture>(), nullptr);

        restart();
        load_session(*program);
        fake.boxes.expect_any(Answer::yes);
        auto& form = program->form<frmIntestazioneFatture>();
        form.show();
        EXPECT_NE(fake.boxes.last().text.find("quanto scritto nell'intestazione ("), std::string::npos);
        EXPECT_EQ(form.Text1[1].text(), "Via Roma");
        EXPECT_TRUE(form.Command1[0].enabled());
    }
}

TEST_F(Session, EditsThatCouldNotBeSavedAtClosingAreOfferedAgain) {
    given_database();
    load_session(*program);
    auto& typed = program->form<frmIntestazioneFatture>();
    typed.Text1[2].type("06");
    typed.txtDescrizione.set_text("a\tb è\\\nc");
    typed.txtBanca[3].type("000123");
    fake.boxes.expect("Le impostazioni sono state modificate.Salvare le modifiche?", Answer::yes);
    fake.boxes.expect("Inserire indirizzo della Ditta");
    program->NomeIntestatario = "Studio";
    typed.Text1[0].set_text("Studio");
    main().close_by_user();
    EXPECT_TRUE(fake.windows.has_quit);

    // Not in another archive; and until it is saved or not wanted.
    make_database(in_directory("altro.mdb"));
    set("txtDatabaseRoute", in_directory("altro.mdb"));
    restart();
    load_session(*program);
    program->form<frmIntestazioneFatture>().show();
    set("txtDatabaseRoute", in_directory("tarvello.mdb"));
    for (const std::optional<Answer> answer :
         {std::optional(Answer::cancel), std::optional(Answer::yes), std::optional(Answer::no), {}}) {
        restart();
        load_session(*program);
        if (answer) fake.boxes.expect_any(*answer);
        auto& form = program->form<frmIntestazioneFatture>();
        form.show();
        const bool taken = answer == Answer::yes;
        EXPECT_EQ(form.Text1[2].text(), taken ? "06" : "");
        EXPECT_EQ(form.txtDescrizione.text(), taken ? "a\tb è\\\nc" : "");
        EXPECT_EQ(form.txtBanca[3].text(), taken ? "000123" : "");
    }
}

TEST_F(Session, TheSplashCannotBeClosedByHand) {
    start_program(*program);
    program->form<frmSplash>().close_by_user();
    EXPECT_NE(program->loaded<frmSplash>(), nullptr);
}

TEST_F(Session, TheDatabaseOpensOnceAndClosesWhateverIsOpen) {
    given_database();
    load_session(*program);
    EXPECT_FALSE(ApriDatabase(*program)) << "another one is open";
    EXPECT_FALSE(connected());
    Database& database = program->database();
    database.rsClienti.open("SELECT * FROM Clienti", database.dbConnection);
    database.rsReport.open("SELECT * FROM Fatture", database.dbConnection);
    main().session.mnuChiudiDatabase.set_enabled(true);
    ChiudiDatabase(*program);
    EXPECT_FALSE(database.rsClienti.is_open());
    EXPECT_TRUE(database.rsReport.is_open()) << "the rows behind a report stay";
    EXPECT_FALSE(database.dbConnection.is_open());
    EXPECT_TRUE(connected()) << "the flag is the caller's";
    ChiudiDatabase(*program);
    database.rsReport.close();
    EXPECT_TRUE(ApriDatabase(*program));
}

struct NameDialog : ProgramTest {
    frmRegister& form() { return program->form<frmRegister>(); }
};

TEST_F(NameDialog, EachKeystrokeIsStored) {
    form().Text1.type("Bruni & Figli");
    EXPECT_EQ(fake.settings.get("Text1"), "Bruni & Figli");
    EXPECT_EQ(program->NomeIntestatario, "Bruni & Figli");
    form().Text1.press_key(keys::backspace);
    EXPECT_EQ(fake.settings.get("Text1"), "Bruni & Figl");
}

TEST_F(NameDialog, TheTextFalseEmptiesTheFieldAfterItWasStored) {
    form().Text1.type("False");
    EXPECT_EQ(form().Text1.text(), "");
    EXPECT_EQ(program->NomeIntestatario, "");
    EXPECT_EQ(fake.settings.get("Text1"), "False");
    LeggiNomeIntestatario(*program);
    EXPECT_EQ(program->NomeIntestatario, "") << "read as a blank name";
}

TEST_F(NameDialog, AFirstStartCreatesTheKey) {
    LeggiNomeIntestatario(*program);
    EXPECT_EQ(fake.settings.get("Text1"), "False");
    EXPECT_EQ(program->NomeIntestatario, "");
}

TEST_F(NameDialog, ConfirmingReachesTheLetterhead) {
    windows().expect_modal("frmRegister", [&](Form&) {
        boxes().expect({"Inserire il nome della persona fisica o\ngiuridica che emetterà le fatture!",
                        "Tarvello 4", BoxIcon::exclamation});
        form().Command1.click();
        EXPECT_EQ(form().focus(), &form().Text1);
        form().Text1.type("Studio Bruni");
        const char* const question = "Se i dati inseriti sono corretti premere 'Si'.\n"
                                     "Attenzione! I dati verranno visualizzati nell'intestazione\n"
                                     "delle fatture da stampare.\nContinuare?";
        boxes().expect(question, Answer::no);
        form().Command1.click();
        ASSERT_TRUE(program->loaded<frmRegister>());
        boxes().expect(question, Answer::yes);
        form().Command1.click();
        EXPECT_FALSE(program->loaded<frmRegister>());
    });
    form().show_modal();
    ASSERT_TRUE(program->loaded<frmIntestazioneFatture>());
    EXPECT_EQ(program->form<frmIntestazioneFatture>().Text1[0].text(), "Studio Bruni");
    EXPECT_TRUE(windows().shown.empty()) << "the letterhead is loaded, not shown";
}

TEST_F(NameDialog, CancellingKeepsWhatWasTyped) {
    form().show();
    form().Text1.type("A");
    boxes().expect("Annullare inserimento dati?", Answer::no);
    form().Command2.click();
    EXPECT_EQ(form().focus(), &form().Text1);
    boxes().expect("Annullare inserimento dati?", Answer::yes);
    form().Command2.click();
    EXPECT_FALSE(program->loaded<frmRegister>());
    EXPECT_EQ(program->NomeIntestatario, "A");
}

TEST_F(NameDialog, ClosingItClosesTheSplashToo) {
    program->form<frmSplash>().show();
    form().show();
    form().close_by_user();
    EXPECT_TRUE(windows().shown.empty());
}

} // namespace
} // namespace tarvello::testing
