#include "desktop/desktop_test.h"

#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <filesystem>
#include <fstream>

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;

enum Page { choice_page, backup_page, restore_page, import_page };

const std::string tools = "frmGestioneDatabase";

/// The tools of the database in their real windows.
class DatabaseToolsOnScreen : public DesktopTest {
protected:
    const std::string database = in_program("tarvello.mdb");

    DatabaseToolsOnScreen() { start(); }
    ~DatabaseToolsOnScreen() override { finish(); }

    std::string in_program(const std::string& name) const { return program_folder() + "/" + name; }
    void open_tools(Page page) {
        user.choose_menu("MDIForm1", "mnuGestioneDatabase");
        user.widget<QTabWidget>(tools, "SSTab1")->setCurrentIndex(page);
        user.settle();
    }
    /// The customer of the open database; "(none)" without one.
    std::string customer() {
        Recordset rows;
        rows.open("SELECT * FROM Clienti", program().database().dbConnection);
        return rows.eof() ? "(none)" : rows.text_or_empty("Nome");
    }
    /// A copy of the open database with one customer.
    std::string copy_with(const std::string& name, const std::string& customer) {
        fs::create_directories(fs::path(in_program(name)).parent_path());
        fs::copy_file(database, in_program(name));
        Connection other(program().regional());
        other.open(in_program(name));
        other.execute("INSERT INTO Clienti (Nome) VALUES ('" + customer + "')");
        return in_program(name);
    }
    void press_and_expect_all(const char* button) {
        user.click(tools, button);
        user.expect_none_left();
    }
    std::string title() { return qt::from_qt(user.window("MDIForm1")->windowTitle()); }
};

TEST_F(DatabaseToolsOnScreen, TheBackupAtExitIsSwitchedOn) {
    open_tools(backup_page);
    user.click(tools, "CheckBoxBackup");
    EXPECT_EQ(user.shown(tools, "Label6"), "Attivo");
    user.click(tools, "OptionDestinazioneDefault");
    user.type(tools, "TxtDestinazioneBackup", "x");
    EXPECT_EQ(user.shown(tools, "TxtDestinazioneBackup"), in_program("tarvello.bak")) << "locked";
    user.take_picture("MDIForm1", "strumenti-backup");
    user.click(tools, "OptionDestinazioneBackup");
    user.type(tools, "TxtDestinazioneBackup", in_program("mia.bak"));
    user.expect_box("Impostazioni di backup salvate.");
    press_and_expect_all("cmdSaveBackupSettings");
    finish();
    EXPECT_TRUE(fs::exists(in_program("mia.bak")));
    start();
    open_tools(backup_page);
    EXPECT_EQ(user.shown(tools, "CheckBoxBackup"), "1");
    user.click(tools, "CheckBoxBackup");
    EXPECT_FALSE(user.widget(tools, "TxtDestinazioneBackup")->isEnabled());
}

TEST_F(DatabaseToolsOnScreen, ABackupIsRestoredOverTheOpenDatabase) {
    const std::string backup = copy_with("vecchi/copia.bak", "Anna");
    open_tools(restore_page);
    user.click(tools, "CheckBoxRipristinaBackup");
    auto* list = user.widget<QTreeView>(tools, "ListView1");
    const auto open_row = [&](const std::string& path) {
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            if (list->model()->index(row, 0).data().toString() == qt::to_qt(path))
                return user.double_click(tools, "ListView1", row);
        }
        ADD_FAILURE() << "not in the list: " << path;
    };
    open_row(in_program("vecchi"));
    open_row("..");
    EXPECT_EQ(user.shown(tools, "txtLocalFolder"), program_folder());
    open_row(in_program("vecchi"));
    open_row(backup); // a file is chosen, nothing opens
    EXPECT_EQ(user.shown(tools, "txtSelectedFile"), backup);
    user.take_picture("MDIForm1", "strumenti-ripristino");

    const std::string dialog = "frmRipristinaBackup";
    const auto type_name = [&](const std::string& name) {
        user.expect_modal(dialog, [this, name, dialog] {
            EXPECT_EQ(user.focus(), "Text1");
            EXPECT_EQ(user.shown(dialog, "Command1"), "Annulla");
            user.type(name);
            EXPECT_EQ(user.shown(dialog, "Command1"), "OK");
            user.take_picture(dialog, "strumenti-nome");
            user.press(Qt::Key_Return);
            user.press(Qt::Key_Return);
        });
        user.expect_box("Si conferma l'operazione di ripristino?", Answer::yes);
    };
    type_name("Comuni.mdb/ripreso.mdb"); // below a file not even the superuser can write
    user.expect_box("Impossibile scrivere il file \"" + in_program("Comuni.mdb/ripreso.mdb") +
                    "\": una parte del percorso non è una cartella.");
    user.expect_box("Il ripristino non è stato fatto e nessun archivio è aperto.\n\nL'archivio di prima è "
                    "intatto. Riaprirlo?\n" +
                        database,
                    Answer::yes);
    press_and_expect_all("Command5");
    type_name("tarvello.mdb");
    user.expect_box("Il file esiste già:\n" + database + "\n\nSostituirlo?", Answer::yes);
    user.expect_box("Ripristino file di backup completato.\nOrigine Dati:      " + backup +
                    "\nDestinazione:    " + database);
    press_and_expect_all("Command5");
    EXPECT_EQ(customer(), "Anna");
}

