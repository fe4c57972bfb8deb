#include "store/access/definition_reader.h"

#include "store/access/bytes.h"
#include "store/access/definition_pages.h"
#include "store/access/definition_parts.h"
#include "store/access/stored_text.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

ColumnDefinition read_column(Bytes bytes) {
    using namespace format::column;
    const auto word = [&bytes](std::size_t at) { return load16(bytes.data() + at); };
    ColumnDefinition column;
    const std::uint8_t type = bytes[type_at];
    column.known_type = (type >= static_cast<std::uint8_t>(StoredType::yes_no) &&
                         type <= static_cast<std::uint8_t>(StoredType::memo)) ||
                        type == static_cast<std::uint8_t>(StoredType::guid) ||
                        type == static_cast<std::uint8_t>(StoredType::numeric);
    column.type = static_cast<StoredType>(type);
    column.number = word(number_at);
    column.variable_place = word(variable_place_at);
    column.ordinal = word(ordinal_at);
    column.scale = bytes[scale_at];
    column.sort_order = load32(bytes.data() + sort_order_at);
    column.flags = bytes[flags_at];
    column.may_be_compressed = (bytes[more_flags_at] & compressible_flag) != 0;
    column.fixed_place = word(fixed_place_at);
    column.length = word(length_at);
    return column;
}

std::size_t place_of(const std::vector<ColumnDefinition>& columns, std::uint32_t number) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].number == number) return i;
    }
    throw damaged("un indice nomina una colonna che manca");
}

IndexDefinition read_index(Bytes bytes, const std::vector<ColumnDefinition>& columns) {
    using namespace format::index;
    IndexDefinition index;
    for (std::size_t i = 0; i < most_columns; ++i) {
        const std::uint8_t* column = bytes.data() + columns_at + i * column_size;
        const std::uint32_t number = load16(column);
        if (number == format::definition::none) continue;
        index.columns.push_back({place_of(columns, number), (column[order_at] & ascending_flag) != 0});
    }
    index.pages = RowPointer::from_word(load32(bytes.data() + pages_at));
    index.root = load32(bytes.data() + root_at);
    index.flags = bytes[flags_at];
    return index;
}

/// The lowest number of a column of variable length, deleted ones included: rows of no more columns have no
/// part for them. Of deleted ones only the gap tells that they leave in the numbers, and the place that the
/// next column notes.
std::uint32_t first_variable_column(const TableDefinition& table) {
    std::uint32_t next = 0;
    for (const ColumnDefinition& column : table.columns) {
        if (column.number > next && column.variable_place > 0) return next;
        if (!column.fixed()) return column.number;
        next = column.number + 1;
    }
    return table.variable_columns == 0 ? table.row_columns : next;
}

void read_indexes(const DefinitionParts& parts, TableDefinition& table) {
    using namespace format::logical;
    for (const auto& piece : parts.real_indexes) {
        table.indexes.push_back(read_index(piece, table.columns));
        table.indexes.back().table = table.page;
        table.indexes.back().number = table.indexes.size() - 1;
    }
    for (const auto& [piece, name] : parts.logical_indexes) {
        const std::uint32_t real = load32(piece.data() + real_at);
        if (real >= table.indexes.size()) throw damaged("un indice manca");
        IndexDefinition& index = table.indexes[real];
        if (piece[type_at] == primary_type) index.primary = true;
        if (piece[type_at] == relationship_type) index.relationship = true;
        if (index.name.empty()) index.name = decode_utf16(name);
    }
}

void read_long_maps(const DefinitionParts& parts, TableDefinition& table) {
    using namespace format::definition;
    for (const auto& piece : parts.long_maps) {
        const std::uint32_t number = load16(piece.data());
        const std::uint8_t* maps = piece.data() + piece.size() - long_maps_size;
        const std::uint32_t with_room = load32(maps + map_size);
        for (ColumnDefinition& column : table.columns) {
            if (column.number != number) continue;
            column.long_pages = RowPointer::from_word(load32(maps));
            // Some tables of Access itself keep no map of the pages with room.
            if (with_room != 0) column.long_free_pages = RowPointer::from_word(with_room);
        }
    }
}

} // namespace

TableDefinition read_table_definition(PageStore& store, PageNumber page, std::string name) {
    using namespace format::definition;
    const DefinitionParts parts(read_definition_text(store, page));
    const auto word = [&parts](std::size_t at) { return load16(parts.head.data() + at); };
    const auto map = [&parts](std::size_t at) {
        return RowPointer::from_word(load32(parts.head.data() + at));
    };
    TableDefinition table;
    table.name = std::move(name);
    table.page = page;
    table.system = parts.head[kind_at] != user_kind;
    table.row_columns = word(row_columns_at);
    table.variable_columns = word(variable_columns_at);
    table.owned_pages = map(owned_pages_at);
    table.free_pages = map(free_pages_at);
    if (table.row_columns > most_row_columns || parts.columns.size() > most_columns)
        throw damaged(damage::definition_invalid);
    for (const auto& [piece, column_name] : parts.columns) {
        table.columns.push_back(read_column(piece));
        table.columns.back().name = decode_utf16(column_name);
    }
    std::ranges::sort(table.columns, {}, &ColumnDefinition::number);
    for (const ColumnDefinition& column : table.columns) {
        if (column.number >= table.row_columns ||
            (!column.fixed() && column.variable_place >= table.variable_columns)) {
            throw damaged("la definizione di una colonna non è valida");
        }
        if (column.fixed() && column.type != StoredType::yes_no) {
            table.fixed_size = std::max(table.fixed_size, column.fixed_place + column.length);
        }
    }
    table.first_variable = first_variable_column(table);
    read_indexes(parts, table);
    read_long_maps(parts, table);
    return table;
}

} // namespace tarvello::store::access
