// Files whose tables are not made as those of the samples: a sample with some bytes of its definitions
// changed.
#include "store/access/access_support.h"

#include "failure.h"
#include "store/access/catalogue.h"
#include "store/access/stored_text.h"
#include "store/access/table_writer.h"
#include "store/archive.h"
#include "store/table.h"

#include <gmock/gmock.h>

#include <functional>

namespace tarvello::testing {
namespace {

using ::testing::HasSubstr;

// In the sample without rows, with one index and 13 columns.
constexpr std::size_t customers_page = 24;
constexpr std::size_t columns_at = customers_page * page_size + 63 + 12;
constexpr std::size_t column_size = 25;

/// The place of the name of a column of the 13, or of the definition's indexes, which follow the last name.
std::size_t name_at(const std::string& bytes, int column) {
    std::size_t at = columns_at + 13 * column_size;
    for (int i = 0; i < column; ++i) {
        at += 2 + static_cast<unsigned char>(bytes[at]) + 256U * static_cast<unsigned char>(bytes[at + 1]);
    }
    return at;
}
std::size_t indexes_at(const std::string& bytes) { return name_at(bytes, 13); }
constexpr std::size_t real_index_size = 52;

/// Changes the rows of any table below the statements.
void change(
    const std::string& path, const char* name,
    const std::function<void(store::access::TableWriter&, const store::access::TableDefinition&)>& act) {
    store::access::PageStore store(path, nullptr);
    const auto table = store::access::Catalogue(store).find(name);
    store.begin();
    store::access::TableWriter writer(store, *table);
    act(writer, *table);
    store.commit();
}

/// Adds a row of customers as it stands.
void put_row(const std::string& path, const std::vector<std::uint8_t>& row) {
    using namespace store::access;
    PageStore store(path, nullptr);
    const auto table = Catalogue(store).find("Clienti");
    store.begin();
    PageAllocator allocator(store);
    const RowPointer place = RowWriter(store, allocator, *table).add(row);
    const RowKey key = row_key(RowView(row, *table), table->indexes[0], *table);
    IndexWriter(store, allocator, table->indexes[0]).insert(key.bytes, place);
    TableCounts(store, *table).add_rows(1);
    TableCounts(store, *table).add_distinct(0, 1);
    store.commit();
}

struct AccessDefinition : ::testing::Test {
    /// Opens the sample after a change to its bytes.
    std::unique_ptr<store::Engine> changed(const std::function<void(std::string&)>& change) {
        path = copy_of(folder, "vuoto.mdb");
        std::string bytes = bytes_of(path);
        change(bytes);
        write_bytes(path, bytes);
        return open(path);
    }
    /// Expects that rows of the table are read and not written.
    void expect_read_only(const char* why, const std::function<void(std::string&)>& change) {
        const auto engine = changed(change);
        const std::string before = bytes_of(path);
        EXPECT_TRUE(run(*engine, "SELECT * FROM Clienti").empty());
        EXPECT_THAT(failure_of(*engine, "INSERT INTO Clienti(Nome) VALUES('x')"), HasSubstr(why));
        EXPECT_THAT(failure_of(*engine, "DELETE * FROM Clienti"), HasSubstr("si può soltanto leggere"));
        EXPECT_EQ(bytes_of(path), before);
        EXPECT_EQ(failure_of(*engine, "INSERT INTO DatiIntestazione(CC) VALUES('1')"), "(done)")
            << "another table";
    }

