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

TEST_F(DatabaseTools, AFailedRestoreLeavesTheConnectionClosed) {
    form().CheckBoxRipristinaBackup.click();
    windows().expect_modal("frmRipristinaBackup", [](Form& dialog) {
        dynamic_cast<frmRipristinaBackup&>(dialog).Text1.type("ripreso");
    });
    boxes().expect("Si conferma l'operazione di ripristino?", Answer::yes);
    form().Command5.click(); // no file was chosen
    EXPECT_FALSE(connected());
    EXPECT_EQ(main().session.txtDatabaseRoute.text(), database_path);
    EXPECT_EQ(fake.copy_dialog.failures.size(), 1U) << "the copy itself says why";
}

TEST_F(DatabaseTools, ACopyThatFailsReopensTheDatabase) {
    form().CheckBoxImportaEsporta.click();
    form().cmdImpExp.click(); // the prompts are no paths
    EXPECT_EQ(fake.copy_dialog.failures.size(), 1U);
    EXPECT_TRUE(connected());
    EXPECT_TRUE(main().session.mnuChiudiDatabase.enabled());
}

} // namespace
} // namespace tarvello
