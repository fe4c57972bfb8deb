#include "store/access/access_support.h"

#include "store/access/access_engine.h"
#include "store/statement.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace tarvello::testing {
namespace {

using ::testing::HasSubstr;

std::string customer(store::Engine& engine, int number, std::size_t column) {
    const auto rows = run(engine, "SELECT * FROM Clienti WHERE Numero_Cliente=" + std::to_string(number));
    return rows.size() == 1 ? rows[0].at(column) : "(" + std::to_string(rows.size()) + " rows)";
}

std::vector<std::string> first_column(store::Engine& engine, const std::string& sql) {
    std::vector<std::string> values;
    for (const Row& row : run(engine, sql)) values.push_back(row[0]);
    return values;
}

constexpr std::size_t name_column = 1;
constexpr std::size_t notes_column = 12;

TEST(AccessWriting, LongTextsComeBackWhateverTheirLengthAndTheirPlacesAreUsedAgain) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("archivio.mdb");
    std::string reopened;
    std::size_t full_size = 0;
    {
        const auto engine = open(path);
        // Inside the row, one row of a page, chains; their limits and one beyond.
        for (const std::size_t length : {0U, 31U, 32U, 33U, 512U, 2038U, 2039U, 2040U, 4074U, 50000U}) {
            const std::string text(length, 'x');
            run(*engine, "UPDATE Clienti SET Appunti='" + text + "è' WHERE Numero_Cliente=7");
            EXPECT_EQ(customer(*engine, 7, notes_column), text + "è");
            expect_sound(path, access_sample("archivio.mdb"));
        }
        full_size = file_bytes(path).size();
        for (int i = 0; i < 20; ++i) {
            run(*engine, "UPDATE Clienti SET Appunti='' WHERE Numero_Cliente=7");
            run(*engine,
                "UPDATE Clienti SET Appunti='" + std::string(50000, 'y') + "' WHERE Numero_Cliente=7");
        }
        reopened = everything(*engine);
    }
    EXPECT_EQ(file_bytes(path).size(), full_size) << "the pages of freed texts are used again";
    EXPECT_EQ(everything(*open(path)), reopened);
    expect_sound(path, access_sample("archivio.mdb"));
}

TEST(AccessWriting, RowsThatGrowMoveAndStayWhereTheyAre) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("indici.mdb");
    const auto engine = open(path);
    const auto before = first_column(*engine, "SELECT * FROM Clienti");
    for (const std::string& number : before) {
        run(*engine, "UPDATE Clienti SET Indirizzo='" + std::string(180, 'i') + number +
                         "' WHERE Numero_Cliente=" + number);
    }
    EXPECT_EQ(first_column(*engine, "SELECT * FROM Clienti"), before);
    for (const std::string& number : before) {
        ASSERT_EQ(customer(*engine, std::stoi(number), 5), std::string(180, 'i') + number);
    }
    expect_sound(path, access_sample("indici.mdb"));
    run(*engine, "UPDATE Clienti SET Indirizzo='corto'");
    EXPECT_EQ(run(*engine, "SELECT * FROM Clienti WHERE Indirizzo='CORTO'").size(), before.size());
    run(*engine, "DELETE * FROM Clienti WHERE Numero_Cliente>10");
    EXPECT_EQ(first_column(*engine, "SELECT * FROM Clienti").back(), "10");
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, AnIndexGrowsByLevelsAndShrinksToNothing) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("indici.mdb");
    const auto engine = open(path);
    // Long names of few letters: entries of 200 bytes with long shared beginnings, some breaking them.
    for (int i = 0; i < 900; ++i) {
        const std::string name = std::string(150 + i % 45, "abz"[i % 3]) + std::to_string(i * 7919 % 1000);
        run(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale,Codice_Fiscale) VALUES('" + name + "','-" +
                         std::to_string(i % 10) + "''')");
    }
    expect_sound(path, access_sample("indici.mdb"));
    for (int step = 0; step < 5; ++step) {
        run(*engine, "DELETE * FROM Clienti WHERE Codice_Fiscale='-" + std::to_string(step * 2) + "'''");
        expect_sound(path, access_sample("indici.mdb"));
    }
    run(*engine, "DELETE * FROM Clienti");
    run(*engine, "DELETE * FROM Fatture");
    EXPECT_TRUE(run(*engine, "SELECT * FROM Clienti").empty());
    expect_sound(path, access_sample("indici.mdb"));
    run(*engine, "INSERT INTO Clienti(Nome) VALUES('dopo')");
    EXPECT_EQ(customer(*engine, 1501, 2), "dopo") << "automatic numbers go on";
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, RefusesBeforeAByteChanges) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("indici.mdb");
    const std::string before = file_bytes(path);
    const auto engine = open(path);
    EXPECT_THAT(failure_of(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale) VALUES('漢字')"),
                HasSubstr("\"漢\""));
    EXPECT_THAT(failure_of(*engine, "UPDATE Clienti SET Codice_Fiscale='😀' WHERE Numero_Cliente>3"),
                HasSubstr("\"😀\""));
    EXPECT_THAT(failure_of(*engine, "INSERT INTO Clienti(Numero_Cliente) VALUES(4)"),
                HasSubstr("ha già una riga con questo valore di Numero_Cliente"));
    EXPECT_THAT(failure_of(*engine, "UPDATE Clienti SET Numero_Cliente=9 WHERE Numero_Cliente<12"),
                HasSubstr("ha già una riga"));
    EXPECT_THAT(failure_of(*engine, "INSERT INTO Clienti(CAP) VALUES('" + std::string(201, '0') + "')"),
                HasSubstr("al massimo 200 caratteri"));
    EXPECT_THAT(failure_of(*engine, "INSERT INTO Fatture(Anno) VALUES('abc')"), HasSubstr("non è un numero"));
    std::string wide;
    for (const char* column : {"Nome_Azienda", "Indirizzo", "Telefono", "Fax", "Codice_Fiscale",
                               "Partita_IVA", "email", "Banca", "ABI"}) {
        wide += std::string(wide.empty() ? "" : ",") + column + "='" + std::string(255, 'w') + "'";
    }
    EXPECT_THAT(failure_of(*engine, "UPDATE DatiIntestazione SET " + wide), HasSubstr("troppo lunghi"));
    EXPECT_EQ(file_bytes(path), before);
    // What is in no index may hold any character.
    run(*engine, "UPDATE Clienti SET Nome='漢字 😀 עברית' WHERE Numero_Cliente=1");
    EXPECT_EQ(customer(*engine, 1, 2), "漢字 😀 עברית");
}

