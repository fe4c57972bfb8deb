#pragma once

#include "store/access/format.h"
#include "store/value.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvello::store::access {

struct ColumnDefinition {
    std::string name;
    StoredType type = StoredType::text;
    bool known_type = true; ///< the type is one of StoredType
    std::uint8_t flags = format::column::nullable_flag;
    bool may_be_compressed = false;
    std::uint32_t number = 0;         ///< its bit in the null mask
    std::uint32_t variable_place = 0; ///< in the variable table of a row
    std::uint32_t ordinal = 0;        ///< its place where columns are shown
    std::uint32_t fixed_place = 0;    ///< among the fixed data
    std::uint32_t length = 0;         ///< in bytes
    std::uint32_t sort_order = 0;     ///< of texts: language and version
    std::uint8_t scale = 0;           ///< of numeric
    /// Of long values: the maps of the pages with its values, and of those with room.
    std::optional<RowPointer> long_pages;
    std::optional<RowPointer> long_free_pages;

    ColumnType column_type() const;
    bool fixed() const { return (flags & format::column::fixed_flag) != 0; }
    bool may_be_null() const { return (flags & format::column::nullable_flag) != 0; }
    bool autonumber() const {
        return type == StoredType::integer32 && (flags & format::column::autonumber_flag) != 0;
    }
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

    bool unique() const { return (flags & format::index::unique_flag) != 0; }
    /// Rows that are null in all of its columns have no entry.
    bool ignores_nulls() const { return (flags & format::index::ignores_nulls_flag) != 0; }
    bool required() const { return (flags & format::index::required_flag) != 0; }
};

/// What a table is made of, read from the pages of its definition.
struct TableDefinition {
    std::string name;
    PageNumber page = 0;
    std::uint32_t row_columns = 0;      ///< columns that a row may have, deleted ones included
    std::uint32_t variable_columns = 0; ///< the same for those of variable length
    std::uint32_t first_variable = 0;   ///< a row of more columns than this has a part for variable ones
    std::uint32_t fixed_size = 0;       ///< bytes of a row's fixed data
    bool system = false;                ///< one of those that Access keeps for itself
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

} // namespace tarvello::store::access
