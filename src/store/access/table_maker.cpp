#include "store/access/table_maker.h"

#include "store/access/catalogue_rows.h"
#include "store/access/data_page.h"
#include "store/access/definition_pages.h"
#include "store/access/definition_reader.h"
#include "store/access/header.h"
#include "store/access/index_filling.h"
#include "store/access/table_counts.h"
#include "store/access/table_rows.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

/// How a kind of column is stored.
struct Storage {
    StoredType type = StoredType::integer32;
    std::uint32_t length = 0; ///< 0 for those of variable length
    std::uint8_t flags = 0;
};

Storage storage_of(ColumnKind kind) {
    using namespace format::column;
    switch (kind) {
    case ColumnKind::autonumber:
        return {StoredType::integer32, 4, fixed_flag | autonumber_flag};
    case ColumnKind::whole:
        return {StoredType::integer32, 4, fixed_flag};
    case ColumnKind::number:
        return {StoredType::double_float, 8, fixed_flag};
    case ColumnKind::text:
        return {StoredType::text, 0, 0};
    case ColumnKind::memo:
        return {StoredType::memo, 0, 0};
    case ColumnKind::currency:
        return {StoredType::currency, 8, fixed_flag};
    case ColumnKind::date:
        return {StoredType::date, 8, fixed_flag};
    case ColumnKind::yes_no:
        return {StoredType::yes_no, 1, fixed_flag};
    }
    return {};
}

/// Adds a column behind the others, which have taken so much of a row.
void add_column(TableDefinition& table, const ColumnDeclaration& wanted, std::uint32_t ordinal,
                std::uint32_t sort_order) {
    const Storage storage = storage_of(wanted.kind);
    ColumnDefinition column;
    column.name = wanted.name;
    column.type = storage.type;
    column.flags = storage.flags | format::column::nullable_flag;
    column.number = table.row_columns++;
    column.variable_place = table.variable_columns;
    column.ordinal = ordinal;
    column.sort_order = sort_order;
    column.length = storage.length;
    if (!column.fixed()) {
        ++table.variable_columns;
        column.may_be_compressed = true;
        if (column.type == StoredType::text)
            column.length = static_cast<std::uint32_t>(wanted.width * sizeof(char16_t));
    } else if (column.type != StoredType::yes_no) {
        column.fixed_place = table.fixed_size;
        table.fixed_size += column.length;
    }
    table.columns.push_back(std::move(column));
}

IndexDefinition index_over(const TableDefinition& table, const std::string& name,
                           const std::vector<std::string>& columns, std::uint8_t flags) {
    IndexDefinition index;
    index.name = name;
    index.flags = format::index::always_flag | flags;
    index.table = table.page;
    index.number = table.indexes.size();
    for (const std::string& column : columns) {
        const auto place = table.find_column(column);
        if (!place) {
            throw Failure(failure_number::no_such_element, source,
                          "La tabella " + table.name + " non ha la colonna \"" + column + "\".");
        }
        index.columns.push_back({*place, true});
    }
    return index;
}

std::uint8_t flags_of(const IndexDeclaration& index) { return index.unique ? format::index::unique_flag : 0; }

std::vector<ColumnDeclaration> missing_columns(const TableDefinition& table, const TableDeclaration& wanted) {
    std::vector<ColumnDeclaration> missing;
    for (const ColumnDeclaration& column : wanted.columns)
        if (!table.find_column(column.name)) missing.push_back(column);
    return missing;
}

std::vector<IndexDeclaration> missing_indexes(const TableDefinition& table, const TableDeclaration& wanted) {
    std::vector<IndexDeclaration> missing;
    for (const IndexDeclaration& index : wanted.indexes) {
        const auto same = [&](const IndexDefinition& other) {
            return equal_ignoring_case(other.name, index.name);
        };
        if (std::ranges::none_of(table.indexes, same)) missing.push_back(index);
    }
    return missing;
}

} // namespace

TableDefinition definition_of(const TableDeclaration& wanted, std::uint32_t sort_order) {
    TableDefinition table;
    table.name = wanted.name;
    for (std::size_t i = 0; i < wanted.columns.size(); ++i)
        add_column(table, wanted.columns[i], static_cast<std::uint32_t>(i), sort_order);
    if (!wanted.primary_key.empty()) {
        // The name that Access gives it.
        table.indexes.push_back(index_over(table, "PrimaryKey", wanted.primary_key,
                                           format::index::unique_flag | format::index::required_flag));
        table.indexes.back().primary = true;
    }
    for (const IndexDeclaration& index : wanted.indexes)
        table.indexes.push_back(index_over(table, index.name, index.columns, flags_of(index)));
    return table;
}

void TableMaker::make(const TableDeclaration& wanted) {
    const Catalogue catalogue(store_);
    CatalogueRows rows(store_, catalogue);
    if (rows.has_object(format::catalogue::tables_id, wanted.name)) {
        throw not_writable("Il file Access ha già una query di nome " + wanted.name +
                           ": la tabella con questo nome non si può creare.");
    }
    maps_ = 0;
    TableDefinition table = definition_of(wanted, sort_order(*store_.read(0)));
    write(table);
    if (wanted.last_autonumber > 0) {
        TableCounts(store_, table).set_last_autonumber(static_cast<std::uint32_t>(wanted.last_autonumber));
    }
    rows.add_table(table.page, table.name);
}

