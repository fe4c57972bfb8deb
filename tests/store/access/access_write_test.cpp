#include "store/access/access_support.h"

#include "places.h"
#include "store/access/access_engine.h"
#include "store/statement.h"
#include "text/utf8.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
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
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const auto engine = open(path);
    // Inside the row, one row of a page, chains; their limits and one beyond.
    for (const std::size_t length : {0U, 31U, 32U, 33U, 512U, 2038U, 2039U, 2040U, 4074U, 50000U}) {
        const std::string text = std::string(length, 'x') + "è";
        run(*engine, "INSERT INTO Clienti(Appunti) VALUES('" + text + "')");
        const std::string newest = "SELECT TOP 1 * FROM Clienti ORDER BY Numero_Cliente DESC";
        EXPECT_EQ(run(*engine, newest).at(0).at(notes_column), text);
    }
    expect_sound(path, access_sample("archivio.mdb"));
    const std::size_t full_size = bytes_of(path).size();
    for (int i = 0; i < 20; ++i) {
        for (const std::string& text : {std::string(), std::string(50000, 'y')})
            run(*engine, "UPDATE Clienti SET Appunti='" + text + "' WHERE Numero_Cliente=50");
    }
    EXPECT_EQ(bytes_of(path).size(), full_size) << "the pages of freed texts are used again";
    expect_sound(path, access_sample("archivio.mdb"));
}

TEST(AccessWriting, RowsThatGrowMoveAndStayWhereTheyAre) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
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
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
    const auto engine = open(path);
    // Long names of few letters: entries of 200 bytes with long shared beginnings, some breaking them.
    for (int i = 0; i < 900; ++i) {
        const std::string name = std::string(150 + i % 45, "abz"[i % 3]) + std::to_string(i * 7919 % 1000);
        run(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale,Codice_Fiscale) VALUES('" + name + "','-" +
                         std::to_string(i % 10) + "''')");
    }
    expect_sound(path, access_sample("indici.mdb"));
    for (int step = 0; step < 10; step += 2)
        run(*engine, "DELETE * FROM Clienti WHERE Codice_Fiscale='-" + std::to_string(step) + "'''");
    expect_sound(path, access_sample("indici.mdb"));
    run(*engine, "DELETE * FROM Clienti");
    run(*engine, "DELETE * FROM Fatture");
    EXPECT_TRUE(run(*engine, "SELECT * FROM Clienti").empty());
    expect_sound(path, access_sample("indici.mdb"));
    run(*engine, "INSERT INTO Clienti(Nome) VALUES('dopo')");
    EXPECT_EQ(customer(*engine, 1501, 2), "dopo") << "automatic numbers go on";
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, TheMapOfFreePagesSpeaksForAllPagesBelowIt) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const auto fill = [&](int texts) {
        const auto engine = open(path);
        for (int i = 0; i < texts; ++i)
            run(*engine, "INSERT INTO Clienti(Appunti) VALUES('" + std::string(60000, 'n') + "')");
        run(*engine, "DELETE * FROM Clienti WHERE Numero_Cliente>60");
        run(*engine, "UPDATE Clienti SET Appunti='" + std::string(9000, 'u') + "'");
    };
    const std::string sample = bytes_of(path);
    const auto with_map = [&](const std::function<void(char*)>& change) {
        std::string bytes = sample;
        change(bytes.data() + page_size + (load16(bytes, page_size + 14) & 0x1FFF)); // row 0 of page 1
        write_bytes(path, bytes);
        write_bytes(folder.in("before"), bytes);
    };
    const auto row_of_map = [&] { return page_size - (load16(bytes_of(path), page_size + 14) & 0x1FFF); };

    with_map([](char*) {});
    fill(15);
    expect_sound(path, folder.in("before"));
    EXPECT_EQ((row_of_map() - 69) * 8, (bytes_of(path).size() / page_size - 512 + 31) / 32 * 32)
        << "as many bytes as there are pages, in fours";

    // Another writer has moved the map up: it starts at page 64.
    with_map([](char* map) {
        map[1] = 64;
        std::copy(map + 5 + 8, map + 69, map + 5);
        std::fill(map + 69 - 8, map + 69, '\xFF');
    });
    fill(15);
    expect_sound(path, folder.in("before"));

    // A map that calls the catalogue free is not believed.
    with_map([](char* map) { std::fill(map + 5, map + 69, '\xFF'); });
    run(*open(path), "INSERT INTO Clienti(Appunti) VALUES('" + std::string(9000, 'n') + "')");
    for (std::size_t page = 2; page < 6; ++page)
        EXPECT_EQ(bytes_of(path)[page * page_size], '\2') << "page " << page;
}

