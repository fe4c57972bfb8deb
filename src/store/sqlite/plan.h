#pragma once

#include "store/sqlite/sqlite_file.h"
#include "store/statement.h"

#include <memory>
#include <string>
#include <vector>

struct sqlite3_stmt;

namespace tarvello::store {

/// What all statements of one shape have in common, which is all but their literals.
struct Plan {
    /// @throws Failure if the file has no such table or column
    Plan(std::shared_ptr<SqliteFile> file, const Statement& statement);
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    ~Plan();

    std::shared_ptr<SqliteFile> file;
    std::shared_ptr<const SqliteTable> table;
    Places places;
    std::string sql;
    std::vector<sqlite3_stmt*> idle; ///< prepared and run by no result now
};

/// Two statements that differ only in their literals have the same shape.
void append_shape(std::string& shape, const Statement& statement);

} // namespace tarvello::store