void TableMaker::write(TableDefinition& table) {
    if (table.page == 0) table.page = allocator_.take();
    if (maps_ == 0) maps_ = take_page_of_maps();
    for (IndexDefinition& index : table.indexes) {
        index.root = allocator_.take();
        write_index_page(store_.edit(index.root), PageType::index_leaf, table.page, {}, 0, 0, {});
    }
    table.owned_pages = add_map();
    table.free_pages = add_map();
    for (ColumnDefinition& column : table.columns) {
        if (!column.is_long()) continue;
        column.long_pages = add_map();
        column.long_free_pages = add_map();
    }
    for (IndexDefinition& index : table.indexes) index.pages = add_map(index.root);

    DefinitionParts parts(table);
    std::vector<ColumnDefinition> shown = table.columns;
    std::ranges::stable_sort(shown, {}, [](const ColumnDefinition& column) {
        return std::pair(column.ordinal, fold_case(column.name));
    });
    for (const ColumnDefinition& column : shown) parts.add(column);
    for (const IndexDefinition& index : table.indexes) parts.add(index, table.columns);
    write_definition_text(store_, allocator_, table.page, parts.joined());
}

PageNumber TableMaker::take_page_of_maps() {
    const PageNumber page = allocator_.take();
    data_page::clear(store_.edit(page), format::data::maps_owner);
    return page;
}

RowPointer TableMaker::add_map(std::optional<PageNumber> member) {
    const auto row = new_usage_map(member);
    if (!data_page::has_room(*store_.read(maps_), row.size())) maps_ = take_page_of_maps();
    return {maps_, data_page::add(store_.edit(maps_), row)};
}

bool has_all(PageStore& store, const TableDefinition& table, const TableDeclaration& wanted) {
    return missing_columns(table, wanted).empty() && missing_indexes(table, wanted).empty() &&
           TableCounts(store, table).last_autonumber() >= wanted.last_autonumber;
}

void TableMaker::complete(const TableDefinition& there, const TableDeclaration& wanted) {
    if (const std::string reason = Catalogue(store_).why_not_writable(there); !reason.empty())
        throw not_writable(reason);
    TableCounts counts(store_, there);
    if (wanted.last_autonumber > counts.last_autonumber())
        counts.set_last_autonumber(static_cast<std::uint32_t>(wanted.last_autonumber));
    maps_ = there.owned_pages.page;
    add_columns(there, missing_columns(there, wanted));
    for (const IndexDeclaration& index : missing_indexes(there, wanted)) {
        const TableDefinition table = read_table_definition(store_, there.page, there.name);
        add_index(table, index_over(table, index.name, index.columns, flags_of(index)));
    }
}

void TableMaker::add_columns(const TableDefinition& there, const std::vector<ColumnDeclaration>& columns) {
    if (columns.empty()) return;
    TableDefinition table = there;
    DefinitionParts parts(read_definition_text(store_, there.page));
    std::uint32_t ordinal = 0;
    for (const ColumnDefinition& column : there.columns) ordinal = std::max(ordinal, column.ordinal + 1);
    for (const ColumnDeclaration& wanted : columns) {
        if (wanted.kind == ColumnKind::autonumber ||
            table.columns.size() == format::definition::most_columns) {
            throw not_writable("Alla tabella " + table.name +
                               " del file Access non si può aggiungere la colonna " + wanted.name + ".");
        }
        add_column(table, wanted, ordinal++, sort_order(*store_.read(0)));
        ColumnDefinition& column = table.columns.back();
        if (column.is_long()) {
            column.long_pages = add_map();
            column.long_free_pages = add_map();
        }
        parts.add(column);
    }
    parts.set_row(table);
    write_definition_text(store_, allocator_, there.page, parts.joined());
}

void TableMaker::add_index(const TableDefinition& table, IndexDefinition index) {
    for (const IndexColumn& part : index.columns) {
        if (!key_is_known(table.columns[part.column]))
            throw not_writable("Un indice sulla colonna " + table.columns[part.column].name +
                               " del file Access non si può creare.");
    }
    index.root = allocator_.take();
    write_index_page(store_.edit(index.root), PageType::index_leaf, table.page, {}, 0, 0, {});
    index.pages = add_map(index.root);
    IndexFilling filling(table, index);
    TableWalk walk(store_, table);
    while (const auto place = walk.next()) {
        const auto row = find_row(store_, table, *place);
        if (row) filling.add(RowView(row->bytes, table), *place);
    }
    filling.sort();
    DefinitionParts parts(read_definition_text(store_, table.page));
    parts.add(index, table.columns);
    const auto count = [&](std::size_t at, std::size_t number) {
        store32(parts.counts.back().data() + at, static_cast<std::uint32_t>(number));
    };
    count(format::definition::count_built_at, filling.size());
    count(format::definition::count_distinct_at, filling.distinct());
    write_definition_text(store_, allocator_, table.page, parts.joined());
    filling.write(store_, allocator_);
}

} // namespace tarvello::store::access