TEST(AccessWriting, KeysOfTextsAreThoseOfAccess) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
    const auto engine = open(path);
    const auto insert = [&](const std::string& name) {
        return failure_of(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale) VALUES('" + name + "')");
    };
    // As Access wrote it: the hyphen stands behind twelve letters, since the sharp s is two.
    EXPECT_EQ(insert("NuNuCa Nuß-Nougat"), "(done)");
    EXPECT_NE(bytes_of(path).find("\x6B\x6B\x62\x64\x6F\x55\x4A\x6D\x01\x01\x01\x01\x80\x33\x06\x82"),
              std::string::npos);
    for (const char* pair : {"Æ", "æ", "Œ", "œ", "Þ", "þ", "Ĳ", "ĳ"}) {
        EXPECT_EQ(insert("d''Ò-" + std::string(pair) + "ra 1"), "(done)");
        for (const char* behind : {"à", "-", "''"}) {
            EXPECT_THAT(insert("S" + std::string(pair) + "t" + behind + "x"),
                        HasSubstr("\"" + std::string(pair) + "\""));
        }
    }
    // Every character whose place is known, behind others.
    std::ifstream codes(TARVELLO_TEST_DATA "/../src/store/access/sort_codes.csv");
    int count = 0;
    for (std::string line; std::getline(codes, line);) {
        if (line.starts_with("code")) continue;
        std::string character;
        utf8::append(character, static_cast<char32_t>(std::stoul(line, nullptr, 16)));
        if (character == "'") character = "''";
        if (insert("ßé" + character + "z") == "(done)") ++count;
    }
    EXPECT_EQ(count, 386);
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, TheNextNumberIsAboveTheLastGivenAndTheHighest) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    std::string bytes = bytes_of(path);
    constexpr std::size_t customers = 50 * page_size;
    ASSERT_EQ(bytes[customers + 20], 40);
    bytes[customers + 20] = 3; // as Access leaves it after a number was given by hand
    write_bytes(path, bytes);
    const auto engine = open(path);
    const auto insert = [&](const std::string& columns, const std::string& values) {
        run(*engine, "INSERT INTO Clienti(" + columns + ") VALUES(" + values + ")");
        return run(*engine, "SELECT TOP 1 * FROM Clienti ORDER BY Numero_Cliente DESC").at(0).at(0);
    };
    EXPECT_EQ(insert("Nome", "'a'"), "41");
    EXPECT_EQ(insert("Numero_Cliente", "60"), "60");
    run(*engine, "DELETE * FROM Clienti WHERE Numero_Cliente>40");
    EXPECT_EQ(insert("Nome", "'b'"), "61");
    expect_sound(path, access_sample("archivio.mdb"));
}

TEST(AccessWriting, RefusesBeforeAByteChanges) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
    const std::string before = bytes_of(path);
    const auto engine = open(path);
    std::string wide;
    for (const char* column : {"Nome_Azienda", "Indirizzo", "Telefono", "Fax", "Codice_Fiscale",
                               "Partita_IVA", "email", "Banca", "ABI"}) {
        wide += std::string(wide.empty() ? "" : ",") + column + "='" + std::string(255, 'w') + "'";
    }
    const std::pair<std::string, const char*> cases[] = {
        {"INSERT INTO Clienti(Cognome_Ragione_Sociale) VALUES('漢字')", "\"漢\""},
        {"UPDATE Clienti SET Codice_Fiscale='😀' WHERE Numero_Cliente>3", "\"😀\""},
        {"INSERT INTO Clienti(Numero_Cliente) VALUES(4)",
         "ha già una riga con questo valore di Numero_Cliente"},
        {"UPDATE Clienti SET Numero_Cliente=9 WHERE Numero_Cliente<12", "ha già una riga"},
        {"INSERT INTO Clienti(CAP) VALUES('" + std::string(201, '0') + "')", "al massimo 200 caratteri"},
        {"UPDATE DatiIntestazione SET " + wide, "troppo lunghi"}};
    for (const auto& [sql, why] : cases) EXPECT_THAT(failure_of(*engine, sql), HasSubstr(why));
    EXPECT_EQ(bytes_of(path), before);
    // What is in no index may hold any character.
    run(*engine, "UPDATE Clienti SET Nome='漢字 😀 עברית' WHERE Numero_Cliente=1");
    EXPECT_EQ(customer(*engine, 1, 2), "漢字 😀 עברית");
}

TEST(AccessWriting, ACharacterThatOnlyAccessCanOrderHindersNoOtherWrite) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
    const std::string which = " WHERE Numero_Cliente=8";
    run(*open(path), "UPDATE Clienti SET Cognome_Ragione_Sociale='Unico'" + which);
    // A tab in a surname. Access would have put another entry into the index; here it only has to be found.
    std::string bytes = bytes_of(path);
    const std::size_t at = bytes.find(std::string("U\0n\0i\0c\0o", 9));
    ASSERT_NE(at, std::string::npos);
    bytes[at] = '\t';
    write_bytes(path, bytes);
    const auto engine = open(path);
    ASSERT_EQ(customer(*engine, 8, name_column), "\tnico");
    run(*engine, "UPDATE Clienti SET Indirizzo='Via Nuova'" + which);
    EXPECT_THAT(failure_of(*engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='\tA'" + which),
                HasSubstr("\"\t\""));
    run(*engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='A'" + which);
    EXPECT_EQ(customer(*engine, 8, name_column), "A");
    expect_sound(path, access_sample("indici.mdb"));
}

TEST(AccessWriting, IndexesGiveTheSameRowsInTheSameOrderAsAWalkThroughAll) {
    const TemporaryFolder folder;
    const auto engine = open(copy_of(folder, "indici.mdb"));
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
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "indici.mdb");
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

} // namespace
} // namespace tarvello::testing
