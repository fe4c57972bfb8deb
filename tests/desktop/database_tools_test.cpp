#include "desktop/desktop_test.h"

#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <csignal>
#include <filesystem>
#include <fstream>

#include <sys/resource.h>

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;

/// While it lives, no file of this process grows beyond so many bytes: writing on fails as on a full disk.
class FullDisk {
public:
    FullDisk() {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = 1'000'000;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit before_{};
};

enum Page { choice_page, backup_page, restore_page, import_page };

const std::string tools = "frmGestioneDatabase";
const std::string copy_failed = "Si è verificato un errore durante il backup. \n"
                                "Se l'errore dovesse ripetersi controllare le impostazioni di backup.";
const std::string settings_saved = "Impostazioni di backup salvate.";

/// The tools of the database in their real windows. A path below a file, as in `below_a_file`, is one that
/// not even the superuser can write to.
class DatabaseToolsOnScreen : public DesktopTest {
protected:
    const std::string database = in_program("tarvello.mdb");
    const std::string below_a_file = in_program("Comuni.mdb/copia.bak");

    std::string in_program(const std::string& name) const { return program_folder() + "/" + name; }
    void open_tools(Page page) {
        user.choose_menu("MDIForm1", "mnuGestioneDatabase");
        user.widget<QTabWidget>(tools, "SSTab1")->setCurrentIndex(page);
        user.settle();
    }
    void add_customer(const std::string& name) {
        program().database().dbConnection.execute("INSERT INTO Clienti (Nome) VALUES ('" + name + "')");
    }
    /// The newest customer of the open database; "(none)" without one.
    std::string newest_customer() {
        Recordset rows;
        rows.open("SELECT * FROM Clienti ORDER BY Numero_Cliente DESC", program().database().dbConnection);
        return rows.eof() ? "(none)" : rows.text_or_empty("Nome");
    }
    /// A copy of the open database with one more customer.
    std::string copy_with(const std::string& name, const std::string& customer) {
        const std::string path = in_program(name);
        fs::copy_file(database, path);
        Connection other(program().regional());
        other.open(path);
        other.execute("INSERT INTO Clienti (Nome, Appunti) VALUES ('" + customer + "', '" +
                      std::string(2'000'000, 'x') + "')");
        return path;
    }
    static std::string bytes_of(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string title() { return qt::from_qt(user.window("MDIForm1")->windowTitle()); }
    std::string route() { return program().session().txtDatabaseRoute.text(); }
    bool connected() { return program().database().dbConnection.is_open(); }

    void choose_database(const std::string& path) {
        open_tools(choice_page);
        user.click(tools, "Option1_1");
        user.type(tools, "Text1", path);
        user.click(tools, "cmdApriDB");
    }
    void back_up_to(const std::string& path) {
        open_tools(backup_page);
        if (user.shown(tools, "CheckBoxBackup") == "0") user.click(tools, "CheckBoxBackup");
        user.click(tools, "OptionDestinazioneBackup");
        user.type(tools, "TxtDestinazioneBackup", path);
        user.expect_box(settings_saved);
        user.click(tools, "cmdSaveBackupSettings");
        user.click(tools, "cmdClose");
    }
    void copy_from_to(const std::string& source, const std::string& destination) {
        user.type(tools, "txtOrigine", source);
        user.type(tools, "txtDest", destination);
        user.click(tools, "cmdImpExp");
        user.expect_none_left();
        EXPECT_FALSE(user.widget(tools, "cmdImpExp")->isEnabled());
    }
    /// Restores the chosen backup under a name; the question is answered with yes.
    void restore_as(const std::string& name) {
        user.expect_modal("frmRipristinaBackup", [this, name] {
            EXPECT_EQ(user.focus(), "Text1");
            EXPECT_EQ(user.shown("frmRipristinaBackup", "Command1"), "Annulla");
            user.type(name);
            EXPECT_EQ(user.shown("frmRipristinaBackup", "Command1"), "OK");
            user.take_picture("frmRipristinaBackup", "strumenti-nome");
            user.press(Qt::Key_Return);
            user.press(Qt::Key_Return);
        });
        user.expect_box("Si conferma l'operazione di ripristino?", Answer::yes);
    }
    void expect_question_of(const std::string& path, Answer answer) {
        user.expect_box("Il file esiste già:\n" + path + "\n\nSostituirlo?", answer);
    }
    static std::string full(const std::string& path) {
        return "Impossibile scrivere il file \"" + path + "\": il file è troppo grande.";
    }
    static std::string below(const std::string& path) {
        return "Impossibile scrivere il file \"" + path + "\": una parte del percorso non è una cartella.";
    }
    void expect_offer_of(const std::string& truth, Answer answer) {
        user.expect_box(truth + "\n\nL'archivio di prima è intatto. Riaprirlo?\n" + database, answer);
    }
    static std::string done(const std::string& headline, const std::string& from, const std::string& to) {
        return headline + "\nOrigine Dati:      " + from + "\nDestinazione:    " + to;
    }
    /// A copy that fails leaves nothing of itself behind.
    void expect_no_debris() {
        for (const auto& entry : fs::directory_iterator(program_folder())) {
            EXPECT_EQ(entry.path().string().find("parziale"), std::string::npos) << entry.path();
        }
    }
};

TEST_F(DatabaseToolsOnScreen, TheBackupAtExitIsSwitchedOnAndOff) {
    start();
    open_tools(backup_page);
    EXPECT_EQ(user.shown(tools, "Label6"), "Disattivato");
    EXPECT_FALSE(user.widget(tools, "cmdSaveBackupSettings")->isEnabled());
    user.click(tools, "CheckBoxBackup");
    EXPECT_EQ(user.shown(tools, "Label6"), "Attivo");
    user.expect_box("Inserire il percorso di destinazione");
    user.click(tools, "cmdSaveBackupSettings");
    user.click(tools, "OptionDestinazioneDefault");
    user.type(tools, "TxtDestinazioneBackup", "x");
    EXPECT_EQ(user.shown(tools, "TxtDestinazioneBackup"), in_program("tarvello.bak")) << "locked";
    user.take_picture("MDIForm1", "strumenti-backup");
    user.expect_box(settings_saved);
    user.click(tools, "cmdSaveBackupSettings");
    user.click(tools, "cmdClose");
    add_customer("Anna");
    finish();
    const std::string first = bytes_of(in_program("tarvello.bak"));
    EXPECT_EQ(first, bytes_of(database));

    start();
    open_tools(backup_page);
    EXPECT_EQ(user.shown(tools, "CheckBoxBackup"), "1");
    EXPECT_EQ(user.shown(tools, "OptionDestinazioneDefault"), "1");
    user.click(tools, "CheckBoxBackup");
    EXPECT_FALSE(user.widget(tools, "TxtDestinazioneBackup")->isEnabled());
    user.expect_box("Le impostazioni di backup sono state modificate\nSalvare le nuove impostazioni?",
                    Answer::yes);
    user.expect_box(settings_saved);
    user.click(tools, "cmdClose");
    EXPECT_FALSE(user.is_shown(tools));
    add_customer("Bruno");
    finish();
    EXPECT_EQ(bytes_of(in_program("tarvello.bak")), first) << "switched off, the older copy stays";
    start();
    EXPECT_FALSE(program().session().CheckBoxBackup.checked());
    finish();
}

TEST_F(DatabaseToolsOnScreen, ABackupThatFailsResetsTheRoute) {
    start();
    const std::string other = copy_with("altro.mdb", "Carla");
    const auto work_on_the_other = [&] {
        user.expect_box("Nuovo database caricato.");
        choose_database(other);
        EXPECT_EQ(title(), "Tarvello 4 - [" + other + "]");
        user.click(tools, "cmdClose");
    };
    work_on_the_other();
    back_up_to(below_a_file);
    user.expect_box(copy_failed);
    finish();
    start();
    EXPECT_EQ(route(), database);
    EXPECT_EQ(newest_customer(), "(none)");

    work_on_the_other();
    std::ofstream(in_program("vecchio.bak")) << "an older backup";
    back_up_to(in_program("vecchio.bak"));
    {
        const FullDisk full_disk;
        user.expect_box(copy_failed);
        finish();
    }
    EXPECT_EQ(bytes_of(in_program("vecchio.bak")), "an older backup");
    expect_no_debris();
    start();
    EXPECT_EQ(route(), database);

    // Without a destination there is a warning, and the route stays.
    work_on_the_other();
    open_tools(backup_page);
    user.click(tools, "OptionDestinazioneBackup");
    user.type(tools, "TxtDestinazioneBackup", "");
    user.close_window(tools); // its close box asks nothing
    user.expect_box("Impossibile eseguire il backup. Nessuna destinazione impostata.\n"
                    " Le impostazioni di backup saranno riconfigurate automaticamente al prossimo avvio.");
    finish();
    start();
    EXPECT_EQ(route(), other);
    user.expect_box("Chiudere: " + other + "?", Answer::yes);
    user.choose_menu("MDIForm1", "mnuChiudiDatabase");
    finish(); // a closed database is backed up as well, to the destination that was saved
    EXPECT_EQ(bytes_of(in_program("vecchio.bak")), bytes_of(other));
}

TEST_F(DatabaseToolsOnScreen, ABackupIsRestoredOverTheOpenDatabase) {
    start();
    fs::create_directory(in_program("vecchi"));
    const std::string backup = copy_with("vecchi/copia.bak", "Anna");
    open_tools(restore_page);
    user.click(tools, "CheckBoxRipristinaBackup");
    auto* list = user.widget<QTreeView>(tools, "ListView1");
    const auto row_of = [&](const std::string& path) {
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            if (list->model()->index(row, 0).data().toString() == qt::to_qt(path)) return row;
        }
        ADD_FAILURE() << "not in the list: " << path;
        return 0;
    };
    user.double_click(tools, "ListView1", row_of(in_program("vecchi")));
    EXPECT_EQ(user.shown(tools, "txtLocalFolder"), in_program("vecchi"));
    user.double_click(tools, "ListView1", row_of(".."));
    EXPECT_EQ(user.shown(tools, "txtLocalFolder"), program_folder());
    user.double_click(tools, "ListView1", row_of(in_program("vecchi")));
    user.double_click(tools, "ListView1", row_of(backup)); // a file is chosen, nothing opens
    EXPECT_EQ(user.shown(tools, "txtSelectedFile"), backup);
    user.take_picture("MDIForm1", "strumenti-ripristino");

