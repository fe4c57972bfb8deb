#include "store/access/table_definition.h"

#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::store::access {

ColumnType ColumnDefinition::column_type() const {
    if (!known_type) return ColumnType::text;
    switch (type) {
    case StoredType::yes_no:
        return ColumnType::yes_no;
    case StoredType::byte:
    case StoredType::integer16:
    case StoredType::integer32:
        return ColumnType::integer;
    case StoredType::currency:
        return ColumnType::currency;
    case StoredType::single_float:
    case StoredType::double_float:
    case StoredType::numeric:
        return ColumnType::number;
    case StoredType::date:
        return ColumnType::date;
    default:
        return ColumnType::text;
    }
}

const IndexDefinition* TableDefinition::primary_key() const {
    const auto found = std::ranges::find_if(indexes, &IndexDefinition::primary);
    return found == indexes.end() ? nullptr : &*found;
}

const IndexDefinition* TableDefinition::index_on(std::size_t column) const {
    const IndexDefinition* found = nullptr;
    for (const IndexDefinition& index : indexes) {
        if (index.columns.size() != 1 || index.columns[0].column != column) continue;
        if (found == nullptr || index.primary) found = &index;
    }
    return found;
}

std::optional<std::size_t> TableDefinition::find_column(std::string_view wanted) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (equal_ignoring_case(columns[i].name, wanted)) return i;
    }
    return std::nullopt;
}

} // namespace tarvello::store::access
