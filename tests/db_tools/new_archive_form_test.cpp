#include "db_tools/new_archive_form.h"

#include "db_tools/database_form.h"
#include "support/program_test.h"

#include <filesystem>
#include <fstream>

namespace tarvello {
namespace {

struct NewArchive : testing::ProgramTest {
    frmGestioneDatabase& tools() { return program->form<frmGestioneDatabase>(); }
    std::string in_folder(const std::string& name) { return fake.program_directory + "/" + name; }
    std::string route() { return program->form<MDIForm1>().session.txtDatabaseRoute.text(); }

    /// Opens the dialog by its button. @param act  leaves it open, or not: then it is closed by its close box
    void with_dialog(const std::function<void(frmNuovoArchivio&)>& act) {
        windows().expect_modal("frmNuovoArchivio",
                               [act](Form& form) { act(dynamic_cast<frmNuovoArchivio&>(form)); });
        tools().cmdNuovoArchivio.click();
    }
    void expect_question_of(const std::string& path, Answer answer) {
        boxes().expect("Il nuovo archivio è pronto:\n" + path + "\nAprirlo adesso?", answer);
    }
    static char first_byte(const std::string& path) { return static_cast<char>(std::ifstream(path).get()); }
};

TEST_F(NewArchive, CarriesTheRowsOverIntoEitherFormat) {
    given_customer({{"Nome", "Anna"}});
    const auto customers = sql("SELECT * FROM Clienti");
    // There, and back again.
    for (const std::size_t format : {frmNuovoArchivio::access_format, frmNuovoArchivio::own_format}) {
        SCOPED_TRACE(format);
        const std::string name = "nuovo " + std::to_string(format);
        const std::string made = in_folder(name + ".mdb");
        const std::string before = route();
        expect_question_of(made, Answer::yes);
        boxes().expect("Nuovo database caricato.");
        with_dialog([&](frmNuovoArchivio& dialog) {
            dialog.OptionFormato[format].click();
            dialog.txtFile.type(" " + name);
            dialog.cmdCrea.click();
        });
        EXPECT_EQ(route(), made);
        EXPECT_EQ(tools().txtPercorsoDatabase.text(), made);
        EXPECT_EQ(sql("SELECT * FROM Clienti"), customers);
        EXPECT_EQ(first_byte(made), format == frmNuovoArchivio::own_format ? 'S' : '\0');
        EXPECT_TRUE(std::filesystem::exists(before));
    }
    EXPECT_TRUE(fake.copy_dialog.failures.empty());
}

TEST_F(NewArchive, IsEmptyIfNothingIsToBeCarriedOver) {
    given_customer();
    const std::string made = in_folder("vuoto.tar");
    expect_question_of(made, Answer::no);
    with_dialog([&](frmNuovoArchivio& dialog) {
        EXPECT_TRUE(dialog.OptionFormato[frmNuovoArchivio::own_format].selected());
        dialog.CheckDatiAttuali.click();
        fake.dialogs.answer_next(made);
        dialog.cmdSfoglia.click();
        dialog.cmdCrea.click();
    });
    EXPECT_EQ(route(), database_path);
    Connection other(program->regional());
    other.open(made);
    EXPECT_FALSE(other.execute("SELECT * FROM Clienti")->next());

    program->database().dbConnection.close();
    with_dialog([](frmNuovoArchivio& dialog) {
        EXPECT_FALSE(dialog.CheckDatiAttuali.enabled());
        EXPECT_FALSE(dialog.CheckDatiAttuali.checked());
        dialog.cmdAnnulla.click();
    });
}

TEST_F(NewArchive, StaysOpenUntilOneIsMade) {
    given_customer();
    with_dialog([&](frmNuovoArchivio& dialog) {
        boxes().expect("Indicare il nome del nuovo archivio.");
        dialog.cmdCrea.click();
        EXPECT_EQ(dialog.focus(), &dialog.txtFile);
        dialog.txtFile.type(database_path);
        dialog.cmdCrea.click();
        ASSERT_EQ(fake.copy_dialog.failures.size(), 1U);
        EXPECT_NE(fake.copy_dialog.failures[0].find("esiste già"), std::string::npos);
        EXPECT_TRUE(dialog.loaded());
    });
    EXPECT_EQ(sql("SELECT * FROM Clienti").size(), 1U);
    EXPECT_EQ(route(), database_path);
}

} // namespace
} // namespace tarvello