TEST(AccessWriting, ACharacterThatOnlyAccessCanOrderHindersNoOtherWrite) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("indici.mdb");
    const std::string which = " WHERE Numero_Cliente=8";
    run(*open(path), "UPDATE Clienti SET Cognome_Ragione_Sociale='Unico'" + which);
    // A tab in a surname. Access would have put another entry into the index; here it only has to be found.
    std::string bytes = file_bytes(path);
    const std::size_t at = bytes.find(std::string("U\0n\0i\0c\0o", 9));
    ASSERT_NE(at, std::string::npos);
    bytes[at] = '\t';
    write_file(path, bytes);
    const auto engine = open(path);
    ASSERT_EQ(customer(*engine, 8, name_column), "\tnico");
    run(*engine, "UPDATE Clienti SET Indirizzo='Via Nuova'" + which);
    EXPECT_THAT(failure_of(*engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='\tA'" + which),
                HasSubstr("\"\t\""));
    run(*engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='A'" + which);
    EXPECT_EQ(customer(*engine, 8, name_column), "A");
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, SeveralResultsWalkWhileOthersWrite) {
    const ScratchFolder folder;
    const auto engine = open(folder.copy_of("indici.mdb"));
    const auto by_key =
        engine->run(store::parse_statement("SELECT * FROM Fatture WHERE ID>880 ORDER BY ID DESC"));
    const auto by_year = engine->run(store::parse_statement("SELECT * FROM Fatture WHERE Anno=2005"));
    ASSERT_TRUE(by_key->next());
    ASSERT_TRUE(by_year->next());
    const auto current = std::get<std::int64_t>(by_key->value(0));
    EXPECT_EQ(current, 900);
    run(*engine, "DELETE * FROM Fatture WHERE ID>=895");
    run(*engine, "INSERT INTO Fatture(Anno,Nome) VALUES('2005','nuova')");
    EXPECT_EQ(std::get<std::int64_t>(by_key->value(0)), 900) << "the current row stays readable";
    ASSERT_TRUE(by_key->next());
    EXPECT_EQ(std::get<std::int64_t>(by_key->value(0)), 894);
    run(*engine, "DELETE * FROM Fatture WHERE Anno=2005");
    EXPECT_FALSE(by_year->next());
}

TEST(AccessWriting, IndexesGiveTheSameRowsInTheSameOrderAsAWalkThroughAll) {
    const ScratchFolder folder;
    const auto engine = open(folder.copy_of("indici.mdb"));
    const auto all = run(*engine, "SELECT * FROM Fatture");
    constexpr std::size_t year_column = 3;
    const auto expected = [&](const std::function<bool(int, int)>& keep, bool descending) {
        std::vector<std::string> ids;
        for (const Row& row : all) {
            if (keep(std::stoi(row[0]), std::stoi(row[year_column]))) ids.push_back(row[0]);
        }
        if (descending) std::reverse(ids.begin(), ids.end());
        return ids;
    };
    const auto select = [&](const std::string& rest) {
        return first_column(*engine, "SELECT * FROM Fatture " + rest);
    };
    EXPECT_EQ(select("WHERE Anno=2006"), expected([](int, int year) { return year == 2006; }, false));
    EXPECT_EQ(select("WHERE Anno=2006 ORDER BY ID DESC"),
              expected([](int, int year) { return year == 2006; }, true));
    EXPECT_EQ(select("WHERE Anno<2006 ORDER BY ID DESC"),
              expected([](int, int year) { return year < 2006; }, true));
    EXPECT_EQ(select("WHERE ID<=500 AND ID>490.5 ORDER BY ID DESC"),
              expected([](int id, int) { return id <= 500 && id > 490; }, true));
    EXPECT_EQ(select("WHERE ID>=890"), expected([](int id, int) { return id >= 890; }, false));
    EXPECT_EQ(select("WHERE ID=5 AND Anno=1900"), std::vector<std::string>());
    EXPECT_EQ(select("WHERE ID<99999999999").size(), all.size());
    EXPECT_EQ(select("WHERE ID=99999999999").size(), 0U);
    const auto top = run(*engine, "SELECT TOP 1 * FROM Fatture WHERE Anno=2006 ORDER BY ID DESC");
    ASSERT_EQ(top.size(), 1U);
    EXPECT_EQ(top[0][0], expected([](int, int year) { return year == 2006; }, true).front());
    const auto years = run(*engine, "SELECT * FROM Fatture ORDER BY Anno DESC");
    ASSERT_EQ(years.size(), all.size());
    for (std::size_t i = 1; i < years.size(); ++i)
        ASSERT_GE(years[i - 1][year_column], years[i][year_column]);
}

TEST(AccessReading, KeysAndIndexedNumbersReadOnlyTheirOwnPages) {
    struct Reads : store::access::FileWatch {
        bool allow(store::access::FileCall call) override {
            if (call == store::access::FileCall::read) ++count;
            return true;
        }
        int count = 0;
    };
    const ScratchFolder folder;
    const std::string path = folder.copy_of("indici.mdb");
    const RegionalSettings regional;
    const auto reads_of = [&](const std::string& sql, std::size_t expected_rows) {
        Reads reads;
        const auto engine = store::open_access_engine(path, regional, &reads);
        run(*engine, "SELECT TOP 1 * FROM Fatture WHERE ID=1"); // the definition of the table is known then
        const int before = reads.count;
        EXPECT_EQ(run(*engine, sql).size(), expected_rows) << sql;
        return reads.count - before;
    };
    const auto of_customer = run(*open(path), "SELECT * FROM Fatture WHERE Numero_Cliente=7").size();
    ASSERT_GT(of_customer, 0U);
    // A page of the index and one of rows for each row, and the pages of nodes and long texts between.
    EXPECT_LE(reads_of("SELECT * FROM Fatture WHERE ID=450", 1), 4);
    EXPECT_LE(reads_of("SELECT * FROM Fatture WHERE ID<450 AND ID>447 ORDER BY ID DESC", 2), 6);
    EXPECT_LE(reads_of("SELECT TOP 1 * FROM Fatture WHERE ID<450 ORDER BY ID DESC", 1), 4);
    EXPECT_LE(reads_of("SELECT * FROM Fatture WHERE Numero_Cliente=7", of_customer),
              static_cast<int>(2 * of_customer) + 3);
    EXPECT_LE(reads_of("SELECT * FROM Fatture WHERE Numero_Cliente=123456", 0), 3);
    EXPECT_GT(reads_of("SELECT * FROM Fatture WHERE Nome='nessuno'", 0), 60) << "which no index serves";
}

TEST(AccessWriting, TheTextsOfTheLetterheadAndOfSearchesFollowTheRulesOfEveryEngine) {
    const ScratchFolder folder;
    const auto engine = open(folder.copy_of("indici.mdb"));
    run(*engine, "DELETE * FROM DatiIntestazione");
    run(*engine, "INSERT INTO DatiIntestazione (Nome_Azienda,CC) VALUES ('L''Oasi','')");
    const auto rows = run(*engine, "SELECT * FROM DatiIntestazione WHERE nome_azienda='l''OASI'");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].back(), "");
    EXPECT_EQ(rows[0][name_column], "(null)");
    EXPECT_EQ(run(*engine, "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '%D''ANGELO%'").size(),
              run(*engine, "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '%d''angelo%'").size());
    EXPECT_GT(run(*engine, "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '%NICOLÒ%'").size(), 0U);
    EXPECT_THAT(failure_of(*engine, "SELECT * FROM Ordini"), HasSubstr("non ha la tabella"));
    EXPECT_THAT(failure_of(*engine, "SELECT * FROM Fatture WHERE Data_Fattura='31/02/2006'"),
                HasSubstr("non è una data"));
}

} // namespace
} // namespace tarvello::testing
