// Access files beside the embedded engine: the same archive, the same statements, through the same interface.

#include "archive.h"
#include "row.h"

#include "store/database.h"
#include "store/engine.h"
#include "store/statement.h"
#include "text/letter_case.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace tarvello::bench {
namespace {

const RegionalSettings regional;

/// Runs a statement whose literals are texts that need no quoting.
void insert_copy(store::Engine& to, const char* table, const store::RowSource& row) {
    store::Statement insert;
    insert.kind = store::StatementKind::insert;
    insert.table = table;
    for (std::size_t i = 0; i < row.columns().size(); ++i) {
        const store::ValueView value = row.value(i);
        if (std::holds_alternative<std::monostate>(value)) continue;
        insert.assignments.push_back({row.columns()[i].name, {store::value_text(value, regional), true}});
    }
    to.run(insert);
}

/// The archive as an Access file with the indexes that users make: on year, customer, name and fiscal code.
/// Filled statement by statement through the engine, in memory, where each one's syncing costs nothing.
void make_access_archive(const std::filesystem::path& path) {
    std::filesystem::path work = path.string() + ".new";
    if (std::filesystem::is_directory("/dev/shm")) work = "/dev/shm/tarvello-bench.mdb";
    std::filesystem::copy_file(TARVELLO_ACCESS_SAMPLE, work,
                               std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(work, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    {
        const auto from = store::open_engine(archive_path(), regional);
        const auto to = store::open_engine(work, regional);
        for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"}) {
            to->run(store::parse_statement(std::string("DELETE * FROM ") + table));
            const auto rows = from->run(store::parse_statement(std::string("SELECT * FROM ") + table));
            while (rows->next()) insert_copy(*to, table, *rows);
        }
    }
    const std::filesystem::path unfinished =
        path.string() + ".new"; // an interrupted run leaves no half archive
    if (work != unfinished) {
        std::filesystem::copy_file(work, unfinished, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove(work);
    }
    std::filesystem::rename(unfinished, path);
}

const std::string& access_path() {
    static const std::string path = [] {
        const auto file = std::filesystem::path(archive_path()).parent_path() / "access.mdb";
        if (!std::filesystem::exists(file) ||
            std::filesystem::last_write_time(file) < std::filesystem::last_write_time(archive_path())) {
            make_access_archive(file);
        }
        return file.string();
    }();
    return path;
}

std::string access_copy() {
    const auto copy = std::filesystem::path(access_path()).parent_path() / "access-saved.mdb";
    std::filesystem::copy_file(access_path(), copy, std::filesystem::copy_options::overwrite_existing);
    // Written out here, and not by the first thing that is measured on it.
    const int file = ::open(copy.c_str(), O_RDONLY);
    ::fsync(file);
    ::close(file);
    return copy.string();
}

/// Walks over keys all over the archive, as somebody does who looks for an invoice.
class Keys {
public:
    int next() { return at_ = at_ * 7919 % 99'991 + 2; }

private:
    long at_ = 1;
};

std::size_t read_row(const Recordset& rows, std::size_t columns) {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < columns; ++i) {
        const store::ValueView value = rows.value(i);
        if (const auto* text = std::get_if<std::string_view>(&value)) bytes += text->size();
    }
    return bytes;
}

constexpr std::size_t invoice_columns = 42;

void paging(benchmark::State& state, const std::string& path) {
    Connection connection(regional);
    connection.open(path);
    Keys keys;
    Recordset rows;
    for (auto _ : state) {
        rows.open("SELECT * FROM Fatture WHERE ID <" + std::to_string(keys.next()) + " ORDER BY ID DESC",
                  connection);
        benchmark::DoNotOptimize(read_row(rows, invoice_columns));
        rows.close();
    }
}
void paging_access(benchmark::State& state) { paging(state, access_path()); }
void paging_embedded(benchmark::State& state) { paging(state, archive_path()); }

void year(benchmark::State& state, const std::string& path) {
    Connection connection(regional);
    connection.open(path);
    Recordset rows;
    for (auto _ : state) {
        std::size_t count = 0;
        rows.open("SELECT * FROM Fatture WHERE Anno=2015 ORDER BY ID DESC", connection);
        for (; !rows.eof(); rows.move_next(), ++count)
            benchmark::DoNotOptimize(read_row(rows, invoice_columns));
        rows.close();
        if (count != static_cast<std::size_t>(invoices / (last_year - first_year + 1)))
            state.SkipWithError("not all rows");
    }
}
void year_access(benchmark::State& state) { year(state, access_path()); }
void year_embedded(benchmark::State& state) { year(state, archive_path()); }

void save(benchmark::State& state, const std::string& path) {
    Connection connection(regional);
    connection.open(path);
    std::string names;
    std::string values;
    {
        Recordset rows;
        rows.open("SELECT * FROM Fatture WHERE ID=4711", connection);
        const auto source = connection.execute("SELECT * FROM Fatture WHERE ID=4711");
        for (std::size_t i = 1; i < invoice_columns; ++i) {
            const std::string& name = source->columns()[i].name;
            names += (i > 1 ? "," : "") + name;
            values += (i > 1 ? ",'" : "'") + double_apostrophes(rows.text_or_empty(name)) + "'";
        }
    }
    const std::string sql = "INSERT INTO Fatture (" + names + ") VALUES (" + values + ")";
    Recordset none;
    for (auto _ : state) none.open(sql, connection);
}
void save_access(benchmark::State& state) { save(state, access_copy()); }
void save_embedded(benchmark::State& state) { save(state, archive_copy("saved-beside-access.mdb")); }

/// A table with a column of every kind and two indexes, another one each time.
void make_table(benchmark::State& state) {
    using store::ColumnKind;
    const auto engine = store::open_engine(access_copy(), regional);
    store::TableDeclaration table{"",
                                  {{"ID", ColumnKind::autonumber},
                                   {"Fattura", ColumnKind::whole},
                                   {"Giorno", ColumnKind::date},
                                   {"Importo", ColumnKind::currency},
                                   {"Saldata", ColumnKind::yes_no},
                                   {"Mezzo", ColumnKind::text, 40},
                                   {"Note", ColumnKind::memo}},
                                  {"ID"},
                                  {{"Per_fattura", {"Fattura"}}, {"Per_giorno", {"Giorno"}}},
                                  0};
    int number = 0;
    for (auto _ : state) {
        table.name = "Pagamenti_" + std::to_string(++number);
        engine->create_table(table);
    }
}

/// What making that table waits for, alone: a journal of nine old pages, its folder, nine pages written over
/// and five added, the head of the journal made blank; each synced.
void syncs_of_a_table(benchmark::State& state) {
    const std::string path = access_copy();
    const std::string journal = path + "-undo";
    const std::string folder = std::filesystem::path(path).parent_path();
    const std::string bytes(9 * (4096 + 80), 'x');
    const int file = ::open(path.c_str(), O_RDWR);
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    const off_t spread = ::lseek(file, 0, SEEK_END) / 9 / 4096 * 4096;
    bool done = file >= 0 && directory >= 0;
    const auto put = [&](int to, std::size_t size, off_t at) {
        done = done && ::pwrite(to, bytes.data(), size, at) == static_cast<ssize_t>(size);
    };
    for (auto _ : state) {
        const int old_pages = ::open(journal.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        put(old_pages, bytes.size(), 0);
        done = done && ::fdatasync(old_pages) == 0 && ::fsync(directory) == 0;
        for (int i = 0; i < 9; ++i) put(file, 4096, i * spread);
        put(file, std::size_t{5} * 4096, ::lseek(file, 0, SEEK_END));
        done = done && ::fdatasync(file) == 0;
        put(old_pages, 40, 0);
        done = done && ::fdatasync(old_pages) == 0;
        ::close(old_pages);
        ::unlink(journal.c_str());
    }
    if (!done) state.SkipWithError("the disk");
    ::close(file);
    ::close(directory);
}

/// The most memory that a process of its own takes for a statement.
void memory(benchmark::State& state, const std::string& path, const char* sql) {
    for (auto _ : state) {
        const std::string command = std::string("'" TARVELLO_STORE_PROBE "' '") + path + "' \"" + sql + "\"";
        FILE* const probe = ::popen(command.c_str(), "r");
        double megabytes = 0;
        if (probe == nullptr || std::fscanf(probe, "%lf", &megabytes) != 1) state.SkipWithError("no probe");
        if (probe != nullptr) ::pclose(probe);
        state.counters["megabytes"] = megabytes;
    }
}
constexpr const char* read_all = "SELECT * FROM Fatture ORDER BY Cognome_Ragione_Sociale";
constexpr const char* write_all = "UPDATE Fatture SET Cognome_Ragione_Sociale='Bianchi'";
void read_memory_access(benchmark::State& state) { memory(state, access_path(), read_all); }
void read_memory_embedded(benchmark::State& state) { memory(state, archive_path(), read_all); }
void write_memory_access(benchmark::State& state) { memory(state, access_copy(), write_all); }
void write_memory_embedded(benchmark::State& state) {
    memory(state, archive_copy("saved-beside-access.mdb"), write_all);
}

const bool registered = [] {
    row("Access file beside the embedded engine: first row of a paging statement", paging_access,
        paging_embedded, 3);
    row("Access file beside the embedded engine: all rows of a year", year_access, year_embedded, 3);
    row("Access file beside the embedded engine: save of one invoice", save_access, save_embedded, 2,
        Clock::wall);
    row_within("Access file of 100,000 invoices: a table of the program's own is made", make_table, 20'000,
               Clock::wall);
    row("Access file of 100,000 invoices: the same, beside its four syncs alone", make_table,
        syncs_of_a_table, 2, Clock::wall);
    row_of_memory("Access file beside the embedded engine: memory, all invoices read in the order of a text",
                  read_memory_access, read_memory_embedded, 40);
    row_of_memory("Access file beside the embedded engine: memory, all invoices changed in one statement",
                  write_memory_access, write_memory_embedded, 40);
    return true;
}();

} // namespace
} // namespace tarvello::bench
