#pragma once

#include "store/engine.h"
#include "store/sqlite/sqlite_file.h"

#include <optional>
#include <string>
#include <vector>

/// The tables of an SQLite file as declarations, and declarations as tables. The declared type of a column
/// tells what it holds, see column_of_type.
namespace tarvello::store {

/// What a column of this declared type holds: INTEGER a whole number, TENTHOUSANDTHS INT an amount, BOOLEAN 1
/// and 0, DATE year-month-day, VARCHAR(40) a text of at most 40, TEXT one without a known limit, CLOB a memo.
/// @return nothing for bytes
std::optional<ColumnDeclaration> column_of_type(const std::string& name, const std::string& declared);

/// The tables of the file, without those of SQLite itself; no views.
std::vector<StoredTable> read_tables(const SqliteFile& file);

/// The statements that make a table, or what one that is there lacks; none if it lacks nothing.
/// @throws Failure if it lacks what cannot be added
std::vector<std::string> missing_parts(const SqliteFile& file, const TableDeclaration& table);

/// The statements of data/schema.sql, which make the three tables.
extern const char* const schema_script;

} // namespace tarvello::store
