// New archives, empty ones and ones that carry all rows of another over: from every engine to every engine.

#include "store/archive.h"

#include "store/access/access_support.h"

#include <sqlite3.h>

namespace tarvello::testing {
namespace {

using store::ArchiveFormat;
using store::ColumnKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Road {
    const EngineKind& from;
    ArchiveFormat to;
};

class ArchiveTest : public ::testing::TestWithParam<Road>, protected FileOfInvoices {
protected:
    ArchiveTest() : FileOfInvoices(GetParam().from) { connection.open(path); }

    std::vector<std::string> carry(const store::CarryProgress& progress = {}) {
        const auto left_out = store::carry_over(connection.engine(), made, GetParam().to, regional, progress);
        return left_out ? *left_out : std::vector<std::string>{"given up"};
    }

    /// All rows; to the program null and an empty text are one.
    static std::vector<Row> rows_of(Connection& archive, const std::string& table) {
        auto rows = run(archive, "SELECT * FROM " + table);
        for (Row& row : rows) std::replace(row.begin(), row.end(), std::string("(null)"), std::string());
        return rows;
    }

    const std::string made = folder.in("nuovo.mdb");
    Connection other{regional};
};

INSTANTIATE_TEST_SUITE_P(Roads, ArchiveTest,
                         ::testing::Values(Road{engine_kinds[0], ArchiveFormat::sqlite},
                                           Road{engine_kinds[0], ArchiveFormat::access},
                                           Road{engine_kinds[1], ArchiveFormat::sqlite},
                                           Road{engine_kinds[1], ArchiveFormat::access}),
                         [](const auto& info) {
                             return std::string(info.param.from.name) +
                                    (info.param.to == ArchiveFormat::access ? "ToAccess" : "ToSqlite");
                         });

TEST_P(ArchiveTest, AnEmptyOneTakesWhatTheProgramWrites) {
    store::make_archive(made, GetParam().to, regional);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "nuovo.mdb"));
    other.open(made);
    for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"})
        EXPECT_THAT(run(other, std::string("SELECT * FROM ") + table), IsEmpty());
    run(other, insert_of_invoice(1));
    Row expected = row_of_invoice(1);
    expected.insert(expected.begin(), "1");
    EXPECT_THAT(run(other, "SELECT * FROM Fatture"), ElementsAre(expected));
}

TEST_P(ArchiveTest, AllRowsGoOverAndTheNextKeyIsNew) {
    const Amount amount{12'345'678'901'234};
    connection.need_table({"Rate",
                           {{"ID", ColumnKind::autonumber},
                            {"Mezzo", ColumnKind::text, 40},
                            {"Importo", ColumnKind::currency},
                            {"Scadenza", ColumnKind::date},
                            {"Pagata", ColumnKind::yes_no},
                            {"Tasso", ColumnKind::number},
                            {"Nota", ColumnKind::memo}},
                           {"ID"},
                           {{"Rate_Mezzo", {"Mezzo"}, true}}});
    run(connection, "INSERT INTO Rate (Mezzo,Importo,Scadenza,Pagata,Tasso,Nota) VALUES (?,?,?,?,?,?)",
        {"d'oro", amount, make_date(2024, 2, 29), true, 0.1, std::string(3000, 'x')});
    for (int i = 2; i <= 4; ++i) run(connection, "INSERT INTO Rate (Mezzo) VALUES (?)", {{}});
    run(connection, "INSERT INTO Clienti (Nome,Appunti) VALUES ('Anna','prima\r\nseconda')");
    run(connection, "DELETE * FROM Fatture WHERE ID>=39");
    run(connection, "DELETE * FROM Fatture WHERE ID=7");
    run(connection, "DELETE * FROM Rate WHERE ID=4");
    const std::string before = bytes_of(path);

    EXPECT_THAT(carry(), IsEmpty());
    EXPECT_EQ(bytes_of(path), before);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "nuovo.mdb"));
    other.open(made);
    for (const char* table : {"Clienti", "Fatture", "DatiIntestazione", "Rate"}) {
        SCOPED_TRACE(table);
        EXPECT_EQ(rows_of(other, table), rows_of(connection, table));
    }
    expect_agreement(other.engine(), made, {"Clienti", "Fatture", "DatiIntestazione", "Rate"});
    Recordset rate;
    rate.open("SELECT * FROM Rate", other);
    EXPECT_EQ(rate.amount("Importo"), amount);
    EXPECT_TRUE(rate.yes("Pagata"));
    EXPECT_THROW(run(other, "INSERT INTO Rate (Mezzo) VALUES ('D''ORO')"), Failure);
    run(other, "INSERT INTO Rate (Mezzo) VALUES ('altro')");
    EXPECT_EQ(other.inserted_key(), 5) << "a number once given is not given again";
    run(other, insert_of_invoice(50));
    EXPECT_EQ(other.inserted_key(), 41);
}

