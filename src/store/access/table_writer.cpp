#include "store/access/table_writer.h"

#include "store/access/data_page.h"
#include "store/access/index_cursor.h"
#include "store/access/stored_text.h"

#include <algorithm>
#include <limits>

namespace tarvello::store::access {
namespace {

/// True if two states of a row have the same stored values in the columns of an index, and so the same key.
bool same_columns(const IndexDefinition& index, const RowView& left, const RowView& right,
                  const TableDefinition& table) {
    return std::ranges::all_of(index.columns, [&](const IndexColumn& part) {
        const ColumnDefinition& column = table.columns[part.column];
        const auto one = left.stored(column);
        const auto other = right.stored(column);
        return one.has_value() == other.has_value() && left.yes(column) == right.yes(column) &&
               (!one || std::ranges::equal(*one, *other));
    });
}

} // namespace

TableWriter::TableWriter(PageStore& store, const TableDefinition& table)
    : store_(store), table_(table), allocator_(store), rows_(store, allocator_, table),
      long_values_(store, allocator_), counts_(store, table) {}

StoredValues TableWriter::stored_values(const std::vector<std::size_t>& columns,
                                        std::span<const ValueView> values) {
    StoredValues stored(table_.columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) set(stored, columns[i], values[i]);
    return stored;
}

RowPointer TableWriter::add_row(StoredValues& stored, std::vector<std::uint8_t>& row) {
    number(stored);
    check_nulls(stored);
    row = fitting_row(stored, 0);
    counts_.add_rows(1);
    return rows_.add(row);
}

void TableWriter::insert(const std::vector<std::size_t>& columns, std::span<const ValueView> values) {
    insert_stored(stored_values(columns, values));
}

void TableWriter::insert_stored(StoredValues stored) {
    std::vector<std::uint8_t> row;
    const RowPointer place = add_row(stored, row);
    const RowView view(row, table_);
    for (const IndexDefinition& index : table_.indexes)
        add_to_index(index, row_key(view, index, table_), place);
}

void TableWriter::insert_gathering(const std::vector<std::size_t>& columns, std::span<const ValueView> values,
                                   std::vector<IndexFilling>& fillings) {
    StoredValues stored = stored_values(columns, values);
    std::vector<std::uint8_t> row;
    const RowPointer place = add_row(stored, row);
    const RowView view(row, table_);
    for (IndexFilling& filling : fillings) filling.add(view, place);
}

void TableWriter::update(RowPointer place, const std::vector<std::size_t>& columns,
                         std::span<const ValueView> values) {
    const std::vector<std::uint8_t> old = copy_of(place);
    const RowView view(old, table_);
    StoredValues stored(table_.columns.size());
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        const ColumnDefinition& column = table_.columns[i];
        const auto bytes = view.stored(column);
        if (!bytes || (column.type == StoredType::yes_no && !view.yes(column))) continue;
        stored[i].emplace(bytes->begin(), bytes->end());
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const ColumnDefinition& column = table_.columns[columns[i]];
        if (column.type == StoredType::memo && stored[columns[i]])
            long_values_.free(*stored[columns[i]], column);
        set(stored, columns[i], values[i]);
    }
    number(stored);
    check_nulls(stored);
    const std::vector<std::uint8_t> row = fitting_row(stored, rows_.size(place));
    const RowView changed(row, table_);
    for (const IndexDefinition& index : table_.indexes) {
        if (same_columns(index, view, changed, table_)) continue;
        const RowKey before = written_key(view, index, place);
        const RowKey after = row_key(changed, index, table_);
        if (before.bytes == after.bytes) continue;
        remove_from_index(index, before, place);
        add_to_index(index, after, place);
    }
    rows_.change(place, row);
}

void TableWriter::erase(RowPointer place) {
    const std::vector<std::uint8_t> old = copy_of(place);
    const RowView view(old, table_);
    for (const ColumnDefinition& column : table_.columns) {
        if (column.type != StoredType::memo) continue;
        if (const auto bytes = view.stored(column)) long_values_.free(*bytes, column);
    }
    for (const IndexDefinition& index : table_.indexes)
        remove_from_index(index, written_key(view, index, place), place);
    rows_.erase(place);
    counts_.add_rows(-1);
}

std::vector<std::uint8_t> TableWriter::copy_of(RowPointer place) const {
    const auto found = find_row(store_, table_, place);
    if (!found) throw damaged("una riga manca");
    return {found->bytes.begin(), found->bytes.end()};
}

void TableWriter::set(StoredValues& stored, std::size_t place, const ValueView& value) {
    const ColumnDefinition& column = table_.columns[place];
    stored[place].reset();
    if (std::holds_alternative<std::monostate>(value)) return;
    if (column.type == StoredType::yes_no) {
        if (std::get<bool>(value)) stored[place].emplace();
    } else if (column.type == StoredType::memo) {
        stored[place] = long_values_.write(std::get<std::string_view>(value), column);
    } else {
        stored[place] = store_value(value, column);
    }
}

