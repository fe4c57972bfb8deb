#include "store/access/named_row.h"

#include "store/access/stored_text.h"

namespace tarvello::store::access {

std::size_t place_of(const TableDefinition& table, const char* column) {
    const auto place = table.find_column(column);
    if (!place) throw damaged("al catalogo manca una colonna");
    return *place;
}

std::int64_t NamedRow::whole(const char* column) const {
    const ColumnDefinition& definition = table_.columns[place_of(table_, column)];
    const auto stored = row_.stored(definition);
    if (!stored) return 0;
    const ValueView value = fixed_value(*stored, definition);
    const auto* number = std::get_if<std::int64_t>(&value);
    return number == nullptr ? 0 : *number;
}

std::string NamedRow::text(const char* column) const {
    std::string value;
    if (const auto stored = row_.stored(table_.columns[place_of(table_, column)]))
        decode_text(*stored, value);
    return value;
}

std::vector<std::uint8_t> NamedRow::bytes(const char* column) const {
    const auto stored = row_.stored(table_.columns[place_of(table_, column)]);
    return stored ? std::vector<std::uint8_t>(stored->begin(), stored->end()) : std::vector<std::uint8_t>();
}

bool NamedRow::yes(const char* column) const { return row_.yes(table_.columns[place_of(table_, column)]); }

void for_each_row(PageStore& store, const TableDefinition& table,
                  const std::function<bool(const NamedRow&)>& act) {
    TableWalk walk(store, table);
    while (const auto place = walk.next()) {
        const auto bytes = find_row(store, table, *place);
        if (!bytes) continue;
        const RowView row(bytes->bytes, table);
        if (!act(NamedRow(row, table))) return;
    }
}

} // namespace tarvello::store::access
