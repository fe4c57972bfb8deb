// Tables, indexes and whole files that the program makes: Access and others must find them as if Access had
// made them, and everything else as it was.
#include "store/access/access_engine.h"
#include "store/access/access_support.h"

#include "store/archive.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace tarvello::testing {
namespace {

using store::ColumnKind;
using store::TableDeclaration;
using ::testing::HasSubstr;

const RegionalSettings regional;

/// The samples, or all files of a folder that is given: of files that Access made, for example.
std::vector<std::string> files() {
    const char* folder = std::getenv("TARVELLO_ACCESS_FILES");
    std::vector<std::string> paths;
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(folder != nullptr ? folder : access_sample(""))) {
        if (file.path().extension() == ".mdb") paths.push_back(file.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// So many columns that the definition goes over several pages, and its maps over two.
TableDeclaration wide_table() {
    TableDeclaration table{"Larga", {}, {"Chiave_1", "Chiave_2"}, {}, 0};
    for (int i = 1; i <= 150; ++i) {
        const ColumnKind kinds[] = {ColumnKind::memo, ColumnKind::yes_no, ColumnKind::whole,
                                    ColumnKind::text};
        table.columns.push_back({"Una_colonna_" + std::to_string(i), kinds[i % 4], 5});
    }
    table.columns.push_back({"Chiave_2", ColumnKind::date});
    table.columns.push_back({"Chiave_1", ColumnKind::text, 30});
    return table;
}

void fill(store::Engine& engine, int from, int count) {
    for (const std::string& sql : inserts_of_deadlines(from, count)) run(engine, sql);
}

class AccessCreation : public ::testing::TestWithParam<std::string> {
protected:
    AccessCreation() {
        std::filesystem::copy_file(GetParam(), path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

    TemporaryFolder folder;
    const std::string path = folder.in("archivio.mdb");
};

TEST_P(AccessCreation, MakesWhatAccessWouldAndTouchesNothingElse) {
    const TableDeclaration only_yes{
        "Niente", {{"Sì", ColumnKind::yes_no}, {"No", ColumnKind::yes_no}}, {}, {}, 0};
    {
        const auto engine = open(path);
        engine->create_table(deadlines());
        engine->begin();
        engine->create_table(only_yes);
        engine->create_table(wide_table());
        engine->commit();
    }
    expect_sound(path, GetParam(), "--only-new-tables");
    const std::string made = bytes_of(path);
    {
        const auto engine = open(path);
        engine->create_table(deadlines());
        EXPECT_TRUE(bytes_of(path) == made) << "there is nothing to do";
        fill(*engine, 1, 120);
        run(*engine, "DELETE * FROM Scadenze WHERE Pagata=1 AND Importo<0");
        run(*engine, "UPDATE Scadenze SET Note='" + std::string(3000, 'c') + "' WHERE Giorno<'01/06/2024'");
        run(*engine, "INSERT INTO Niente(No) VALUES(1)");
        run(*engine, "INSERT INTO Larga(Chiave_1,Chiave_2,Una_colonna_4,Una_colonna_148) "
                     "VALUES('a','01/02/2024','memo','" +
                         std::string(5000, 'm') + "')");
        run(*engine, "UPDATE Larga SET Una_colonna_8='altro',Una_colonna_3='12345',Una_colonna_6=7");
    }
    expect_sound(path, GetParam());
    const auto engine = open(path);
    expect_agreement(*engine, path, {"Scadenze", "Niente", "Larga"});
}

INSTANTIATE_TEST_SUITE_P(Files, AccessCreation, ::testing::ValuesIn(files()),
                         [](const auto& file) { return std::filesystem::path(file.param).stem().string(); });

TEST(AccessNewFile, TakesAllTablesAndRowsOfAnother) {
    const TemporaryFolder folder;
    const std::string path = folder.in("nuovo.mdb");
    { store::make_access_engine(path, regional); }
    const std::string empty = bytes_of(path);
    EXPECT_EQ(empty.size(), 16 * page_size);
    expect_sound(path, path, "--like-access");
    // But for counts, and rubbish that Access left, the definitions of the system's tables are those of a
    // file that Access made.
    const std::string sample = bytes_of(access_sample("vuoto.mdb"));
    std::size_t rubbish = 0;
    const auto text = [](const std::string& bytes, std::size_t page, std::size_t from, std::size_t to) {
        return bytes.substr(page * page_size + from, to - from);
    };
    for (std::size_t page = 2; page < 6; ++page) {
        const std::size_t length = load16(empty, page * page_size + 8);
        const std::size_t counts_end = 63 + 12 * load16(empty, page * page_size + 51);
        EXPECT_EQ(text(empty, page, 0, 16), text(sample, page, 0, 16));
        EXPECT_EQ(text(empty, page, 40, 63), text(sample, page, 40, 63));
        EXPECT_EQ(length, load16(sample, page * page_size + 8));
        for (std::size_t at = page * page_size + counts_end; at < page * page_size + length; ++at) {
            if (empty[at] == sample[at]) continue;
            ++rubbish;
            EXPECT_EQ(empty[at], '\0') << "page " << page;
        }
    }
    EXPECT_EQ(rubbish, 26U);
    write_bytes(folder.in("leer.mdb"), empty);

    const auto from = open(copy_of(folder, "indici.mdb"));
    run(*from, "UPDATE Clienti SET Appunti='" + std::string(9000, 'a') + "' WHERE Numero_Cliente=3");
    from->create_table(deadlines());
    fill(*from, 1, 40);
    std::filesystem::remove(path);
    store::carry_over(*from, path, store::ArchiveFormat::access, regional);
    const auto to = open(path);
    EXPECT_TRUE(everything(*to) == everything(*from));
    EXPECT_EQ(to->tables().size(), 4U);
    run(*to, "INSERT INTO Fatture(Anno) VALUES(2020)");
    EXPECT_EQ(to->last_autonumber(), 901);
    run(*to, "DELETE * FROM Clienti WHERE Numero_Cliente>300");
    expect_agreement(*to, path, {"Clienti", "Fatture", "DatiIntestazione", "Scadenze"});
    expect_sound(path, folder.in("leer.mdb"));
    EXPECT_THROW(store::make_access_engine(path, regional), Failure) << "a file that is there stays";
}

TEST(AccessTables, AreToldAsTheyWereDeclared) {
    const TemporaryFolder folder;
    const auto engine = open(copy_of(folder, "archivio.mdb"));
    engine->create_table(deadlines());
    fill(*engine, 1, 3);
    const auto tables = engine->tables();
    ASSERT_EQ(tables.size(), 4U);
    EXPECT_EQ(tables[0].declaration.name, "Clienti");
    EXPECT_EQ(tables[0].declaration.last_autonumber, 40);
    EXPECT_EQ(tables[0].rows, 37);
    TableDeclaration expected = deadlines();
    expected.last_autonumber = 3;
    EXPECT_EQ(tables[3].declaration, expected);
    EXPECT_EQ(tables[3].rows, 3);
}

TEST(AccessTables, GetColumnsAndIndexesThatTheyLack) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const auto engine = open(path);
    TableDeclaration wanted{"CLIENTI",
                            {{"numero_cliente", ColumnKind::autonumber},
                             {"Saldo", ColumnKind::currency},
                             {"Diario", ColumnKind::memo},
                             {"Nato", ColumnKind::date},
                             {"Sigla", ColumnKind::text, 9}},
                            {"Numero_Cliente"},
                            {{"Per_citta", {"Città", "Nato"}}, {"Per_sigla", {"Sigla"}, true}},
                            70};
    engine->create_table(wanted);
    run(*engine,
        "UPDATE Clienti SET Diario='" + std::string(6000, 'd') + "',Saldo='12,5' WHERE Numero_Cliente<9");
    run(*engine, "INSERT INTO Clienti(Sigla,Nato) VALUES('x','01/02/1980')");
    EXPECT_EQ(engine->last_autonumber(), 71);
    EXPECT_THAT(failure_of(*engine, "INSERT INTO Clienti(Sigla) VALUES('X')"),
                HasSubstr("non può ripetersi"));
    EXPECT_EQ(run(*engine, "SELECT * FROM Clienti WHERE Saldo=12.5 AND Sigla=''").size(), 7U);
    expect_agreement(*engine, path);
    expect_sound(path, access_sample("archivio.mdb"));

    const std::string before = bytes_of(path);
    const auto failure = [&](const TableDeclaration& table) {
        const std::string description = description_of([&] { engine->create_table(table); });
        EXPECT_TRUE(description == "(done)" || bytes_of(path) == before);
        return description;
    };
    wanted.indexes = {{"Unico", {"Città"}, true}};
    EXPECT_THAT(failure(wanted), HasSubstr("non può ripetersi"));
    EXPECT_THAT(failure({"Fatture", {{"Altro", ColumnKind::autonumber}}, {}, {}, 0}), HasSubstr("Altro"));
    EXPECT_THAT(failure({"MSysACEs", {{"Altro", ColumnKind::whole}}, {}, {}, 0}), HasSubstr("sistema"));
    write_bytes(folder.in("archivio.ldb"), "");
    EXPECT_THAT(failure(deadlines()), HasSubstr("soltanto leggerlo"));
    EXPECT_EQ(failure({"Clienti", {{"Saldo", ColumnKind::currency}}, {}, {}, 0}), "(done)")
        << "nothing is lacking";
}

TEST(AccessTransaction, IsOneChange) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const std::string before = bytes_of(path);
    const auto engine = open(path);
    const auto change = [&] {
        engine->begin();
        engine->create_table(deadlines());
        fill(*engine, 1, 30);
        run(*engine, "DELETE * FROM Fatture WHERE ID>100");
        run(*engine,
            "UPDATE Fatture SET Prestazione1='" + std::string(40000, 'p') + "'"); // more than fits in memory
        EXPECT_EQ(run(*engine, "SELECT * FROM Scadenze WHERE Fattura<11").size(), 10U);
    };
    change();
    engine->roll_back();
    EXPECT_TRUE(bytes_of(path) == before);
    EXPECT_THAT(failure_of(*engine, "SELECT * FROM Scadenze"), HasSubstr("non ha la tabella"));
    change();
    engine->commit();
    EXPECT_EQ(run(*engine, "SELECT * FROM Scadenze").size(), 30U);
    expect_sound(path, access_sample("archivio.mdb"));
    const std::string after = bytes_of(path);
    engine->begin();
    {
        const auto sink = engine->fill("Scadenze", {"ID", "Codice"});
        const std::vector<store::ValueView> row{std::int64_t{31}, std::string_view("c-7")};
        EXPECT_THROW(sink->add(row), Failure) << "a unique index has it";
    }
    engine->roll_back();
    engine->begin();
    run(*engine, "DELETE * FROM Scadenze");
    {
        const auto sink = engine->fill("Scadenze", {"ID", "Codice"});
        for (const std::int64_t id : {1, 2})
            sink->add(std::vector<store::ValueView>{id, std::string_view("uguale")});
    }
    EXPECT_THROW(engine->commit(), Failure);
    EXPECT_TRUE(bytes_of(path) == after);
    expect_sound(path, access_sample("archivio.mdb"));
}

} // namespace
} // namespace tarvello::testing
