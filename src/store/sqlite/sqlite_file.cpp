#include "store/sqlite/sqlite_file.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/like_pattern.h"
#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace tarvello::store {
namespace {

/// How long a statement waits for another program that is writing.
constexpr int lock_wait_ms = 1000;
/// Pages kept in memory, in KiB.
constexpr int cache_kib = 8000;
/// Files up to this size are checked whole when they are opened, which takes some milliseconds; of larger
/// ones the head and the tables' definitions.
constexpr std::int64_t whole_check_bytes = std::int64_t{16} * 1024 * 1024;

/// What an error means to the user.
const char* meaning(int code) {
    switch (code) {
    case SQLITE_READONLY_DBMOVED:
        return "il file è stato spostato, sostituito o eliminato da un altro programma";
    case SQLITE_READONLY_DIRECTORY:
    case SQLITE_CANTOPEN_ISDIR:
    case SQLITE_CANTOPEN_NOTEMPDIR:
        return "non è possibile scrivere nella cartella del file";
    default:
        break;
    }
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "il file è occupato da un altro programma";
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return "il file è in sola lettura";
    case SQLITE_FULL:
        return "il disco è pieno";
    case SQLITE_CORRUPT:
        return "il file è danneggiato";
    case SQLITE_NOTADB:
        return "il file non è un database";
    case SQLITE_CANTOPEN:
        return "non è possibile aprire il file, o scrivere nella sua cartella";
    case SQLITE_IOERR:
        return "errore di lettura o scrittura del disco";
    case SQLITE_CONSTRAINT:
        return "i dati contraddicono una regola del database";
    case SQLITE_NOMEM:
        return "la memoria è esaurita";
    case SQLITE_TOOBIG:
        return "il testo è troppo lungo";
    case SQLITE_ABORT:
        return "la lettura è stata interrotta da una scrittura non riuscita";
    case SQLITE_AUTH:
        return "l'operazione non è permessa";
    default:
        return "errore del motore del database";
    }
}

ColumnType type_of(const std::string& declared) {
    const std::string upper = upper_case(declared);
    const auto has = [&](const char* part) { return upper.find(part) != std::string::npos; };
    if (has("DATE") || has("TIME")) return ColumnType::date;
    if (has("INT")) return ColumnType::integer;
    if (has("CHAR") || has("CLOB") || has("TEXT") || upper.empty()) return ColumnType::text;
    if (has("REAL") || has("FLOA") || has("DOUB") || has("NUM") || has("DEC") || has("CURR"))
        return ColumnType::number;
    return ColumnType::text;
}

std::string column_text(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))
                : std::string();
}

struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using OwnStatement = std::unique_ptr<sqlite3_stmt, Finalize>;

} // namespace

SqliteFile::SqliteFile(const std::string& path) : path_(path) {
    // An absolute path, so that no name can be taken for one of SQLite's own, such as ":memory:".
    if (!path_.starts_with('/')) path_.insert(0, "./");
    const int code =
        sqlite3_open_v2(path_.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        if (handle_) sqlite3_extended_result_codes(handle_, 1);
        if (code != SQLITE_OK) fail(handle_ ? sqlite3_extended_errcode(handle_) : code);
        sqlite3_busy_timeout(handle_, lock_wait_ms);
        // The file may come from anybody: nothing in its schema gets at more than the file.
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        // A quoted name that is no column is an error, and not the text of that name.
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
        register_sqlite_functions(handle_);
        check();
    } catch (...) {
        close(); // the destructor does not run for an object that was never made
        throw;
    }
}

SqliteFile::~SqliteFile() { close(); }

void SqliteFile::close() {
    if (!handle_) return;
    while (sqlite3_stmt* statement = sqlite3_next_stmt(handle_, nullptr)) sqlite3_finalize(statement);
    sqlite3_close(handle_);
    handle_ = nullptr;
}