TEST_F(DatabaseToolsOnScreen, AnotherDatabaseIsChosenAndExported) {
    const std::string other = copy_with("altro.mdb", "Carla");
    const std::string exported = in_program("esportato.mdb");
    open_tools(choice_page);
    EXPECT_EQ(user.shown(tools, "Option1_0"), "1") << "the one that is open";
    user.click(tools, "Option1_1");
    user.expect_file_dialog(other);
    user.click(tools, "Command1");
    user.expect_box("Nuovo database caricato.");
    press_and_expect_all("cmdApriDB");
    EXPECT_EQ(title(), "Tarvello 4 - [" + other + "]");
    user.take_picture("MDIForm1", "strumenti-database");

    user.widget<QTabWidget>(tools, "SSTab1")->setCurrentIndex(import_page);
    user.click(tools, "CheckBoxImportaEsporta");
    user.click(tools, "txtOrigine");
    EXPECT_EQ(user.shown(tools, "txtOrigine"), "") << "the prompt goes when the field is reached";
    user.expect_file_dialog(other);
    user.click(tools, "Command2_0");
    EXPECT_EQ(user.shown(tools, "txtOrigine"), other);
    user.type(tools, "txtDest", exported);
    user.take_picture("MDIForm1", "strumenti-importa");
    user.expect_box("Copia file completata\nOrigine Dati:      " + other + "\nDestinazione:    " + exported);
    press_and_expect_all("cmdImpExp");
    EXPECT_TRUE(fs::exists(exported));
    finish();

    std::ifstream settings(settings_file());
    const std::string kept(std::istreambuf_iterator<char>(settings), {});
    EXPECT_NE(kept.find("text\t\\p/altro.mdb\n"), std::string::npos) << "a portable program takes it along";
    start();
    EXPECT_EQ(program().session().txtDatabaseRoute.text(), other);
    EXPECT_EQ(customer(), "Carla");
}

TEST_F(DatabaseToolsOnScreen, ALongCopyShowsItselfAndIsGivenUpWithEscape) {
    CopyDialog& dialog = program().platform().copy_dialog;
    const std::string title = "Copia /una/cartella/dal/nome/lungo/che/non/finisce/mai/e/poi/mai/tarvello.mdb";
    user.expect_modal("", [&] {
        EXPECT_EQ(qt::from_qt(QApplication::activeModalWidget()->windowTitle()), title);
        user.press(Qt::Key_Escape);
    });
    dialog.begin(title);
    EXPECT_TRUE(dialog.advance(1, 100));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.advance(2, 100); }));
    dialog.end();
    user.expect_none_left();
}

TEST_F(DatabaseToolsOnScreen, ANewArchiveIsMadeByTheKeyboardAlone) {
    program().database().dbConnection.execute("INSERT INTO Clienti (Nome) VALUES ('Anna')");
    open_tools(choice_page);
    const std::string dialog = "frmNuovoArchivio";
    user.expect_modal(dialog, [&] {
        EXPECT_EQ(user.focus(), "OptionFormato_0");
        user.press(Qt::Key_Down);
        EXPECT_EQ(user.shown(dialog, "OptionFormato_1"), "1");
        user.press(Qt::Key_Tab);
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
    press_and_expect_all("cmdNuovoArchivio");
    EXPECT_EQ(title(), "Tarvello 4 - [" + made + "]");
    EXPECT_EQ(customer(), "Anna");
}

} // namespace
} // namespace tarvello::testing
