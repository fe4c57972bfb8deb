// Carrying an archive over into a new file, beside the plainest way to write the same rows: SQLite's own
// interface, prepared statements, one transaction, into a file of the same schema that is synced.

#include "archive.h"
#include "row.h"

#include "store/archive.h"
#include "store/database.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tarvello::bench {
namespace {

const RegionalSettings regional;

std::string destination() {
    const auto path = std::filesystem::path(archive_path()).parent_path() / "carried.mdb";
    std::filesystem::remove(path);
    return path.string();
}

/// The archive as an Access file, made by carrying it over.
const std::string& access_archive() {
    static const std::string path = [] {
        const auto file = std::filesystem::path(archive_path()).parent_path() / "carried-access.mdb";
        std::filesystem::remove(file);
        Connection from(regional);
        from.open(archive_path());
        store::carry_over(from.engine(), file, store::ArchiveFormat::access, regional);
        return file.string();
    }();
    return path;
}

void carry(benchmark::State& state, const std::string& source, store::ArchiveFormat format) {
    for (auto _ : state) {
        state.PauseTiming();
        const std::string path = destination();
        state.ResumeTiming();
        Connection from(regional);
        from.open(source);
        benchmark::DoNotOptimize(store::carry_over(from.engine(), path, format, regional));
    }
}
void to_access(benchmark::State& state) { carry(state, archive_path(), store::ArchiveFormat::access); }
void from_access(benchmark::State& state) { carry(state, access_archive(), store::ArchiveFormat::sqlite); }

void need(bool done, sqlite3* database) {
    if (done) return;
    std::fprintf(stderr, "floor: %s\n", sqlite3_errmsg(database));
    std::exit(1);
}

void copy_rows(sqlite3* from, sqlite3* to, const std::string& table) {
    sqlite3_stmt* read = nullptr;
    need(sqlite3_prepare_v2(from, ("SELECT * FROM " + table).c_str(), -1, &read, nullptr) == SQLITE_OK, from);
    std::string sql = "INSERT INTO " + table + " VALUES (?";
    for (int i = 1; i < sqlite3_column_count(read); ++i) sql += ",?";
    sqlite3_stmt* write = nullptr;
    need(sqlite3_prepare_v2(to, (sql + ")").c_str(), -1, &write, nullptr) == SQLITE_OK, to);
    while (sqlite3_step(read) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(read); ++i)
            sqlite3_bind_value(write, i + 1, sqlite3_column_value(read, i));
        need(sqlite3_step(write) == SQLITE_DONE, to);
        sqlite3_reset(write);
    }
    sqlite3_finalize(read);
    sqlite3_finalize(write);
}

void plain_insert(benchmark::State& state) {
    std::ifstream file(TARVELLO_SCHEMA, std::ios::binary);
    const std::string schema(std::istreambuf_iterator<char>(file), {});
    for (auto _ : state) {
        state.PauseTiming();
        const std::string path = destination();
        state.ResumeTiming();
        sqlite3* from = nullptr;
        sqlite3* to = nullptr;
        need(sqlite3_open_v2(archive_path().c_str(), &from, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
             from);
        need(sqlite3_open(path.c_str(), &to) == SQLITE_OK, to);
        need(sqlite3_exec(to, ("BEGIN;" + schema).c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, to);
        for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"}) copy_rows(from, to, table);
        need(sqlite3_exec(to, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK, to);
        sqlite3_close(from);
        sqlite3_close(to);
    }
}

const bool registered = [] {
    row("100,000 invoices carried over into a new Access file, beside plain INSERTs into SQLite", to_access,
        plain_insert, 3, Clock::wall);
    row("100,000 invoices carried over from an Access file, beside plain INSERTs into SQLite", from_access,
        plain_insert, 3, Clock::wall);
    return true;
}();

} // namespace
} // namespace tarvello::bench
