#pragma once

#include "store/table.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace tarvello::store {

struct SqliteTable : Table {
    std::vector<std::size_t> key_columns; ///< of the primary key, in its order
    bool gives_key = false;               ///< to a row that comes without one
};

/// An open SQLite file: its handle, its tables, what its errors mean. Results hold on to it by a shared
/// pointer, so that they find out that it has been closed under them.
class SqliteFile {
public:
    enum class Use : std::uint8_t {
        existing, ///< a user's file, which must exist
        fresh,    ///< an empty one that is filled, and nobody else knows of yet: see make_sqlite_engine
        in_memory
    };

    /// @throws Failure
    explicit SqliteFile(const std::string& path, Use use = Use::existing);
    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    /// Ends every statement, also those that results still walk, and lets go of the file.
    void close();
    bool is_open() const { return handle_ != nullptr; }
    sqlite3* handle() const { return handle_; }
    /// What the user must be told of the file as it was opened; empty for nothing.
    const std::string& notice() const { return notice_; }

    /// @throws Failure if the file at the path is no longer the one that was opened
    void need_in_place() const;
    /// @throws Failure if the file may not be written to
    void need_writable() const;

    /// A table, known without regard to case. @throws Failure if there is none of that name
    std::shared_ptr<const SqliteTable> table(std::string_view name);
    void forget_tables() { tables_.clear(); }
    /// True if anything has failed since the last call: another program may have changed the tables then, and
    /// what is known of them is forgotten.
    bool forget_what_is_in_doubt();

    sqlite3_stmt* prepare(const std::string& sql) const;

    /// Runs several statements, all or nothing.
    void run_script(const std::string& script) const;

    /// Throws what the result code of the last call means.
    [[noreturn]] void fail(int code) const;

private:
    void open(Use use);
    void check(Use use) const;
    bool is_writable() const;

    std::string path_;
    sqlite3* handle_ = nullptr;
    std::string notice_;
    mutable bool in_doubt_ = false;
    std::map<std::string, std::shared_ptr<const SqliteTable>, std::less<>>
        tables_; ///< by the name as asked for
};

/// A name as SQLite reads any name.
std::string quoted_name(std::string_view name);

} // namespace tarvello::store
