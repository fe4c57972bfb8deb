#include "store/sqlite/sqlite_check.h"

#include "store/sqlite/sqlite_file.h"

#include <sqlite3.h>

#include <string_view>

namespace tarvello::store {

void check_sqlite_file(const std::string& path) {
    const SqliteFile file(path);
    sqlite3_stmt* const check = file.prepare("PRAGMA integrity_check(1)");
    const int code = sqlite3_step(check);
    const auto* said = code == SQLITE_ROW ? sqlite3_column_text(check, 0) : nullptr;
    const bool sound = said && std::string_view(reinterpret_cast<const char*>(said)) == "ok";
    sqlite3_finalize(check);
    if (!sound) file.fail(code == SQLITE_ROW ? SQLITE_CORRUPT : code);
}

} // namespace tarvello::store