    user.expect_modal("frmRipristinaBackup", [&] { user.click("frmRipristinaBackup", "Command1"); });
    user.click(tools, "Command5"); // no name, no question
    user.expect_none_left();
    EXPECT_TRUE(connected());

    const std::string before = bytes_of(database);
    {
        const FullDisk full_disk;
        restore_as("tarvello.mdb");
        expect_question_of(database, Answer::yes);
        user.expect_box(full(database));
        expect_offer_of("Il ripristino non è stato fatto: il file\n" + database +
                            "\nnon è stato toccato. Nessun archivio è aperto.",
                        Answer::no);
        user.click(tools, "Command5");
        user.expect_none_left();
    }
    EXPECT_EQ(bytes_of(database), before);
    expect_no_debris();
    EXPECT_FALSE(connected()) << "until the user opens one again";
    restore_as("Comuni.mdb/ripreso.mdb");
    user.expect_box(below(in_program("Comuni.mdb/ripreso.mdb")));
    expect_offer_of("Il ripristino non è stato fatto e nessun archivio è aperto.", Answer::yes);
    user.click(tools, "Command5");
    user.expect_none_left();
    EXPECT_EQ(route(), database);
    EXPECT_TRUE(connected());

    restore_as("tarvello.mdb");
    expect_question_of(database, Answer::yes);
    user.expect_box(done("Ripristino file di backup completato.", backup, database));
    user.click(tools, "Command5");
    user.expect_none_left();
    EXPECT_EQ(newest_customer(), "Anna");
    EXPECT_EQ(bytes_of(database), bytes_of(backup));