    TemporaryFolder folder;
    std::string path;
};

TEST_F(AccessDefinition, ATableThatIsNotUnderstoodIsReadAndNotWritten) {
    expect_read_only("di un tipo sconosciuto",
                     [](std::string& bytes) { bytes[columns_at + 2 * column_size] = 14; });
    expect_read_only("di un tipo che qui non si scrive",
                     [](std::string& bytes) { bytes[columns_at + 2 * column_size] = 9; });
    expect_read_only("di un genere sconosciuto",
                     [](std::string& bytes) { bytes[indexes_at(bytes) + 46] = static_cast<char>(0xC9); });
    expect_read_only("una relazione la lega",
                     [](std::string& bytes) { bytes[indexes_at(bytes) + real_index_size + 23] = 2; });
    expect_read_only("in modo discendente", [](std::string& bytes) {
        bytes[indexes_at(bytes) + 4] = 1;
        bytes[indexes_at(bytes) + 6] = 0;
    });
    expect_read_only("in un modo sconosciuto", [](std::string& bytes) {
        // The index is put on a text in another order than the known one.
        bytes[indexes_at(bytes) + 4] = 1;
        bytes[columns_at + column_size + 12] = 0x08;
    });
}

TEST_F(AccessDefinition, WhatARelationshipEnforcesIsNotWritten) {
    changed([](std::string&) {});
    change(path, "MSysRelationships", [](auto& writer, const auto& table) {
        const std::vector<std::size_t> columns{*table.find_column("szObject"),
                                               *table.find_column("szReferencedObject"),
                                               *table.find_column("szRelationship")};
        using Text = std::string_view;
        writer.insert(columns,
                      std::vector<store::ValueView>{Text("Fatture"), Text("CLIENTI"), Text("{7F3A}")});
    });
    const auto engine = open(path);
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Fatture"), HasSubstr("una relazione la lega a CLIENTI."));
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Clienti"), HasSubstr("una relazione la lega a Fatture."));
    EXPECT_EQ(failure_of(*engine, "DELETE * FROM DatiIntestazione"), "(done)");
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM MSysRelationships"), HasSubstr("del sistema"));
}

TEST_F(AccessDefinition, TheCountOfRowsMayBeOffAsAccessItselfLeavesIt) {
    const auto engine = changed([](std::string& bytes) { bytes[customers_page * page_size + 16] = 8; });
    const std::string before = folder.in("before.mdb");
    write_bytes(before, bytes_of(path));
    for (const char* name : {"a", "b"})
        run(*engine, std::string("INSERT INTO Clienti(Nome) VALUES('") + name + "')");
    expect_sound(path, before);
    for (const auto format : {store::ArchiveFormat::sqlite, store::ArchiveFormat::access}) {
        const std::string made = folder.in("nuovo" + std::to_string(static_cast<int>(format)));
        store::carry_over(*engine, made, format, RegionalSettings());
        EXPECT_EQ(run(*open(made), "SELECT * FROM Clienti").size(), 2U);
    }
}

TEST_F(AccessDefinition, AUniqueIndexRepeatsKeysWithoutAnyValue) {
    const auto insert = [](const auto& engine, const std::string& columns, const std::string& values) {
        return failure_of(*engine, "INSERT INTO Clienti(" + columns + ") VALUES(" + values + ")");
    };
    const char* const surname = "Cognome_Ragione_Sociale,Appunti";
    for (const char flags : {'\x81', '\x83'}) {
        const auto engine = changed([flags](std::string& bytes) {
            const std::size_t index = indexes_at(bytes);
            bytes.replace(index + 4, 6, std::string("\1\0\1\2\0\1", 6)); // surname and name
            bytes[index + 46] = flags;
            bytes[index + real_index_size + 23] = 0;
        });
        const std::string before = folder.in("before.mdb");
        write_bytes(before, bytes_of(path));
        EXPECT_EQ(insert(engine, "Appunti", "'senza'") + insert(engine, "Appunti", "'ancora'"),
                  "(done)(done)");
        EXPECT_EQ(insert(engine, "Nome", "'a'") + insert(engine, surname, "'a',''"), "(done)(done)");
        EXPECT_THAT(insert(engine, "Nome", "'A'"), HasSubstr("in tutte le sue colonne"));
        EXPECT_EQ(insert(engine, "Cognome_Ragione_Sociale,Nome", "'a','b'"), "(done)");
        EXPECT_THAT(insert(engine, "Cognome_Ragione_Sociale,Nome", "'A','B'"),
                    HasSubstr("non può ripetersi"));
        run(*engine, "DELETE * FROM Clienti WHERE Appunti='ancora'");
        EXPECT_EQ(run(*engine, "SELECT * FROM Clienti").size(), 4U);
        expect_sound(path, before);
    }
}

TEST_F(AccessDefinition, RowsThatAreOlderThanAColumnHaveNoValueInIt) {
    changed([](std::string&) {});
    // Eleven columns, ten of variable length: number and name have values. Then one column, from when the
    // table had none of variable length.
    put_row(path, {11, 0,  1, 0,  0, 0,  'p', 0,  'r', 0,  'i', 0,  'm', 0, 'a', 0, 16, 0,  16, 0,     16,
                   0,  16, 0, 16, 0, 16, 0,   16, 0,   16, 0,   16, 0,   6, 0,   6, 0,  10, 0,  0b101, 0});
    put_row(path, {1, 0, 2, 0, 0, 0, 1});
    const auto engine = open(path);
    const auto shown = [&] {
        std::string text;
        for (const Row& row : run(*engine, "SELECT * FROM Clienti")) text += row[0] + row[2] + row[12] + ";";
        return text;
    };
    EXPECT_EQ(shown(), "1prima;2;");
    expect_agreement(*engine, path);
    run(*engine, "UPDATE Clienti SET Appunti='dopo'");
    EXPECT_EQ(shown(), "1primadopo;2dopo;");
    expect_agreement(*engine, path);
    expect_sound(path, access_sample("vuoto.mdb"));
}

TEST_F(AccessDefinition, AColumnThatIsGoneKeepsItsPlaceInTheRows) {
    const std::string insert = "INSERT INTO Clienti(Cognome_Ragione_Sociale,Codice_Fiscale,Appunti) VALUES(";
    {
        const auto engine = changed([](std::string&) {});
        run(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale,Nome,Appunti) VALUES('a','b','c')");
    }
    std::string bytes = bytes_of(path);
    const std::size_t name = name_at(bytes, 2);
    const std::size_t name_end = name_at(bytes, 3);
    bytes[customers_page * page_size + 45] = 12;
    const std::size_t end = (customers_page + 1) * page_size;
    bytes.insert(end, std::string(name_end - name + column_size, '\0'));
    bytes.erase(name, name_end - name);
    bytes.erase(columns_at + 2 * column_size, column_size);
    write_bytes(path, bytes);

    const auto engine = open(path);
    run(*engine, insert + "'d','e','f')");
    run(*engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='g' WHERE Numero_Cliente=1");
    EXPECT_THAT(failure_of(*engine, "SELECT * FROM Clienti WHERE Nome='b'"), HasSubstr("Nome"));
    const auto rows = run(*engine, "SELECT * FROM Clienti");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][1] + rows[0][2] + rows[0][11], "gc");
    EXPECT_EQ(rows[1][1] + rows[1][2] + rows[1][11], "def");
    expect_agreement(*engine, path);
    expect_sound(path, access_sample("vuoto.mdb"));
}

TEST(AccessRow, HoldsValuesOfEveryType) {
    using namespace store::access;
    const RegionalSettings regional;
    const auto shown = [&](StoredType type, const std::vector<std::uint8_t>& stored) {
        ColumnDefinition column;
        column.type = type;
        column.scale = 2;
        return type == StoredType::guid ? guid_text(stored)
                                        : store::value_text(fixed_value(stored, column), regional);
    };
    EXPECT_EQ(shown(StoredType::byte, {200}), "200");
    EXPECT_EQ(shown(StoredType::integer16, {0x18, 0xFC}), "-1000");
    EXPECT_EQ(shown(StoredType::integer32, {0xFF, 0xFF, 0xFF, 0x7F}), "2147483647");
    EXPECT_EQ(shown(StoredType::currency, {0x87, 0xD6, 0x12, 0, 0, 0, 0, 0}), "123,4567");
    EXPECT_EQ(shown(StoredType::single_float, {0, 0, 0x20, 0xC0}), "-2,5");
    EXPECT_EQ(shown(StoredType::single_float, {0x0A, 0xD7, 0x23, 0x3C}), "0,01") << "as it was typed";
    EXPECT_EQ(shown(StoredType::double_float, {0, 0, 0, 0, 0, 0, 0xF4, 0x3F}), "1,25");
    // 36526,75 days: an evening of the year 2000; and one before the first day.
    EXPECT_EQ(shown(StoredType::date, {0, 0, 0, 0, 0xD8, 0xD5, 0xE1, 0x40}), "01/01/2000");
    EXPECT_EQ(shown(StoredType::date, {0, 0, 0, 0, 0, 0, 0xF4, 0xBF}), "29/12/1899");
    EXPECT_EQ(shown(StoredType::numeric, {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x39, 0x30, 0, 0}),
              "-123,45");
    EXPECT_EQ(shown(StoredType::guid, {0x33, 0x22, 0x11, 0, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB,
                                       0xCC, 0xDD, 0xEE, 0xFF}),
              "{00112233-4455-6677-8899-AABBCCDDEEFF}");
    // What the types that are written store is what they show.
    for (const auto& [type, text] : {std::pair(StoredType::byte, "7"),
                                     {StoredType::integer16, "-32768"},
                                     {StoredType::currency, "-0,0001"},
                                     {StoredType::single_float, "0,5"},
                                     {StoredType::date, "28/02/1700"}}) {
        ColumnDefinition column;
        column.type = type;
        const store::Value value =
            store::convert_literal({text, true}, {"Colonna", column.column_type()}, regional);
        EXPECT_EQ(shown(type, store_value(store::view_of(value), column)), text);
    }
    ColumnDefinition small;
    small.type = StoredType::byte;
    EXPECT_THROW(store_value(std::int64_t{256}, small), Failure);
    EXPECT_THROW(store_value(std::int64_t{-1}, small), Failure);
}

TEST(AccessText, SwitchesBetweenOneAndTwoBytesACharacter) {
    const auto decoded = [](const std::string& bytes) {
        std::string text;
        store::access::decode_text({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, text);
        return text;
    };
    EXPECT_EQ(decoded(std::string("\xFF\xFE"
                                  "a\xE8\0\xAC\x20\0b",
                                  9)),
              "aè€b");
    EXPECT_EQ(decoded(std::string("\xFF\xFE\0\x3D\xD8\x11\xDE\0!", 9)), "😑!") << "a character of two halves";
    EXPECT_EQ(decoded(std::string("\xFF\xFE", 2)), "");
    EXPECT_EQ(decoded(std::string("\xFF\xFE"
                                  "a\0\xAC",
                                  5)),
              "a")
        << "cut off";
    EXPECT_EQ(decoded(std::string("a\0\x3D\xD8z", 5)), "a\xEF\xBF\xBD")
        << "half a character, and half a unit";
}

} // namespace
} // namespace tarvello::testing
