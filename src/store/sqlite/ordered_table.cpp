#include "store/ordered_table.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/sqlite/sqlite_file.h"
#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <filesystem>

namespace tarvello::store {
namespace {

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

class SqliteOrderedTable final : public OrderedTable {
public:
    SqliteOrderedTable(const std::string& path, const std::string& table, const std::string& index,
                       const std::string& column)
        : path_(path) {
        if (std::error_code unreadable; !std::filesystem::exists(path, unreadable)) {
            throw Failure(failure_number::file_not_found, source, "Il file \"" + path + "\" non esiste.");
        }
        sqlite3* database = nullptr;
        const int opened = sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
        database_.reset(database);
        need(opened);
        register_sqlite_functions(database); // the collation of the index
        // Without that index the statement is refused: a walk through the whole table is no seek.
        const std::string key = quoted_name(column);
        const std::string sql = "SELECT * FROM " + quoted_name(table) + " INDEXED BY " + quoted_name(index) +
                                " WHERE " + key + " >= ?1 COLLATE ignoring_case ORDER BY " + key +
                                " COLLATE ignoring_case LIMIT 1";
        sqlite3_stmt* statement = nullptr;
        need(sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr));
        seek_.reset(statement);
    }

    bool seek(std::string_view key) override {
        row_ = false;
        sqlite3_reset(seek_.get());
        need(sqlite3_bind_text64(seek_.get(), 1, key.data(), key.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
        const int stepped = sqlite3_step(seek_.get());
        if (stepped != SQLITE_ROW && stepped != SQLITE_DONE) need(stepped);
        row_ = stepped == SQLITE_ROW;
        return row_;
    }

    std::string_view text(std::string_view column) const override {
        if (!row_) throw no_current_row();
        for (int i = 0; i < sqlite3_column_count(seek_.get()); ++i) {
            if (!equal_ignoring_case(sqlite3_column_name(seek_.get(), i), column)) continue;
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(seek_.get(), i));
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(seek_.get(), i));
            return text ? std::string_view(text, size) : std::string_view();
        }
        throw Failure(failure_number::no_such_element, source,
                      "La colonna \"" + std::string(column) + "\" non esiste.");
    }

private:
    void need(int result) const {
        if (result == SQLITE_OK) return;
        const char* what = "non può essere letto.";
        if (result == SQLITE_NOTADB) what = "non è un archivio.";
        if (result == SQLITE_CORRUPT) what = "è danneggiato.";
        if (result == SQLITE_ERROR) what = "non contiene la tabella attesa o il suo indice.";
        throw Failure(failure_number::database, source, "Il file \"" + path_ + "\" " + what);
    }

    std::string path_;
    // In this order, so that the statement goes before its connection.
    std::unique_ptr<sqlite3, CloseDatabase> database_;
    std::unique_ptr<sqlite3_stmt, FinalizeStatement> seek_;
    bool row_ = false;
};

} // namespace

std::unique_ptr<OrderedTable> open_ordered_table(const std::string& path, const std::string& table,
                                                 const std::string& index, const std::string& column) {
    return std::make_unique<SqliteOrderedTable>(path, table, index, column);
}

} // namespace tarvello::store
