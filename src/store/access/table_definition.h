#pragma once

#include "store/access/page_store.h"
#include "store/value.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvello::store::access {

struct ColumnDefinition {
    std::string name;
    StoredType type = StoredType::text;
    bool known_type = true; ///< the type is one of StoredType
    bool fixed = false;
    bool may_be_null = true;
    bool autonumber = false;
    bool may_be_compressed = false;
    std::uint32_t number = 0;         ///< its bit in the null mask
    std::uint32_t variable_place = 0; ///< in the variable table of a row
    std::uint32_t fixed_place = 0;    ///< among the fixed data
    std::uint32_t length = 0;         ///< in bytes
    std::uint32_t sort_order = 0;     ///< of texts: language and version
    std::uint8_t scale = 0;           ///< of numeric
    /// Of long values: the maps of the pages with its values, and of those with room.
    std::optional<RowPointer> long_pages;
    std::optional<RowPointer> long_free_pages;

    ColumnType column_type() const;
    bool is_long() const { return type == StoredType::memo || type == StoredType::ole; }
};

struct IndexColumn {
    std::size_t column = 0; ///< place among the definition's columns
    bool ascending = true;
};

struct IndexDefinition {
    std::vector<IndexColumn> columns;
    RowPointer pages; ///< its usage map
    PageNumber root = 0;
    std::uint8_t flags = 0;
    bool primary = false;
    bool relationship = false; ///< a logical index on it serves a relationship
    PageNumber table = 0;      ///< the page of the definition
    std::size_t number = 0;    ///< among the table's indexes
    std::string name;          ///< of the first logical index on it

    bool unique() const { return (flags & 0x01) != 0; }
    bool ignores_nulls() const { return (flags & 0x02) != 0; }
    bool required() const { return (flags & 0x08) != 0; }
};

/// What a table is made of, read from the pages of its definition.
struct TableDefinition {
    std::string name;
    PageNumber page = 0;
    std::uint32_t row_columns = 0;      ///< columns that a row may have, deleted ones included
    std::uint32_t variable_columns = 0; ///< the same for those of variable length
    std::uint32_t fixed_size = 0;       ///< bytes of a row's fixed data
    RowPointer owned_pages;
    RowPointer free_pages;
    std::vector<ColumnDefinition> columns; ///< in the order of their numbers
    std::vector<IndexDefinition> indexes;

    const IndexDefinition* primary_key() const;
    /// The index on this column alone, if there is one.
    const IndexDefinition* index_on(std::size_t column) const;
    /// The place of a column, without regard to letter case.
    std::optional<std::size_t> find_column(std::string_view name) const;
};

/// @throws Failure if the page holds no sound definition
TableDefinition read_table_definition(PageStore& store, PageNumber page, std::string name);

/// The counts that a definition keeps, read and written where they lie.
class TableCounts {
public:
    TableCounts(PageStore& store, const TableDefinition& table) : store_(store), page_(table.page) {}

    std::uint32_t rows() const { return get(16); }
    void add_rows(int difference) { change(16, difference); }
    std::uint32_t last_autonumber() const { return get(20); }
    void set_last_autonumber(std::uint32_t number);
    /// The number of distinct entries of an index.
    void add_distinct(std::size_t index, int difference) { change(63 + 12 * index + 4, difference); }

private:
    std::uint32_t get(std::size_t at) const;
    void change(std::size_t at, int difference);

    PageStore& store_;
    PageNumber page_;
};

} // namespace tarvello::store::access
