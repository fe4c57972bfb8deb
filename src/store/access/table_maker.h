#pragma once

#include "store/access/catalogue.h"
#include "store/access/definition_parts.h"
#include "store/access/usage_map.h"
#include "store/declaration.h"

/// Makes tables, and adds columns and indexes to those that are there. Within a change of the store.
namespace tarvello::store::access {

class TableMaker {
public:
    explicit TableMaker(PageStore& store) : store_(store), allocator_(store) {}

    /// Makes a table with its rows in the catalogue.
    /// @throws Failure if something else has the name
    void make(const TableDeclaration& table);
    /// Adds the columns and indexes that a table lacks.
    /// @throws Failure if it may not be written, if an automatic number is among the columns, or if rows
    /// repeat
    ///         a key of a unique index
    void complete(const TableDefinition& table, const TableDeclaration& wanted);

    /// Takes the pages of a table, or those that it is given, and writes all but its rows in the catalogue.
    /// @param table  columns and indexes; what lies where is filled in
    void write(TableDefinition& table);

private:
    PageNumber take_page_of_maps();
    RowPointer add_map(std::optional<PageNumber> member = {});
    void add_columns(const TableDefinition& table, const std::vector<ColumnDeclaration>& columns);
    void add_index(const TableDefinition& table, IndexDefinition index);

    PageStore& store_;
    PageAllocator allocator_;
    PageNumber maps_ = 0; // the page that takes maps
};

/// True if a table has all columns and indexes, and has given the numbers that it is to have given.
bool has_all(PageStore& store, const TableDefinition& table, const TableDeclaration& wanted);

/// What a declared table is made of, places in the file left open.
TableDefinition definition_of(const TableDeclaration& table, std::uint32_t sort_order);

} // namespace tarvello::store::access