TEST_P(ArchiveTest, TextsOfAnyLengthFindRoom) {
    // Where the old file has a limit the texts keep to it.
    const bool limited = GetParam().from.name == engine_kinds[1].name;
    const std::string name(limited ? 200 : 3000, 'n');
    run(connection, "UPDATE Fatture SET Nome=?,Indirizzo=?,Codice_Fiscale=? WHERE ID=5", {name, name, name});
    carry();
    other.open(made);
    EXPECT_EQ(rows_of(other, "Fatture"), rows_of(connection, "Fatture"));
    EXPECT_EQ(run(other, "SELECT * FROM Fatture WHERE Codice_Fiscale=?", {name}).size(), 1U);
}

TEST_P(ArchiveTest, GivenUpItLeavesNothing) {
    Transaction filling(connection);
    for (int i = 0; i < 1000; ++i) run(connection, "INSERT INTO DatiIntestazione (CC) VALUES ('x')");
    filling.commit();
    std::int64_t heard = 0;
    EXPECT_THAT(carry([&](std::int64_t done, std::int64_t all) {
                    EXPECT_EQ(all, 1040);
                    heard = done;
                    return done < 900;
                }),
                ElementsAre("given up"));
    EXPECT_GE(heard, 900);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb"));
}

TEST_P(ArchiveTest, NothingIsReplacedAndNoJournalTakenForItsOwn) {
    write_bytes(made, "mio");
    EXPECT_THAT(failure_of([&] { carry(); }), HasSubstr("esiste già"));
    EXPECT_THAT(failure_of([&] { store::make_archive(made, GetParam().to, regional); }),
                HasSubstr("esiste già"));
    EXPECT_EQ(bytes_of(made), "mio");
    std::filesystem::remove(made);
    for (const char* companion : {"-journal", "-wal", "-undo"}) {
        write_bytes(made + companion, "x");
        EXPECT_THAT(failure_of([&] { carry(); }), HasSubstr(companion));
        std::filesystem::remove(made + companion);
    }
    EXPECT_THROW(store::make_archive(folder.in("manca/nuovo.mdb"), GetParam().to, regional), Failure);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb"));
}

class ArchiveOfAnotherProgram : public ::testing::Test, protected FileOfInvoices {
protected:
    ArchiveOfAnotherProgram() : FileOfInvoices(engine_kinds[0]) {}
};

TEST_F(ArchiveOfAnotherProgram, WhatNoArchiveKeepsIsNamed) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(
        sqlite3_exec(database,
                     "CREATE TABLE Foto (Nome TEXT, Immagine BLOB); INSERT INTO Foto VALUES ('io', x'00')",
                     nullptr, nullptr, nullptr),
        SQLITE_OK);
    sqlite3_close(database);
    connection.open(path);
    const std::string made = folder.in("nuovo.mdb");
    EXPECT_EQ(store::carry_over(connection.engine(), made, ArchiveFormat::access, regional),
              std::vector<std::string>{"Foto.Immagine"});
    connection.close();
    connection.open(made);
    EXPECT_THAT(run(connection, "SELECT * FROM Foto"), ElementsAre(Row{"io"}));
}

} // namespace
} // namespace tarvello::testing
