#pragma once

#include "store/sqlite/sqlite_file.h"

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace tarvello::store {

/// A statement of the engine's own, run once. Every failure is a Failure of the file.
class Query {
public:
    Query(const SqliteFile& file, const std::string& sql);
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// @param index  from 1
    void bind(int index, std::string_view text);
    void bind(int index, std::int64_t number);

    /// @return true at the next row, false when the statement is done
    bool next();
    void run() {
        while (next()) {
        }
    }

    std::string text(int column) const;
    std::int64_t whole(int column) const;

private:
    const SqliteFile& file_;
    sqlite3_stmt* statement_;
};

} // namespace tarvello::store
