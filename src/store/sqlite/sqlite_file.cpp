#include "store/sqlite/sqlite_file.h"

#include "failure.h"
#include "platform/posix/disk.h"
#include "platform/posix/error_words.h"
#include "store/failure_source.h"
#include "store/sqlite/left_journal.h"
#include "store/sqlite/query.h"
#include "store/sqlite/schema.h"
#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <cerrno>
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
std::string meaning(int code) {
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
        return error_words(EBUSY);
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return "il file è in sola lettura";
    case SQLITE_FULL:
        return error_words(ENOSPC);
    case SQLITE_CORRUPT:
        return "il file è danneggiato";
    case SQLITE_NOTADB:
        return "il file non è un database";
    case SQLITE_CANTOPEN:
        return "non è possibile aprire il file, o scrivere nella sua cartella";
    case SQLITE_IOERR:
        return error_words(EIO);
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

} // namespace

SqliteFile::SqliteFile(const std::string& path, Use use) : path_(path) {
    // An absolute path, so that no name can be taken for one of SQLite's own, such as ":memory:".
    if (!path_.starts_with('/')) path_.insert(0, "./");
    try {
        if (use == Use::existing) notice_ = put_stale_journal_aside(path_);
        open(use);
        check(use);
    } catch (...) {
        close(); // the destructor does not run for an object that was never made
        throw;
    }
}

void SqliteFile::open(Use use) {
    const int code = sqlite3_open_v2(use == Use::in_memory ? ":memory:" : path_.c_str(), &handle_,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (handle_) sqlite3_extended_result_codes(handle_, 1);
    if (code != SQLITE_OK) fail(handle_ ? sqlite3_extended_errcode(handle_) : code);
    sqlite3_busy_timeout(handle_, lock_wait_ms);
    // The file may come from anybody: nothing in its schema gets at more than the file.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // A quoted name that is no column is an error, and not the text of that name.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    register_sqlite_functions(handle_);
}

SqliteFile::~SqliteFile() { close(); }

void SqliteFile::close() {
    if (!handle_) return;
    while (sqlite3_stmt* statement = sqlite3_next_stmt(handle_, nullptr)) sqlite3_finalize(statement);
    sqlite3_close(handle_);
    handle_ = nullptr;
}

void SqliteFile::check(Use use) const {
    const auto ask = [&](const std::string& sql) {
        Query query(*this, sql);
        return query.next() ? query.text(0) : std::string();
    };
    ask("PRAGMA cache_size = -" + std::to_string(cache_kib));
    if (use != Use::existing) {
        // No journal on the disk: a file that is not whole is thrown away. What is committed is synced.
        ask("PRAGMA journal_mode = MEMORY");
        return;
    }
    // Extra: the folder is synced too when the journal has been unlinked. Else it may come back after a power
    // cut, and take back what was saved.
    ask("PRAGMA synchronous = EXTRA");
    // No page is written before the statement ends, so that the journal holds the first page of the file when
    // one is: by it the journal is known, see put_stale_journal_aside.
    ask("PRAGMA cache_spill = OFF");
    ask("SELECT count(*) FROM sqlite_master"); // reads the head and every definition
    // Another program may have left it to keep its last rows in a file beside it, which no copy takes along.
    if (ask("PRAGMA journal_mode") != "delete" && is_writable()) ask("PRAGMA journal_mode = DELETE");
    const std::int64_t bytes =
        std::atoll(ask("PRAGMA page_count").c_str()) * std::atoll(ask("PRAGMA page_size").c_str());
    if (bytes <= whole_check_bytes && ask("PRAGMA quick_check(1)") != "ok") fail(SQLITE_CORRUPT);
}

void SqliteFile::need_in_place() const {
    int moved = 0;
    sqlite3_file_control(handle_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved) fail(SQLITE_READONLY_DBMOVED);
}

bool SqliteFile::is_writable() const {
    // The handle may write what the file's owner has forbidden since it was opened.
    return write_obstacle(path_) == 0;
}

void SqliteFile::need_writable() const {
    if (!is_writable()) fail(SQLITE_READONLY);
}

bool SqliteFile::forget_what_is_in_doubt() {
    if (!in_doubt_) return false;
    in_doubt_ = false;
    tables_.clear();
    return true;
}

std::shared_ptr<const SqliteTable> SqliteFile::table(std::string_view name) {
    if (const auto known = tables_.find(name); known != tables_.end()) return known->second;

    auto table = std::make_shared<SqliteTable>();
    Query names(*this, "SELECT name FROM sqlite_master WHERE type IN ('table', 'view')");
    while (table->name.empty() && names.next()) {
        if (equal_ignoring_case(names.text(0), name)) table->name = names.text(0);
    }
    if (table->name.empty()) fail_for_missing_table(name);

    Query columns(*this, "SELECT name, type, pk FROM pragma_table_info(?1)");
    columns.bind(1, table->name);
    std::map<std::int64_t, std::size_t> key; // by the place in it
    bool integer_key = false;
    while (columns.next()) {
        const std::string type = columns.text(1);
        if (const std::int64_t place = columns.whole(2); place > 0) {
            key[place] = table->columns.size();
            integer_key = upper_case(type) == "INTEGER";
        }
        const auto kind = column_of_type(columns.text(0), type);
        table->columns.push_back({columns.text(0), kind ? type_of(kind->kind) : ColumnType::text,
                                  kind && kind->kind == ColumnKind::text ? kind->width : 0});
    }
    for (const auto& [place, column] : key) table->key_columns.push_back(column);
    if (key.size() == 1) table->key = table->key_columns[0];
    table->gives_key = key.size() == 1 && integer_key;
    return tables_.emplace(name, std::move(table)).first->second;
}

sqlite3_stmt* SqliteFile::prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(handle_, sql.c_str(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) fail(code);
    return statement;
}

void SqliteFile::run_script(const std::string& script) const {
    const int code =
        sqlite3_exec(handle_, ("BEGIN;" + script + ";COMMIT").c_str(), nullptr, nullptr, nullptr);
    if (code == SQLITE_OK) return;
    const int extended = sqlite3_extended_errcode(handle_);
    sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
    fail(extended);
}

void SqliteFile::fail(int code) const {
    in_doubt_ = true;
    // The handle tells more than the code, if the code is its own and not what we found out ourselves.
    const bool own = handle_ && sqlite3_extended_errcode(handle_) == code;
    const char* detail = own ? sqlite3_errmsg(handle_) : sqlite3_errstr(code);
    const bool in_use = (code & 0xff) == SQLITE_BUSY || (code & 0xff) == SQLITE_LOCKED;
    throw Failure(in_use ? failure_number::in_use : failure_number::database, source,
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