void SqliteFile::check() const {
    const auto run = [&](const std::string& sql) {
        const OwnStatement statement(prepare(sql));
        const int code = sqlite3_step(statement.get());
        if (code != SQLITE_ROW && code != SQLITE_DONE) fail(code);
        return code == SQLITE_ROW ? column_text(statement.get(), 0) : std::string();
    };
    run("PRAGMA synchronous = FULL");
    run("PRAGMA cache_size = -" + std::to_string(cache_kib));
    run("SELECT count(*) FROM sqlite_master"); // reads the head and every definition
    const std::int64_t bytes =
        std::atoll(run("PRAGMA page_count").c_str()) * std::atoll(run("PRAGMA page_size").c_str());
    if (bytes <= whole_check_bytes && run("PRAGMA quick_check(1)") != "ok") fail(SQLITE_CORRUPT);
}

void SqliteFile::need_in_place() const {
    int moved = 0;
    sqlite3_file_control(handle_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved) fail(SQLITE_READONLY_DBMOVED);
}

void SqliteFile::need_writable() const {
    // The handle may write what the file's owner has forbidden since it was opened; and a super-user always.
    struct stat status {};
    constexpr mode_t any_write = S_IWUSR | S_IWGRP | S_IWOTH;
    if (stat(path_.c_str(), &status) == 0 && (status.st_mode & any_write) == 0) fail(SQLITE_READONLY);
    if (::access(path_.c_str(), W_OK) != 0) fail(SQLITE_READONLY);
}

bool SqliteFile::forget_what_is_in_doubt() {
    if (!in_doubt_) return false;
    in_doubt_ = false;
    tables_.clear();
    return true;
}

std::shared_ptr<const Table> SqliteFile::table(std::string_view name) {
    if (const auto known = tables_.find(name); known != tables_.end()) return known->second;

    auto table = std::make_shared<Table>();
    {
        const OwnStatement names(prepare("SELECT name FROM sqlite_master WHERE type IN ('table', 'view')"));
        int code = SQLITE_OK;
        while ((code = sqlite3_step(names.get())) == SQLITE_ROW) {
            const std::string found = column_text(names.get(), 0);
            if (!equal_ignoring_case(found, name)) continue;
            table->name = found;
            code = SQLITE_DONE;
            break;
        }
        if (code != SQLITE_DONE) fail(code);
    }
    if (table->name.empty()) fail_for_missing_table(name);

    const OwnStatement columns(prepare("PRAGMA table_info(" + quoted_name(table->name) + ")"));
    int key_parts = 0;
    int code = SQLITE_OK;
    while ((code = sqlite3_step(columns.get())) == SQLITE_ROW) {
        constexpr int name_column = 1;
        constexpr int type_column = 2;
        constexpr int key_column = 5;
        if (sqlite3_column_int(columns.get(), key_column) > 0) {
            ++key_parts;
            table->key = table->columns.size();
        }
        table->columns.push_back(
            {column_text(columns.get(), name_column), type_of(column_text(columns.get(), type_column))});
    }
    if (code != SQLITE_DONE) fail(code);
    if (key_parts > 1) table->key.reset();
    return tables_.emplace(name, std::move(table)).first->second;
}

sqlite3_stmt* SqliteFile::prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(handle_, sql.c_str(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) fail(code);
    return statement;
}

void SqliteFile::fail(int code) const {
    in_doubt_ = true;
    // The handle tells more than the code, if the code is its own and not what we found out ourselves.
    const bool own = handle_ && sqlite3_extended_errcode(handle_) == code;
    const char* detail = own ? sqlite3_errmsg(handle_) : sqlite3_errstr(code);
    throw Failure(failure_number::database, source,
                  "Database \"" + path_ + "\": " + meaning(code) + " (" + std::string(detail) + ", " +
                      std::to_string(code) + ").");
}

std::string quoted_name(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        quoted += c;
        if (c == '"') quoted += c;
    }
    return quoted + "\"";
}

} // namespace tarvello::store
