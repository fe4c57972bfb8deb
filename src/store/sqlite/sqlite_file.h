#pragma once

#include "store/table.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tarvello::store {

/// An open SQLite file: its handle, its tables, what its errors mean. Results hold on to it by a shared
/// pointer, so that they find out that it has been closed under them.
class SqliteFile {
public:
    /// @throws Failure
    explicit SqliteFile(const std::string& path);
    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    /// Ends every statement, also those that results still walk, and lets go of the file.
    void close();
    bool is_open() const { return handle_ != nullptr; }
    sqlite3* handle() const { return handle_; }

    /// @throws Failure if the file at the path is no longer the one that was opened
    void need_in_place() const;
    /// @throws Failure if the file may not be written to
    void need_writable() const;

    /// A table, known without regard to case. @throws Failure if there is none of that name
    std::shared_ptr<const Table> table(std::string_view name);
    /// True if anything has failed since the last call: another program may have changed the tables then, and
    /// what is known of them is forgotten.
    bool forget_what_is_in_doubt();

    sqlite3_stmt* prepare(const std::string& sql) const;

    /// Throws what the result code of the last call means.
    [[noreturn]] void fail(int code) const;

private:
    void check() const;

    std::string path_;
    sqlite3* handle_ = nullptr;
    mutable bool in_doubt_ = false;
    std::map<std::string, std::shared_ptr<const Table>, std::less<>> tables_; ///< by the name as asked for
};

/// A name as SQLite reads any name.
std::string quoted_name(std::string_view name);

} // namespace tarvello::store
