#include "store/sqlite/query.h"

#include <sqlite3.h>

namespace tarvello::store {

Query::Query(const SqliteFile& file, const std::string& sql) : file_(file), statement_(file.prepare(sql)) {}

Query::~Query() { sqlite3_finalize(statement_); }

void Query::bind(int index, std::string_view text) {
    const int code =
        sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    if (code != SQLITE_OK) file_.fail(code);
}

void Query::bind(int index, std::int64_t number) {
    if (const int code = sqlite3_bind_int64(statement_, index, number); code != SQLITE_OK) file_.fail(code);
}

bool Query::next() {
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE) file_.fail(code);
    return code == SQLITE_ROW;
}

std::string Query::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)))
                : std::string();
}

std::int64_t Query::whole(int column) const { return sqlite3_column_int64(statement_, column); }

} // namespace tarvello::store