void TableWriter::number(StoredValues& stored) {
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        const ColumnDefinition& column = table_.columns[i];
        if (!column.autonumber()) continue;
        auto last = static_cast<std::int32_t>(counts_.last_autonumber());
        if (stored[i]) {
            // A number that the statement gives is passed by when the next one is given out.
            last = std::max(last, static_cast<std::int32_t>(load32(stored[i]->data())));
        } else {
            last = std::max({last, highest_number(store_, table_, i), 0});
            if (last == std::numeric_limits<std::int32_t>::max()) {
                throw Failure(failure_number::overflow, source,
                              "I numeri automatici della tabella " + table_.name + " sono finiti.");
            }
            ++last;
            stored[i].emplace(sizeof last);
            store32(stored[i]->data(), static_cast<std::uint32_t>(last));
        }
        last_number_ = static_cast<std::int32_t>(load32(stored[i]->data()));
        if (static_cast<std::uint32_t>(last) != counts_.last_autonumber())
            counts_.set_last_autonumber(static_cast<std::uint32_t>(last));
    }
}

void TableWriter::check_nulls(const StoredValues& stored) const {
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        const ColumnDefinition& column = table_.columns[i];
        if (stored[i] || column.may_be_null() || column.type == StoredType::yes_no) continue;
        throw Failure(access_failure::value_missing, source,
                      "La colonna " + column.name + " vuole un valore.");
    }
}

std::vector<std::uint8_t> TableWriter::fitting_row(StoredValues& stored, std::size_t least_size) {
    std::vector<std::uint8_t> row = build_row(stored, table_, least_size);
    // A row that is too long can still leave its short memos outside.
    for (std::size_t i = 0; i < table_.columns.size() && row.size() > data_page::max_row_size; ++i) {
        const ColumnDefinition& column = table_.columns[i];
        if (column.type != StoredType::memo || !stored[i] ||
            stored[i]->size() <= format::long_value::head_size)
            continue;
        std::string text;
        read_memo(store_, *stored[i], text);
        long_values_.free(*stored[i], column);
        stored[i] = long_values_.write(text, column, true);
        row = build_row(stored, table_, least_size);
    }
    if (row.size() > data_page::max_row_size) {
        throw Failure(access_failure::too_long, source,
                      "I testi della riga sono insieme troppo lunghi per la tabella " + table_.name +
                          " del file Access.");
    }
    return row;
}

RowKey TableWriter::written_key(const RowView& row, const IndexDefinition& index, RowPointer place) const {
    try {
        return row_key(row, index, table_);
    } catch (const Failure&) {
        // Access knows the order of more characters than this program. What it wrote is found by its row.
        IndexCursor cursor(store_, index);
        for (bool found = cursor.first(); found; found = cursor.next()) {
            if (cursor.row() == place) return {Key(cursor.key()), false, false};
        }
        throw;
    }
}

bool TableWriter::has(const IndexDefinition& index, const RowKey& key) const {
    IndexCursor cursor(store_, index);
    return cursor.first_not_below(key.bytes) && cursor.key() == KeyView(key.bytes);
}

void TableWriter::add_to_index(const IndexDefinition& index, const RowKey& key, RowPointer place) {
    need_values(index, key, table_);
    if (!belongs_to(index, key)) return;
    const bool known = has(index, key);
    // Rows without any value do not repeat each other. Of rows with a part of one it is not known.
    if (index.unique() && known && !key.all_null) fail_for_repeated_key(index, key, table_);
    IndexWriter(store_, allocator_, index).insert(key.bytes, place);
    if (!known) counts_.add_distinct(index.number, 1);
}

void TableWriter::remove_from_index(const IndexDefinition& index, const RowKey& key, RowPointer place) {
    if (!belongs_to(index, key)) return;
    IndexWriter(store_, allocator_, index).erase(key.bytes, place);
    if (!has(index, key)) counts_.add_distinct(index.number, -1);
}

std::int32_t highest_number(PageStore& store, const TableDefinition& table, std::size_t place) {
    const ColumnDefinition& column = table.columns[place];
    const auto of_row = [&](RowPointer at) {
        const auto found = find_row(store, table, at);
        const auto stored = found ? RowView(found->bytes, table).stored(column) : std::nullopt;
        return stored ? static_cast<std::int32_t>(checked32(*stored, 0)) : 0;
    };
    for (const IndexDefinition& index : table.indexes) {
        if (index.columns.empty() || index.columns[0].column != place) continue;
        IndexCursor cursor(store, index);
        const bool found = index.columns[0].ascending ? cursor.last() : cursor.first();
        return found ? of_row(cursor.row()) : 0;
    }
    std::int32_t highest = 0;
    TableWalk walk(store, table);
    while (const auto at = walk.next()) highest = std::max(highest, of_row(*at));
    return highest;
}

} // namespace tarvello::store::access
