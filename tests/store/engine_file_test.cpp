// Files that are taken away, overwritten or closed to this user while the program has them: on each engine.

#include "store/store_fixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class EngineFileTest : public ::testing::TestWithParam<EngineKind>, protected FileOfInvoices {
protected:
    EngineFileTest() : FileOfInvoices(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Engines, EngineFileTest, ::testing::ValuesIn(engine_kinds), name_of_kind);

TEST_P(EngineFileTest, AFileWithoutReadPermissionDoesNotOpen) {
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_THAT(open_failure(path), HasSubstr("permessi")) << "also for the super-user";
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    if (::geteuid() != 0) return;
    ASSERT_EQ(::chmod(folder.path.c_str(), 0755), 0);
    const AsOrdinaryUser someone_else;
    EXPECT_THAT(open_failure(path), HasSubstr("permessi"));
}

TEST_P(EngineFileTest, AReadOnlyFileIsReadAndNotWritten) {
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    const std::string before = bytes_of(path);
    const auto try_it = [&] {
        connection.open(path);
        EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 40U);
        EXPECT_THAT(write_failure(), HasSubstr("sola lettura"));
        EXPECT_EQ(run(connection, "SELECT * FROM Fatture WHERE Nome='cambiato'").size(), 0U);
        connection.close();
    };
    try_it();
    ASSERT_EQ(::chmod(folder.path.c_str(), 0555), 0);
    {
        const AsOrdinaryUser someone_else;
        try_it();
        EXPECT_EQ(folder.names(), std::vector<std::string>{"archivio.mdb"});
    }
    ASSERT_EQ(::chmod(folder.path.c_str(), 0755), 0);
    EXPECT_EQ(bytes_of(path), before);
}

TEST_P(EngineFileTest, AFolderThatTakesNoJournalMakesWritesFail) {
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(folder.path.c_str(), 0555), 0);
    {
        const AsOrdinaryUser someone_else;
        connection.open(path);
        EXPECT_THAT(write_failure(), AllOf(HasSubstr("cartella"), HasSubstr("\"" + path + "\"")));
        connection.close();
    }
    ASSERT_EQ(::chmod(folder.path.c_str(), 0755), 0);
}

TEST_P(EngineFileTest, AFileTakenAwayUnderTheProgramFailsAndTheNewOneIsLeftAlone) {
    Recordset half_read;
    connection.open(path);
    half_read.open("SELECT * FROM Fatture", connection);
    const std::string whole = bytes_of(path);

    std::filesystem::remove(path);
    EXPECT_THAT(write_failure(), HasSubstr("sostituito"));
    EXPECT_THROW(run(connection, "SELECT * FROM Fatture"), Failure);
    EXPECT_FALSE(std::filesystem::exists(path));

    write_bytes(path, whole);
    EXPECT_THAT(write_failure(), HasSubstr("sostituito"));
    EXPECT_EQ(bytes_of(path), whole);
    EXPECT_EQ(half_read.text("ID"), "1") << "a row once read stays readable";
    half_read.close();
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb"));

    connection.close();
    connection.open(path);
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 40U);
}

TEST_P(EngineFileTest, AFileOverwrittenInPlaceFailsOrIsReadAnew) {
    const std::string whole = bytes_of(path);
    connection.open(path);
    run(connection, "SELECT * FROM Fatture");
    write_bytes(path, "garbage");
    EXPECT_THROW(run(connection, "SELECT * FROM Fatture"), Failure);
    write_failure();
    write_bytes(path, std::string(whole.size(), '\x7f'));
    EXPECT_THROW(run(connection, "SELECT * FROM Fatture"), Failure);
    write_failure();
    write_bytes(path, "");
    EXPECT_THROW(run(connection, "SELECT * FROM Fatture"), Failure);
    EXPECT_THROW(run(connection, insert_of_invoice(41)), Failure);
    write_bytes(path, whole);
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 40U);
}

TEST_P(EngineFileTest, AFileMadeReadOnlyUnderTheProgramRefusesWrites) {
    connection.open(path);
    run(connection, insert_of_invoice(41));
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_THAT(write_failure(), HasSubstr("sola lettura"));
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 41U);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    run(connection, insert_of_invoice(42));
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 42U);
}

} // namespace
} // namespace tarvello::testing
