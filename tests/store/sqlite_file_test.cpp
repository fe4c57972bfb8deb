// Files as they come from users: missing, damaged, locked, taken away under the running program.

#include "store/store_fixture.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace tarvello::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Any other SQLite program, one that knows nothing of ours.
class OtherProgram {
public:
    explicit OtherProgram(const std::string& path) {
        EXPECT_EQ(sqlite3_open_v2(path.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(database_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    /// @return the first value of the first row, or what went wrong
    std::string run(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        std::string result;
        if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            return sqlite3_errmsg(database_);
        const int code = sqlite3_step(statement);
        if (code == SQLITE_ROW) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
            result = text ? text : "(null)";
        } else if (code != SQLITE_DONE) {
            result = sqlite3_errmsg(database_);
        }
        sqlite3_finalize(statement);
        return result;
    }

private:
    sqlite3* database_ = nullptr;
};

class SqliteFileTest : public ::testing::Test, protected FileOfInvoices {
protected:
    SqliteFileTest() : FileOfInvoices(engine_kinds[0]) {}
};

TEST_F(SqliteFileTest, WhatIsNoDatabaseDoesNotOpenAndStaysAsItIs) {
    const std::string whole = bytes_of(path);
    std::string damaged_inside = whole;
    constexpr std::size_t page = 4096;
    for (std::size_t at = whole.size() / page / 2 * page; at < whole.size(); at += page)
        damaged_inside.replace(at, 16, std::string(16, '\xa5'));
    std::string damaged_head = whole;
    damaged_head.replace(16, 84, std::string(84, '\xff'));
    const std::vector<std::pair<std::string, std::string>> files{
        {"vuoto.mdb", ""},
        {"testo.mdb", "Fattura n. 1"},
        {"quasi.mdb", whole.substr(0, 16)},
        {"testa.mdb", whole.substr(0, 100)},
        {"tronco.mdb", whole.substr(0, whole.size() / 2)},
        {"guasto.mdb", damaged_inside},
        {"guasto-in-testa.mdb", damaged_head},
        {"altro.mdb", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(4096, '\0')}};
    for (const auto& [name, bytes] : files) write_bytes(folder.in(name), bytes);
    ASSERT_EQ(::mkfifo(folder.in("tubo.mdb").c_str(), 0600), 0);
    const auto names = folder.names();

    for (const auto& [name, bytes] : files) {
        SCOPED_TRACE(name);
        open_failure(folder.in(name));
        EXPECT_FALSE(connection.is_open());
        EXPECT_EQ(bytes_of(folder.in(name)), bytes);
    }
    EXPECT_THAT(open_failure(folder.in("guasto.mdb")), HasSubstr("danneggiato"));
    EXPECT_THAT(open_failure(folder.in("nessuno.mdb")), HasSubstr("non esiste"));
    EXPECT_THAT(open_failure(folder.in("archivio.mdb/x")), HasSubstr("non"));
    EXPECT_THAT(open_failure(folder.in("")), HasSubstr("non è un file"));
    EXPECT_THAT(open_failure(folder.in("tubo.mdb")), HasSubstr("non è un file"));
    open_failure("");
    open_failure(":memory:");
    open_failure("file:" + path + "?mode=memory");
    open_failure(path + std::string(1, '\0') + "x");
    EXPECT_EQ(folder.names(), names) << "nothing was created";
}

TEST_F(SqliteFileTest, AFileWithoutTheTablesOpens) {
    const std::string other = folder.in("altro.mdb");
    write_bytes(other, "");
    EXPECT_EQ(OtherProgram(other).run("CREATE TABLE Note (Testo TEXT)"), "");
    connection.open(other);
    EXPECT_THAT(failure_of([&] { run(connection, "SELECT * FROM Clienti"); }), HasSubstr("Clienti"));
    EXPECT_THAT(failure_of([&] { run(connection, insert_of_invoice(1)); }), HasSubstr("Fatture"));
}

TEST_F(SqliteFileTest, AnotherProgramMayReadWriteAndChangeTheTables) {
    connection.open(path);
    run(connection, "INSERT INTO Clienti (Nome,Codice_Fiscale) VALUES ('nostro','CITTÀ')");
    {
        OtherProgram other(path);
        EXPECT_EQ(other.run("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(other.run("PRAGMA journal_mode"), "delete");
        EXPECT_EQ(other.run("SELECT Nome FROM Clienti WHERE Codice_Fiscale='CITTÀ' COLLATE NOCASE"),
                  "nostro");
        EXPECT_EQ(
            other.run("INSERT INTO Clienti (Nome, Codice_Fiscale, CAP) VALUES ('suo', 'Città', x'3031')"),
            "");
    }
    const char* const both = "SELECT * FROM Clienti WHERE Codice_Fiscale='città'";
    EXPECT_THAT(column(connection, both, "Nome"), ElementsAre("nostro", "suo"));
    EXPECT_EQ(column(connection, both + std::string(" AND Nome='SUO'"), "CAP"),
              std::vector<std::string>{"01"});

    OtherProgram(path).run("ALTER TABLE Clienti RENAME COLUMN Appunti TO Note");
    run(connection, "SELECT * FROM Fatture");
    EXPECT_THROW(run(connection, both), Failure) << "what was known of the table no longer holds";
    EXPECT_THAT(column(connection, both, "Nome"), ElementsAre("nostro", "suo")) << "and is then learned anew";
    EXPECT_EQ(OtherProgram(path).run("PRAGMA integrity_check"), "ok");
}

TEST_F(SqliteFileTest, AFileOfSixteenBitTextsReadsAsAnyOther) {
    const std::string other = folder.in("utf16.mdb");
    write_bytes(other, "");
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(other.c_str(), &database), SQLITE_OK);
    ASSERT_EQ(
        sqlite3_exec(database,
                     "PRAGMA encoding='UTF-16le'; CREATE TABLE Clienti (Numero_Cliente INTEGER PRIMARY KEY, "
                     "Città TEXT, Nato DATE); INSERT INTO Clienti VALUES (1, 'Forlì', '1980-01-02')",
                     nullptr, nullptr, nullptr),
        SQLITE_OK);
    sqlite3_close(database);
    connection.open(other);
    const char* const by_town = "SELECT * FROM Clienti WHERE CITTÀ='FORLÌ' AND Città LIKE '%RLÌ'";
    EXPECT_THAT(run(connection, by_town), ElementsAre(Row{"1", "Forlì", "02/01/1980"}));
}

TEST_F(SqliteFileTest, RowsThatAnotherProgramLeftBesideTheFileAreBroughtIn) {
    const std::string left = folder.in("lasciato.mdb");
    {
        OtherProgram other(path);
        EXPECT_EQ(other.run("PRAGMA journal_mode = WAL"), "wal");
        EXPECT_EQ(other.run("INSERT INTO Clienti (Nome) VALUES ('suo')"), "");
        EXPECT_THAT(open_failure(path), HasSubstr("in uso")) << "a copy would miss what it writes";
        for (const char* part : {"", "-wal"}) write_bytes(left + part, bytes_of(path + part));
    }
    connection.open(left);
    run(connection, insert_of_invoice(41));
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "lasciato.mdb"));
    write_bytes(path, bytes_of(left));
    connection.close();
    connection.open(path);
    EXPECT_THAT(column(connection, "SELECT * FROM Clienti", "Nome"), ElementsAre("suo"));
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 41U);
}

TEST_F(SqliteFileTest, AFileThatAnotherProgramHasLockedFailsAndWorksAgainAfterwards) {
    connection.open(path);
    {
        OtherProgram other(path);
        EXPECT_EQ(other.run("BEGIN EXCLUSIVE"), "");
        EXPECT_THAT(failure_of([&] { run(connection, "SELECT * FROM Fatture"); }), HasSubstr("in uso"));
        EXPECT_THAT(write_failure(), HasSubstr("in uso"));
    }
    run(connection, insert_of_invoice(41));
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 41U);
}

TEST_F(SqliteFileTest, ARuleOfTheFilesOwnIsToldAsSuch) {
    OtherProgram(path).run("CREATE UNIQUE INDEX uno ON Fatture (Numero_Fattura)");
    connection.open(path);
    EXPECT_THAT(failure_of([&] { run(connection, insert_of_invoice(40)); }), HasSubstr("regola"));
    EXPECT_EQ(run(connection, "SELECT * FROM Fatture").size(), 40U);
}

} // namespace
} // namespace tarvello::testing