    restore_as("ripreso");
    user.expect_box(done("Ripristino file di backup completato.", backup, in_program("ripreso")));
    user.click(tools, "Command5");
    user.expect_none_left();
    EXPECT_EQ(title(), "Tarvello 4 - [" + in_program("ripreso") + "]") << "no extension is added";
    EXPECT_TRUE(connected());
    finish();
}

TEST_F(DatabaseToolsOnScreen, DatabasesAreImportedAndExported) {
    start();
    const std::string other = copy_with("altro.mdb", "Carla");
    const std::string exported = in_program("esportato.mdb");
    open_tools(import_page);
    user.click(tools, "CheckBoxImportaEsporta");
    user.click(tools, "txtOrigine");
    EXPECT_EQ(user.shown(tools, "txtOrigine"), "") << "the prompt goes when the field is reached";

    {
        const FullDisk full_disk;
        expect_question_of(database, Answer::yes);
        user.expect_box(full(database));
        copy_from_to(other, database);
    }
    expect_no_debris();
    EXPECT_EQ(newest_customer(), "(none)") << "open again, as it was";
    user.expect_box(below(below_a_file));
    copy_from_to(database, below_a_file);
    user.expect_box("Impossibile leggere il file \"" + in_program("manca.mdb") +
                    "\": il file o la cartella non esiste.");
    copy_from_to(in_program("manca.mdb"), exported);
    EXPECT_TRUE(connected());

    expect_question_of(database, Answer::no); // giving up is no failure
    user.expect_box(done("Copia file completata", other, database));
    user.expect_box("La copia non è stata fatta: il file\n" + database + "\nnon è stato toccato.");
    copy_from_to(other, database);
    EXPECT_EQ(newest_customer(), "(none)");
    expect_question_of(database, Answer::yes);
    user.expect_box(done("Copia file completata", other, database));
    copy_from_to(other, database);
    EXPECT_EQ(newest_customer(), "Carla") << "the open database has the new content";
    EXPECT_EQ(route(), database);

    user.expect_box(done("Copia file completata", database, exported));
    copy_from_to(database, exported);
    EXPECT_EQ(bytes_of(exported), bytes_of(database));
    {
        const FullDisk full_disk;
        const std::string before = bytes_of(exported);
        expect_question_of(exported, Answer::yes);
        user.expect_box(full(exported));
        copy_from_to(database, exported);
        EXPECT_EQ(bytes_of(exported), before);
    }
    user.expect_file_dialog(other);
    user.click(tools, "Command2_0");
    EXPECT_EQ(user.shown(tools, "txtOrigine"), other);
    EXPECT_TRUE(user.widget(tools, "cmdImpExp")->isEnabled());
    user.take_picture("MDIForm1", "strumenti-importa");
    finish();
}

TEST_F(DatabaseToolsOnScreen, AnotherDatabaseIsChosen) {
    start();
    const std::string other = copy_with("altro.mdb", "Carla");
    open_tools(choice_page);
    EXPECT_EQ(user.shown(tools, "Option1_0"), "1") << "the one that is open";
    EXPECT_FALSE(user.widget(tools, "Text1")->isEnabled());
    user.click(tools, "Option1_1");
    user.expect_box("Selezionare il database.");
    user.click(tools, "cmdApriDB");
    user.expect_file_dialog(other);
    user.click(tools, "Command1");
    user.expect_box("Nuovo database caricato.");
    user.click(tools, "cmdApriDB");
    user.expect_none_left();
    EXPECT_EQ(user.shown(tools, "txtPercorsoDatabase"), other);
    EXPECT_EQ(newest_customer(), "Carla");
    user.take_picture("MDIForm1", "strumenti-database");

    fs::rename(database, database + ".via");
    user.click(tools, "Option1_0");
    user.click(tools, "cmdApriDB"); // not a word, and no database
    EXPECT_FALSE(connected());
    EXPECT_FALSE(program().session().mnuChiudiDatabase.enabled());
    EXPECT_EQ(title(), "Tarvello 4 - [" + database + "]");
    user.move_mouse_over("MDIForm1", "Image1");
    EXPECT_FALSE(user.widget("MDIForm1", "Label2_0")->isEnabled());
    EXPECT_TRUE(user.widget("MDIForm1", "Label2_3")->isEnabled());

    fs::rename(database + ".via", database);
    user.expect_box("Nuovo database caricato.");
    user.click(tools, "cmdApriDB");
    user.expect_none_left();
    EXPECT_TRUE(connected());
    user.click(tools, "cmdClose");
    user.expect_box("Nuovo database caricato.");
    choose_database(other);
    finish();
    EXPECT_NE(bytes_of(settings_file()).find("text\t\\p/altro.mdb\n"), std::string::npos)
        << "a portable program takes the route along";
    start();
    EXPECT_EQ(route(), other);
    open_tools(choice_page);
    EXPECT_EQ(user.shown(tools, "Option1_1"), "1");
    finish();
}

TEST_F(DatabaseToolsOnScreen, ALongCopyShowsItselfAndIsGivenUpWithEscape) {
    start();
    CopyDialog& dialog = program().platform().copy_dialog;
    const std::string title = "Copia /una/cartella/dal/nome/lungo/che/non/finisce/mai/e/poi/mai/tarvello.mdb";
    user.expect_modal("", [&] {
        EXPECT_EQ(qt::from_qt(QApplication::activeModalWidget()->windowTitle()), title);
        user.press(Qt::Key_Escape);
    });
    dialog.begin(title);
    EXPECT_TRUE(dialog.advance(1, 100));
    QTest::qWait(600);
    EXPECT_FALSE(dialog.advance(2, 100));
    dialog.end();
    user.expect_none_left();
    finish();
}

TEST_F(DatabaseToolsOnScreen, ANewArchiveIsMadeByTheKeyboardAlone) {
    start();
    add_customer("Anna");
    open_tools(choice_page);
    const std::string dialog = "frmNuovoArchivio";
    user.take_picture("MDIForm1", "strumenti-database");
    user.expect_modal(dialog, [&] {
        EXPECT_EQ(user.focus(), "OptionFormato_0");
        user.press(Qt::Key_Down);
        EXPECT_EQ(user.shown(dialog, "OptionFormato_1"), "1");
        user.press(Qt::Key_Tab);
        EXPECT_EQ(user.focus(), "CheckDatiAttuali");
        user.press(Qt::Key_Tab);
        user.type("per Access");
        user.take_picture(dialog, "strumenti-nuovo-archivio");
        user.press(Qt::Key_Tab);
        user.press(Qt::Key_Tab);
        EXPECT_EQ(user.focus(), "cmdCrea");
        user.press(Qt::Key_Space);
    });
    const std::string made = in_program("per Access.mdb");
    user.expect_box("Il nuovo archivio è pronto:\n" + made + "\nAprirlo adesso?", Answer::yes);
    user.expect_box("Nuovo database caricato.");
    user.click(tools, "cmdNuovoArchivio");
    user.expect_none_left();
    EXPECT_EQ(title(), "Tarvello 4 - [" + made + "]");
    EXPECT_EQ(newest_customer(), "Anna");
    finish();
}

} // namespace
} // namespace tarvello::testing
