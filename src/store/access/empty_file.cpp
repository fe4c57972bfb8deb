#include "store/access/empty_file.h"

#include "store/access/catalogue_rows.h"
#include "store/access/data_page.h"
#include "store/access/definition_reader.h"
#include "store/access/header.h"
#include "store/access/table_maker.h"

#include <algorithm>
#include <bit>

namespace tarvello::store::access {
namespace {

using namespace format::catalogue;

/// A date of creation and the mark of the engine that goes with it: those whom rights are about are hidden by
/// a stream that hangs on the date, and nobody knows how.
constexpr std::uint64_t created = 0x40E4AB3E3BD3853E;
const Sid engine{0x65, 0x89};

struct SystemColumn {
    const char* name;
    StoredType type;
    std::uint32_t number;
    std::uint32_t variable_place;
    std::uint32_t fixed_place;
    std::uint32_t length;
};
constexpr std::uint32_t variable = 0xFFFF; // in place of a fixed place
constexpr std::uint32_t name_length = 510;

struct SystemIndex {
    const char* name;
    std::vector<std::size_t> columns;
    unsigned flags;
    bool primary;
};

struct SystemTable {
    const char* name;
    std::vector<SystemColumn> columns; // by number
    std::vector<SystemIndex> indexes;
};

std::vector<SystemTable> system_tables() {
    constexpr auto text = StoredType::text;
    constexpr auto memo = StoredType::memo;
    constexpr auto bytes = StoredType::binary;
    constexpr auto ole = StoredType::ole;
    constexpr auto word = StoredType::integer16;
    constexpr auto number = StoredType::integer32;
    constexpr auto date = StoredType::date;
    using namespace format::index;
    return {
        {"MSysObjects",
         {{"Id", number, 0, 0, 0, 4},
          {"ParentId", number, 1, 0, 4, 4},
          {"Name", text, 2, 0, variable, name_length},
          {"Type", word, 3, 1, 8, 2},
          {"DateCreate", date, 4, 1, 10, 8},
          {"DateUpdate", date, 5, 1, 18, 8},
          {"Owner", bytes, 6, 1, variable, name_length},
          {"Flags", number, 7, 2, 26, 4},
          {"Database", memo, 8, 2, variable, 0},
          {"Connect", memo, 9, 3, variable, 0},
          {"ForeignName", text, 10, 4, variable, name_length},
          {"RmtInfoShort", bytes, 11, 5, variable, name_length},
          {"RmtInfoLong", ole, 12, 6, variable, 0},
          {"Lv", ole, 13, 7, variable, 0},
          {"LvProp", ole, 14, 8, variable, 0},
          {"LvModule", ole, 15, 9, variable, 0},
          {"LvExtra", ole, 16, 10, variable, 0}},
         {{"ParentIdName", {1, 2}, unique_flag, false}, {"Id", {0}, unique_flag, true}}},
        {"MSysACEs",
         {{"ObjectId", number, 0, 0, 0, 4},
          {"SID", bytes, 1, 0, variable, name_length},
          {"ACM", number, 2, 1, 4, 4},
          {"FInheritable", StoredType::yes_no, 3, 1, 0, 1}},
         {{"ObjectId", {0}, required_flag, false}}},
        {"MSysQueries",
         {{"ObjectId", number, 0, 0, 0, 4},
          {"Attribute", StoredType::byte, 1, 0, 4, 1},
          {"Order", bytes, 2, 0, variable, name_length},
          {"Name1", text, 3, 1, variable, name_length},
          {"Name2", text, 4, 2, variable, name_length},
          {"Expression", memo, 5, 3, variable, 0},
          {"Flag", word, 6, 4, 5, 2},
          {"LvExtra", number, 7, 4, 7, 4}},
         {{"ObjectIdAttribute", {0, 1, 2}, unique_flag, true}}},
        {"MSysRelationships",
         {{"szRelationship", text, 0, 0, variable, name_length},
          {"grbit", number, 1, 1, 0, 4},
          {"ccolumn", number, 2, 1, 4, 4},
          {"icolumn", number, 3, 1, 8, 4},
          {"szObject", text, 4, 1, variable, name_length},
          {"szColumn", text, 5, 2, variable, name_length},
          {"szReferencedObject", text, 6, 3, variable, name_length},
          {"szReferencedColumn", text, 7, 4, variable, name_length}},
         {{"szRelationship", {0}, ignores_nulls_flag, false},
          {"szObject", {4}, ignores_nulls_flag, false},
          {"szReferencedObject", {6}, ignores_nulls_flag, false}}},
    };
}

TableDefinition definition_of(const SystemTable& system) {
    using namespace format::column;
    TableDefinition table;
    table.name = system.name;
    table.system = true;
    for (const SystemColumn& one : system.columns) {
        ColumnDefinition column;
        column.name = one.name;
        column.type = one.type;
        column.number = one.number;
        column.variable_place = one.variable_place;
        column.length = one.length;
        column.sort_order = format::general_order;
        column.flags = nullable_flag | system_flag;
        if (one.fixed_place == variable) {
            ++table.variable_columns;
            if (column.name == "Owner" || column.name == "SID") column.flags |= hidden_flag;
        } else {
            column.flags |= fixed_flag;
            column.fixed_place = one.fixed_place;
        }
        table.columns.push_back(std::move(column));
    }
    table.row_columns = static_cast<std::uint32_t>(table.columns.size());
    for (const SystemIndex& one : system.indexes) {
        IndexDefinition index;
        index.name = one.name;
        index.flags = static_cast<std::uint8_t>(format::index::always_flag | one.flags);
        index.primary = one.primary;
        for (const std::size_t column : one.columns) index.columns.push_back({column, true});
        table.indexes.push_back(std::move(index));
    }
    return table;
}

/// Page 1: the map of free pages, which tells all but the first two, and another one, which nobody fills.
void write_global_maps(PageStore& store) {
    std::vector<std::uint8_t> free = new_usage_map();
    std::fill(free.begin() + format::map::bits_at, free.end(), std::uint8_t{0xFF});
    free[format::map::bits_at] = 0xFC;
    Page& page = store.edit(format::global_map_page);
    data_page::clear(page, format::data::global_map_owner);
    data_page::add(page, free);
    data_page::add(page, new_usage_map());
}

} // namespace

void fill_empty_file(PageStore& store) {
    store.append();
    store.edit(0) = new_header(std::bit_cast<double>(created));
    store.append();
    write_global_maps(store);
    PageAllocator allocator(store);
    std::vector<TableDefinition> tables;
    for (const SystemTable& system : system_tables()) {
        tables.push_back(definition_of(system));
        tables.back().page = allocator.take();
    }
    TableMaker maker(store);
    for (TableDefinition& table : tables) maker.write(table);

    const auto definition = [&](std::size_t table) {
        return std::make_shared<const TableDefinition>(
            read_table_definition(store, tables[table].page, tables[table].name));
    };
    CatalogueRows rows(store, definition(0), definition(1));
    const Sid admin = related_sid(engine, admin_mark);
    const Sid users = related_sid(engine, users_mark);
    const Sid creator = related_sid(engine, creator_mark);
    rows.add_object({tables_id, parent_of_containers, "Tables", container_type, own_flag}, engine);
    rows.add_object({databases_id, parent_of_containers, "Databases", container_type, own_flag}, engine);
    rows.add_object({relationships_id, parent_of_containers, "Relationships", container_type, own_flag},
                    engine);
    rows.add_object({database_id, databases_id, "MSysDb", database_type, own_flag}, admin);
    for (const TableDefinition& table : tables)
        rows.add_object({table.page, tables_id, table.name, table_type, own_flag}, engine);

    struct Right {
        std::uint32_t object;
        const Sid& sid;
        std::uint32_t mask;
        bool inheritable;
    };
    const Right rights[] = {
        {2, admin, 0x60000, false},
        {3, admin, 0x60000, false},
        {4, admin, 0x60000, false},
        {5, admin, 0xE0000, false},
        {tables_id, creator, 0xF00FE, true},
        {tables_id, admin, 0x60001, false},
        {relationships_id, creator, 0xF00FE, true},
        {relationships_id, admin, 0x60001, false},
        {databases_id, admin, 0x60000, false},
        {database_id, admin, 0x6000E, false},
        {database_id, users, 0xE, false},
        {4, users, 0x14, false},
        {5, users, 0x14, false},
        {2, users, 0x14, false},
        {tables_id, users, 0xFFEFF, true},
        {relationships_id, users, 0xFFFFF, true},
    };
    for (const Right& right : rights) rows.add_right(right.object, right.sid, right.mask, right.inheritable);
}

} // namespace tarvello::store::access
