#include "store/archive_check.h"

#include "failure.h"
#include "store/engine.h"
#include "store/file_kind.h"
#include "store/sqlite/sqlite_check.h"

namespace tarvello::store {
namespace {

/// Reads every value of a table. One that is not there is no fault.
void read_all(Engine& engine, const std::string& table) {
    std::unique_ptr<RowSource> rows;
    try {
        rows = engine.run(parse_statement("SELECT * FROM " + table));
    } catch (const Failure& failure) {
        if (failure.number() == failure_number::no_such_element) return;
        throw;
    }
    while (rows->next()) {
        for (std::size_t column = 0; column < rows->columns().size(); ++column) rows->value(column);
    }
}

} // namespace

std::string why_not_open(const std::string& path, const RegionalSettings& regional) {
    try {
        open_engine(path, regional);
        return {};
    } catch (const Failure& failure) {
        if (failure.number() == failure_number::in_use) throw;
        return failure.description();
    }
}

std::string why_unsound(const std::string& path, const RegionalSettings& regional) {
    try {
        if (kind_of_file(path) == FileKind::sqlite) check_sqlite_file(path);
        const auto engine = open_engine(path, regional);
        for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"}) read_all(*engine, table);
        return {};
    } catch (const Failure& failure) {
        return failure.description();
    }
}

} // namespace tarvello::store
