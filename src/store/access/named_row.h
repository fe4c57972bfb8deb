#pragma once

#include "store/access/row.h"
#include "store/access/table_rows.h"

#include <functional>
#include <string>

/// Rows of the tables that Access keeps for itself, their columns by name.
namespace tarvello::store::access {

class NamedRow {
public:
    NamedRow(const RowView& row, const TableDefinition& table) : row_(row), table_(table) {}

    /// Each fails if the table has no such column. Null is 0, the empty text, no bytes.
    std::int64_t whole(const char* column) const;
    std::string text(const char* column) const;
    std::vector<std::uint8_t> bytes(const char* column) const;
    bool yes(const char* column) const;

private:
    const RowView& row_;
    const TableDefinition& table_;
};

/// The place of a column. @throws Failure if there is none of that name
std::size_t place_of(const TableDefinition& table, const char* column);

/// Shows every row of a table, until `act` returns false.
void for_each_row(PageStore& store, const TableDefinition& table,
                  const std::function<bool(const NamedRow&)>& act);

} // namespace tarvello::store::access
