#include "store/access/stored_tables.h"

#include "store/access/catalogue.h"
#include "store/access/table_counts.h"
#include "store/access/table_writer.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

/// @return nothing for what the program only shows, or does not know
std::optional<ColumnKind> kind_of(const ColumnDefinition& column, const TableDefinition& table) {
    if (!column.known_type) return std::nullopt;
    switch (column.type) {
    case StoredType::yes_no:
        return ColumnKind::yes_no;
    case StoredType::integer32: {
        const IndexDefinition* key = table.primary_key();
        const bool alone =
            key != nullptr && key->columns.size() == 1 && &table.columns[key->columns[0].column] == &column;
        return column.autonumber() && alone ? ColumnKind::autonumber : ColumnKind::whole;
    }
    case StoredType::byte:
    case StoredType::integer16:
        return ColumnKind::whole;
    case StoredType::currency:
        return ColumnKind::currency;
    case StoredType::single_float:
    case StoredType::double_float:
        return ColumnKind::number;
    case StoredType::date:
        return ColumnKind::date;
    case StoredType::text:
        return ColumnKind::text;
    case StoredType::memo:
        return ColumnKind::memo;
    default:
        return std::nullopt;
    }
}

std::vector<std::string> names_of(const IndexDefinition& index, const TableDefinition& table) {
    std::vector<std::string> names;
    for (const IndexColumn& column : index.columns) names.push_back(table.columns[column.column].name);
    return names;
}

StoredTable stored_table(PageStore& store, const TableDefinition& table) {
    StoredTable stored;
    TableDeclaration& declaration = stored.declaration;
    declaration.name = table.name;
    const TableCounts counts(store, table);
    stored.rows = counts.rows();
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ColumnDefinition& column = table.columns[i];
        const auto kind = kind_of(column, table);
        if (!kind) {
            stored.other_columns.push_back(column.name);
            continue;
        }
        const std::size_t width = kind == ColumnKind::text ? column.length / sizeof(char16_t) : 0;
        declaration.columns.push_back({column.name, *kind, width});
        if (column.autonumber())
            declaration.last_autonumber =
                std::max<std::int64_t>(counts.last_autonumber(), highest_number(store, table, i));
    }
    for (const IndexDefinition& index : table.indexes) {
        auto names = names_of(index, table);
        const bool known = std::ranges::all_of(
            names, [&](const std::string& name) { return declaration.find(name) != nullptr; });
        if (!known || index.relationship) continue;
        if (index.primary) {
            declaration.primary_key = std::move(names);
        } else {
            declaration.indexes.push_back({index.name, std::move(names), index.unique()});
        }
    }
    return stored;
}

} // namespace

std::vector<StoredTable> stored_tables(PageStore& store) {
    const Catalogue catalogue(store);
    std::vector<StoredTable> tables;
    for (const std::string& name : catalogue.names())
        if (const auto table = catalogue.find(name)) tables.push_back(stored_table(store, *table));
    return tables;
}

} // namespace tarvello::store::access
