#include "store/access/table_definition.h"

#include "store/access/bytes.h"
#include "store/access/stored_text.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

constexpr std::size_t index_counts_at = 63;
constexpr std::size_t index_counts_size = 12;
constexpr std::size_t column_size = 25;
constexpr std::size_t real_index_size = 52;
constexpr std::size_t logical_index_size = 28;
constexpr std::uint32_t none = 0xFFFF;

/// The pages of a definition joined to one text.
std::vector<std::uint8_t> joined(PageStore& store, PageNumber number) {
    // A definition of 255 columns with the longest names takes about 40 pages.
    constexpr int most_pages = 256;
    std::vector<std::uint8_t> bytes;
    for (int count = 0; number != 0; ++count) {
        if (count == most_pages) throw damaged("la definizione di una tabella non finisce");
        const PageRef page = store.read(number);
        if ((*page)[0] != static_cast<std::uint8_t>(PageType::definition)) {
            throw damaged("la definizione di una tabella manca");
        }
        bytes.insert(bytes.end(), page->begin() + (bytes.empty() ? 0 : 8), page->end());
        number = load32(page->data() + 4);
    }
    return bytes;
}

/// Walks through the joined text.
class Reader {
public:
    Reader(Bytes bytes, std::size_t at) : bytes_(bytes), at_(at) {}

    Bytes take(std::size_t size) {
        const Bytes taken = part(bytes_, at_, size);
        at_ += size;
        return taken;
    }
    std::string name() {
        const std::uint32_t size = load16(take(2).data());
        return decode_utf16(take(size));
    }
    bool at_end() const { return bytes_.size() - at_ < 2; }

private:
    Bytes bytes_;
    std::size_t at_;
};

ColumnDefinition read_column(Bytes bytes) {
    ColumnDefinition column;
    const std::uint8_t type = bytes[0];
    column.known_type = (type >= 1 && type <= 12) || type == 15 || type == 16;
    column.type = static_cast<StoredType>(type);
    column.number = load16(bytes.data() + 5);
    column.variable_place = load16(bytes.data() + 7);
    column.scale = bytes[12];
    column.sort_order = load32(bytes.data() + 11);
    column.fixed = (bytes[15] & 1) != 0;
    column.may_be_null = (bytes[15] & 2) != 0;
    column.autonumber = (bytes[15] & 4) != 0;
    column.may_be_compressed = (bytes[16] & 1) != 0;
    column.fixed_place = load16(bytes.data() + 21);
    column.length = load16(bytes.data() + 23);
    return column;
}

std::size_t place_of(const std::vector<ColumnDefinition>& columns, std::uint32_t number) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].number == number) return i;
    }
    throw damaged("un indice nomina una colonna che manca");
}

IndexDefinition read_index(Bytes bytes, const std::vector<ColumnDefinition>& columns) {
    IndexDefinition index;
    for (std::size_t i = 0; i < 10; ++i) {
        const std::uint32_t number = load16(bytes.data() + 4 + 3 * i);
        if (number == none) continue;
        index.columns.push_back({place_of(columns, number), (bytes[6 + 3 * i] & 1) != 0});
    }
    index.pages = RowPointer::from_word(load32(bytes.data() + 34));
    index.root = load32(bytes.data() + 38);
    index.flags = bytes[46];
    return index;
}

} // namespace

ColumnType ColumnDefinition::column_type() const {
    if (!known_type) return ColumnType::text;
    switch (type) {
    case StoredType::yes_no:
    case StoredType::byte:
    case StoredType::integer16:
    case StoredType::integer32:
        return ColumnType::integer;
    case StoredType::currency:
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

TableDefinition read_table_definition(PageStore& store, PageNumber page, std::string name) {
    const std::vector<std::uint8_t> text = joined(store, page);
    const Bytes bytes(text);
    TableDefinition table;
    table.name = std::move(name);
    table.page = page;
    table.row_columns = checked16(bytes, 41);
    table.variable_columns = checked16(bytes, 43);
    const std::uint32_t column_count = checked16(bytes, 45);
    const std::uint32_t logical_count = checked32(bytes, 47);
    const std::uint32_t real_count = checked32(bytes, 51);
    // 255 columns and 32 indexes are what a table may have; deleted columns count on for a while.
    if (table.row_columns > 2048 || column_count > 255 || logical_count > 255 || real_count > 64) {
        throw damaged("la definizione di una tabella non è valida");
    }
    table.owned_pages = RowPointer::from_word(checked32(bytes, 55));
    table.free_pages = RowPointer::from_word(checked32(bytes, 59));

    Reader reader(bytes, index_counts_at + index_counts_size * real_count);
    for (std::uint32_t i = 0; i < column_count; ++i)
        table.columns.push_back(read_column(reader.take(column_size)));
    for (ColumnDefinition& column : table.columns) column.name = reader.name();
    std::ranges::sort(table.columns, {}, &ColumnDefinition::number);
    for (const ColumnDefinition& column : table.columns) {
        if (column.number >= table.row_columns ||
            (!column.fixed && column.variable_place >= table.variable_columns)) {
            throw damaged("la definizione di una colonna non è valida");
        }
        if (column.fixed && column.type != StoredType::yes_no) {
            table.fixed_size = std::max(table.fixed_size, column.fixed_place + column.length);
        }
    }
    for (std::uint32_t i = 0; i < real_count; ++i) {
        IndexDefinition index = read_index(reader.take(real_index_size), table.columns);
        index.table = page;
        index.number = i;
        table.indexes.push_back(std::move(index));
    }
    std::vector<std::uint32_t> real_of_logical;
    for (std::uint32_t i = 0; i < logical_count; ++i) {
        const Bytes logical = reader.take(logical_index_size);
        const std::uint32_t real = load32(logical.data() + 8);
        if (real >= real_count) throw damaged("un indice manca");
        real_of_logical.push_back(real);
        if (logical[23] == 1) table.indexes[real].primary = true;
        if (logical[23] == 2) table.indexes[real].relationship = true;
    }
    for (const std::uint32_t real : real_of_logical) {
        std::string index_name = reader.name();
        if (table.indexes[real].name.empty()) table.indexes[real].name = std::move(index_name);
    }
    while (!reader.at_end()) {
        const std::uint32_t number = load16(reader.take(2).data());
        if (number == none) break;
        const Bytes maps = reader.take(8);
        for (ColumnDefinition& column : table.columns) {
            if (column.number != number) continue;
            column.long_pages = RowPointer::from_word(load32(maps.data()));
            column.long_free_pages = RowPointer::from_word(load32(maps.data() + 4));
        }
    }
    return table;
}

std::uint32_t TableCounts::get(std::size_t at) const { return load32(store_.read(page_)->data() + at); }

void TableCounts::set_last_autonumber(std::uint32_t number) {
    store32(store_.edit(page_).data() + 20, number);
}

void TableCounts::change(std::size_t at, int difference) {
    if (difference == 0) return;
    std::uint8_t* place = store_.edit(page_).data() + at;
    const std::int64_t count = std::int64_t{load32(place)} + difference;
    store32(place, static_cast<std::uint32_t>(std::max<std::int64_t>(count, 0)));
}

} // namespace tarvello::store::access
