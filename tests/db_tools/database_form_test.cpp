#include "db_tools/database_form.h"

#include "db_tools/backup_restore.h"
#include "db_tools/restore_name_form.h"
#include "support/program_test.h"

#include <filesystem>
#include <fstream>

namespace tarvello {
namespace {

namespace fs = std::filesystem;

struct DatabaseTools : testing::ProgramTest {
    frmGestioneDatabase& form() { return program->form<frmGestioneDatabase>(); }
    MDIForm1& main() { return program->form<MDIForm1>(); }
    std::string in_folder(const std::string& name) { return fake.program_directory + "/" + name; }
    bool connected() { return program->database().dbConnection.is_open(); }

    /// A second database with one customer of that name.
    std::string database_with(const std::string& name, const std::string& customer) {
        const std::string path = in_folder(name);
        testing::make_database(path);
        Connection other(program->regional());
        other.open(path);
        other.execute("INSERT INTO Clienti (Nome) VALUES ('" + customer + "')");
        return path;
    }
    std::string first_customer() {
        const auto rows = sql("SELECT * FROM Clienti");
        return rows.empty() ? "" : rows[0].at("Nome");
    }
    /// The row of the restore list that shows this path.
    std::size_t row_of(const std::string& path) {
        const ListRows& rows = form().ListView1.rows();
        std::size_t row = 0;
        while (row < rows.size() && rows.cell(row, 0) != path) ++row;
        EXPECT_LT(row, rows.size()) << "not in the list: " << path;
        return row;
    }
    void choose_backup(const std::string& path) {
        form().CheckBoxRipristinaBackup.click();
        form().ListView1.select_row(row_of(path));
        ASSERT_EQ(form().txtSelectedFile.text(), path);
    }
    void expect_copied(const std::string& source, const std::string& destination) {
        boxes().expect(
            {"Copia file completata\nOrigine Dati:      " + source + "\nDestinazione:    " + destination,
             "Tarvello 4", BoxIcon::information});
    }
    static std::string bytes_of(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(DatabaseTools, AutomaticBackupReplacesTheOneBefore) {
    given_customer({{"Nome", "Anna"}});
    program->database().dbConnection.close();
    main().session.TxtDestinazioneBackup.set_text(in_folder("copia.bak"));
    std::ofstream(in_folder("copia.bak")) << "an older backup";
    EXPECT_TRUE(EseguiBackupAutomatico(*program));
    EXPECT_EQ(bytes_of(in_folder("copia.bak")), bytes_of(database_path));
    EXPECT_TRUE(fake.copy_dialog.asked.empty());
    EXPECT_TRUE(fake.copy_dialog.titles.empty());
}

TEST_F(DatabaseTools, AutomaticBackupWithoutDestinationOrPlace) {
    boxes().expect({"Impossibile eseguire il backup. Nessuna destinazione impostata.\n"
                    " Le impostazioni di backup saranno riconfigurate automaticamente al prossimo avvio.",
                    "Tarvello 4", BoxIcon::exclamation});
    EXPECT_TRUE(EseguiBackupAutomatico(*program));

    main().session.TxtDestinazioneBackup.set_text(in_folder("nessuna/cartella/copia.bak"));
    boxes().expect({"Si è verificato un errore durante il backup. \n"
                    "Se l'errore dovesse ripetersi controllare le impostazioni di backup.",
                    "Tarvello 4", BoxIcon::critical});
    EXPECT_FALSE(EseguiBackupAutomatico(*program));
}

TEST_F(DatabaseTools, BackupSettingsAreSavedOnDemand) {
    EXPECT_FALSE(form().cmdSaveBackupSettings.enabled());
    EXPECT_FALSE(form().OptionDestinazioneDefault.enabled());
    form().CheckBoxBackup.click();
    EXPECT_TRUE(main().session.CheckBoxBackup.checked());
    EXPECT_EQ(form().Label6.caption(), "Attivo");
    EXPECT_TRUE(form().cmdSaveBackupSettings.enabled());

    boxes().expect("Inserire il percorso di destinazione");
    form().cmdSaveBackupSettings.click();
    EXPECT_EQ(form().focus(), &form().TxtDestinazioneBackup);
    EXPECT_EQ(fake.settings.get("CheckBoxBackup", "value"), std::nullopt) << "nothing is saved";

    form().OptionDestinazioneBackup.click();
    form().TxtDestinazioneBackup.type("/mnt/chiave/a.bak");
    EXPECT_EQ(main().session.TxtDestinazioneBackup.text(), "/mnt/chiave/a.bak");
    form().OptionDestinazioneDefault.click();
    EXPECT_EQ(form().TxtDestinazioneBackup.text(), in_folder("tarvello.bak"));
    form().TxtDestinazioneBackup.type("x");
    EXPECT_EQ(form().TxtDestinazioneBackup.text(), in_folder("tarvello.bak")) << "the default is locked";

    fake.dialogs.answer_next(in_folder("scelto.bak"));
    form().Command2[2].click();
    form().OptionDestinazioneBackup.click();
    boxes().expect({"Impostazioni di backup salvate.", "Tarvello 4", BoxIcon::information});
    form().cmdSaveBackupSettings.click();
    EXPECT_TRUE(form().TxtDestinazioneBackup.locked());
    form().OptionDestinazioneBackup.click(); // again
    EXPECT_FALSE(form().TxtDestinazioneBackup.locked());
    boxes().expect("Impostazioni di backup salvate.");
    form().cmdSaveBackupSettings.click();
    EXPECT_EQ(fake.settings.get("CheckBoxBackup", "value"), "1");
    EXPECT_EQ(fake.settings.get("TxtDestinazioneBackup"), in_folder("scelto.bak"));
    EXPECT_FALSE(form().cmdSaveBackupSettings.enabled());

    form().cmdClose.click(); // nothing to ask
    EXPECT_TRUE(form().CheckBoxBackup.checked()) << "read again when the form is opened again";
    EXPECT_EQ(form().TxtDestinazioneBackup.text(), in_folder("scelto.bak"));
}

TEST_F(DatabaseTools, ClosingAsksForUnsavedBackupSettings) {
    const char* const question =
        "Le impostazioni di backup sono state modificate\nSalvare le nuove impostazioni?";
    form().CheckBoxBackup.click();
    form().OptionDestinazioneDefault.click();
    boxes().expect(question, Answer::no);
    form().cmdClose.click();
    EXPECT_FALSE(program->loaded<frmGestioneDatabase>());
    EXPECT_EQ(fake.settings.get("CheckBoxBackup", "value"), std::nullopt);

    form().CheckBoxBackup.click();
    form().OptionDestinazioneDefault.click();
    boxes().expect(question, Answer::yes);
    boxes().expect("Impostazioni di backup salvate.");
    form().cmdClose.click();
    EXPECT_FALSE(program->loaded<frmGestioneDatabase>());
    EXPECT_EQ(fake.settings.get("CheckBoxBackup", "value"), "1");
}

TEST_F(DatabaseTools, RestoreListsFoldersAndBackups) {
    fs::create_directory(in_folder("vecchi"));
    std::ofstream(in_folder("vecchi/b.bak")) << "12345";
    std::ofstream(in_folder("a.bak")) << "123";
    std::ofstream(in_folder("altro.txt")) << "1";
    EXPECT_EQ(form().ListView1.rows().size(), 0U);
    form().CheckBoxRipristinaBackup.click();
    const ListRows& rows = form().ListView1.rows();
    EXPECT_EQ(rows.cell(0, 0), "..");
    EXPECT_EQ(rows.cell(0, 1), "< Directory >");
    EXPECT_EQ(rows.cell(row_of(in_folder("vecchi")), 1), "< Directory >");
    EXPECT_EQ(row_of(in_folder("a.bak")), rows.size() - 1) << "folders first, and backups only";
    EXPECT_EQ(rows.cell(rows.size() - 1, 1), "3");

    form().ListView1.double_click(row_of(in_folder("vecchi")));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows.cell(1, 0), in_folder("vecchi/b.bak"));
    EXPECT_EQ(form().txtLocalFolder.text(), in_folder("vecchi"));
    EXPECT_EQ(form().Dir1.text().substr(form().Dir1.text().find_first_not_of(' ')), "vecchi");
    form().ListView1.select_row(1);
    EXPECT_EQ(form().txtSelectedFile.text(), in_folder("vecchi/b.bak"));

    form().Dir1.double_click(0);
    EXPECT_EQ(form().txtLocalFolder.text(), "/");
    form().CheckBoxRipristinaBackup.click();
    EXPECT_EQ(rows.size(), 0U);
    EXPECT_FALSE(form().Command5.enabled());
}

TEST_F(DatabaseTools, RestoreMovesToTheRestoredFile) {
    database_with("copia.bak", "Bruno");
    choose_backup(in_folder("copia.bak"));

    windows().expect_modal("frmRipristinaBackup", [](Form& dialog) {
        auto& name = dynamic_cast<frmRipristinaBackup&>(dialog);
        EXPECT_EQ(name.Command1.caption(), "Annulla");
        name.Command1.click();
    });
    form().Command5.click(); // no name, no question
    EXPECT_TRUE(connected());

    const auto type_name = [](Form& dialog) {
        auto& name = dynamic_cast<frmRipristinaBackup&>(dialog);
        name.Text1.type("ripreso");
        EXPECT_EQ(name.Command1.caption(), "OK");
        name.Command1.click();
    };
    windows().expect_modal("frmRipristinaBackup", type_name);
    boxes().expect("Si conferma l'operazione di ripristino?", Answer::no);
    form().Command5.click();
    EXPECT_FALSE(fs::exists(in_folder("ripreso")));

    windows().expect_modal("frmRipristinaBackup", type_name);
    boxes().expect("Si conferma l'operazione di ripristino?", Answer::yes);
    boxes().expect("Ripristino file di backup completato.\nOrigine Dati:      " + in_folder("copia.bak") +
                   "\nDestinazione:    " + in_folder("ripreso"));
    form().Command5.click();
    EXPECT_EQ(main().session.txtDatabaseRoute.text(), in_folder("ripreso")) << "no extension is added";
    EXPECT_EQ(first_customer(), "Bruno");
    EXPECT_TRUE(fs::exists(database_path)) << "the old file stays";
}

TEST_F(DatabaseTools, ABackupIsFoundAgainByItsExtension) {
    const struct {
        std::string typed, saved;
    } cases[] = {{in_folder("copia"), in_folder("copia.bak")},
                 {in_folder("copia.mdb"), in_folder("copia.mdb.bak")},
                 {in_folder("Copia.BAK"), in_folder("Copia.BAK")},
                 {in_folder("modelli"), in_folder("modelli/tarvello.bak")},
                 {in_folder("modelli/"), in_folder("modelli/tarvello.bak")}};
    form().CheckBoxBackup.click();
    for (const auto& c : cases) {
        form().TxtDestinazioneBackup.set_text(c.typed);
        boxes().expect("Impostazioni di backup salvate.");
        form().cmdSaveBackupSettings.click();
        EXPECT_EQ(form().TxtDestinazioneBackup.text(), c.saved);
        EXPECT_EQ(fake.settings.get("TxtDestinazioneBackup"), c.saved);
    }
}

TEST_F(DatabaseTools, AnAutomaticBackupCostsNoOtherArchiveAndNoLastCopyThatOpens) {
    database_with("copia.bak", "Bruno");
    const std::string of_another = bytes_of(in_folder("copia.bak"));
    given_customer({{"Nome", "Anna"}});
    program->database().dbConnection.close();
    main().session.TxtDestinazioneBackup.set_text(in_folder("copia.bak"));
    EXPECT_TRUE(EseguiBackupAutomatico(*program));
    EXPECT_EQ(bytes_of(in_folder("copia.bak")), bytes_of(database_path));
    EXPECT_EQ(bytes_of(in_folder("copia-2006-03-05.bak")), of_another);

    const std::string last = bytes_of(in_folder("copia.bak"));
    std::ofstream(database_path) << "rovinato";
    boxes().expect({"L'archivio\n" + database_path + "\nnon si apre più. Impossibile aprire il database \"" +
                        database_path +
                        "\": il file non è un database.\n\nLa copia precedente è stata conservata:\n" +
                        in_folder("copia-2006-03-05-2.bak"),
                    "Tarvello 4", BoxIcon::exclamation});
    EXPECT_TRUE(EseguiBackupAutomatico(*program));
    EXPECT_EQ(bytes_of(in_folder("copia.bak")), "rovinato");
    EXPECT_EQ(bytes_of(in_folder("copia-2006-03-05-2.bak")), last);
    EXPECT_TRUE(EseguiBackupAutomatico(*program)) << "a copy that does not open is no loss";
}

/// A restore that brings no archive: what is true is told, and the way back offered.
struct RestoreThatDidNotHappen : DatabaseTools {
    MessageBox offer(const std::string& truth) {
        return {truth + "\n\nL'archivio di prima è intatto. Riaprirlo?\n" + database_path, "Tarvello 4",
                BoxIcon::question, BoxButtons::yes_no, 1};
    }
    void restore_as(const std::string& name) {
        windows().expect_modal("frmRipristinaBackup", [name](Form& dialog) {
            dynamic_cast<frmRipristinaBackup&>(dialog).Text1.type(name);
        });
        boxes().expect("Si conferma l'operazione di ripristino?", Answer::yes);
    }
    void expect_report(const std::string& name) {
        boxes().expect("Ripristino file di backup completato.\nOrigine Dati:      " + in_folder("copia.bak") +
                       "\nDestinazione:    " + in_folder(name));
    }
};

TEST_F(RestoreThatDidNotHappen, WhatTheUserGaveUpIsUntouchedAndTheFormerArchiveOpensAgain) {
    database_with("copia.bak", "Bruno");
    const std::string other = database_with("altro.mdb", "Carla");
    given_customer({{"Nome", "Anna"}});
    choose_backup(in_folder("copia.bak"));
    fake.copy_dialog.answer_replace = false;
    const std::string untouched = "Il ripristino non è stato fatto: il file\n" + other +
                                  "\nnon è stato toccato, ed è ora l'archivio aperto.";
    for (const Answer answer : {Answer::yes, Answer::no}) {
        restore_as("altro.mdb");
        expect_report("altro.mdb");
        boxes().expect(offer(untouched), answer);
        form().Command5.click();
        EXPECT_EQ(first_customer(), answer == Answer::yes ? "Anna" : "Carla");
        EXPECT_EQ(main().session.txtDatabaseRoute.text(), answer == Answer::yes ? database_path : other);
        EXPECT_EQ(form().txtPercorsoDatabase.text(), main().session.txtDatabaseRoute.text());
    }
    restore_as("altro.mdb"); // the one that is open now
    expect_report("altro.mdb");
    boxes().expect({untouched, "Tarvello 4", BoxIcon::information});
    form().Command5.click();

    main().session.take_route(database_path);
    fake.copy_dialog.give_up_at = 0;
    restore_as("nuovo.mdb");
    expect_report("nuovo.mdb");
    boxes().expect(offer("Il ripristino è stato interrotto: il file\n" + in_folder("nuovo.mdb") +
                         "\nnon è stato creato."),
                   Answer::yes);
    form().Command5.click();
    EXPECT_EQ(first_customer(), "Anna");
}

TEST_F(RestoreThatDidNotHappen, AFailedOneLeavesTheConnectionClosedUnlessTheUserOpensIt) {
    form().CheckBoxRipristinaBackup.click();
    for (const Answer answer : {Answer::no, Answer::yes}) {
        restore_as("ripreso");
        boxes().expect(offer("Il ripristino non è stato fatto e nessun archivio è aperto."), answer);
        form().Command5.click(); // no file was chosen
        EXPECT_EQ(connected(), answer == Answer::yes);
        EXPECT_EQ(main().session.txtDatabaseRoute.text(), database_path);
    }
    EXPECT_EQ(fake.copy_dialog.failures.size(), 2U) << "the copy itself says why";
    std::ofstream(database_path) << "rovinato";
    restore_as("ripreso");
    boxes().expect(offer("Il ripristino non è stato fatto e nessun archivio è aperto."), Answer::yes);
    boxes().expect({"L'archivio\n" + database_path + "\nnon si apre.", "Tarvello 4", BoxIcon::critical});
    form().Command5.click();
}

TEST_F(RestoreThatDidNotHappen, ACopyThatIsNoArchiveIsToldAsOne) {
    std::ofstream(in_folder("copia.bak")) << "un testo";
    choose_backup(in_folder("copia.bak"));
    const std::string reason =
        "Impossibile aprire il database \"" + in_folder("copia.bak") + "\": il file non è un database.";
    restore_as("ripreso");
    expect_report("ripreso");
    boxes().expect(offer("Il file ripristinato non si apre come archivio. " + reason), Answer::yes);
    form().Command5.click();
    EXPECT_TRUE(connected());

    restore_as("tarvello.mdb");
    boxes().expect(offer("Il ripristino non è stato fatto: il file\n" + database_path +
                         "\nnon è stato toccato. Nessun archivio è aperto."),
                   Answer::yes);
    form().Command5.click();
    EXPECT_TRUE(connected());
    EXPECT_NE(fake.copy_dialog.failures.at(0).find(reason), std::string::npos);

    form().CheckBoxImportaEsporta.click();
    form().txtOrigine.set_text(in_folder("copia.bak"));
    form().txtDest.set_text(in_folder("esportato"));
    boxes().expect_any();
    boxes().expect(
        {"Il file copiato non si apre come archivio. " + reason, "Tarvello 4", BoxIcon::exclamation});
    form().cmdImpExp.click();
}

TEST_F(DatabaseTools, AnotherDatabaseIsChosenByItsPathAndTheDefaultAgain) {
    const std::string other = database_with("altro.mdb", "Carla");
    EXPECT_TRUE(form().Option1[0].selected()) << "the one that is open";
    form().Option1[1].click();
    boxes().expect({"Selezionare il database.", "Tarvello 4", BoxIcon::exclamation});
    form().cmdApriDB.click();
    form().Text1.enter();
    EXPECT_EQ(form().Text1.text(), "") << "the prompt goes when the field is reached";
    fake.dialogs.answer_next(other);
    form().Command1.click();
    EXPECT_EQ(fake.dialogs.last().title, "Apri Database");
    boxes().expect({"Nuovo database caricato.", "Tarvello 4", BoxIcon::information});
    form().cmdApriDB.click();
    EXPECT_EQ(first_customer(), "Carla");
    EXPECT_EQ(form().txtPercorsoDatabase.text() + main().session.txtDatabaseRoute.text(), other + other);
    form().unload();
    EXPECT_TRUE(form().Option1[1].selected());

    fs::rename(database_path, in_folder("via"));
    form().Option1[0].click();
    EXPECT_FALSE(form().Text1.enabled() || form().Command1.enabled());
    form().cmdApriDB.click(); // not a word, and no database
    EXPECT_FALSE(connected() || main().session.mnuChiudiDatabase.enabled());
    EXPECT_EQ(main().caption(), "Tarvello 4 - [" + database_path + "]");
    fs::rename(in_folder("via"), database_path);
    boxes().expect("Nuovo database caricato.");
    form().cmdApriDB.click();
    EXPECT_TRUE(connected() && main().session.mnuChiudiDatabase.enabled());
}

TEST_F(DatabaseTools, DatabasesAreImportedAndExported) {
    const std::string other = database_with("altro.mdb", "Carla");
    const std::string exported = in_folder("esportato.mdb");
    form().CheckBoxImportaEsporta.click();
    for (TextBox* path : {&form().txtOrigine, &form().txtDest}) {
        path->enter();
        EXPECT_EQ(path->text(), "") << "the prompt goes when the field is reached";
    }
    fake.dialogs.answer_next(other);
    form().Command2[0].click();
    fake.dialogs.answer_next(database_path);
    form().Command2[1].click();
    expect_copied(other, database_path);
    form().cmdImpExp.click();
    EXPECT_EQ(fake.copy_dialog.asked, std::vector{database_path});
    EXPECT_EQ(first_customer(), "Carla") << "the open database has the new content";
    EXPECT_FALSE(form().cmdImpExp.enabled());
    form().txtOrigine.set_text(database_path);
    EXPECT_TRUE(form().cmdImpExp.enabled()) << "wanted again";
    form().txtDest.set_text(exported);
    expect_copied(database_path, exported);
    form().cmdImpExp.click();
    EXPECT_EQ(bytes_of(exported), bytes_of(database_path));
    EXPECT_TRUE(connected());
    form().CheckBoxImportaEsporta.click();
    EXPECT_FALSE(form().txtOrigine.enabled() || form().cmdImpExp.enabled());
}

TEST_F(DatabaseTools, ACopyThatFailsOrIsGivenUpReopensTheDatabase) {
    form().CheckBoxImportaEsporta.click();
    form().cmdImpExp.click(); // the prompts are no paths
    EXPECT_EQ(fake.copy_dialog.failures.size(), 1U);
    EXPECT_TRUE(connected());
    EXPECT_TRUE(main().session.mnuChiudiDatabase.enabled());

    const std::string other = database_with("altro.mdb", "Carla");
    fake.copy_dialog.answer_replace = false;
    form().txtOrigine.set_text(other);
    form().txtDest.set_text(database_path);
    expect_copied(other, database_path);
    boxes().expect({"La copia non è stata fatta: il file\n" + database_path + "\nnon è stato toccato.",
                    "Tarvello 4", BoxIcon::information});
    form().cmdImpExp.click();
    EXPECT_TRUE(connected());
    EXPECT_EQ(first_customer(), "");
}

} // namespace
} // namespace tarvello
