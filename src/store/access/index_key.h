#pragma once

#include "store/access/row.h"

#include <optional>
#include <string>
#include <string_view>

/// The bytes by which an index orders its rows.
namespace tarvello::store::access {

/// The bytes of a key or an entry, compared as they stand.
using Key = std::basic_string<std::uint8_t>;
using KeyView = std::basic_string_view<std::uint8_t>;

/// True if the keys of this column are known: its type, and of a text its sort order. Of a descending text no
/// file of Access proves the form.
bool key_is_known(const ColumnDefinition& column);
inline bool is_proven(const ColumnDefinition& column, bool ascending) {
    return ascending || column.type != StoredType::text;
}

/// The key of a row in an index.
struct RowKey {
    Key bytes;
    bool any_null = false;
    bool all_null = true;
};
/// @throws Failure if a text holds a character whose place in the order is not known
RowKey row_key(const RowView& row, const IndexDefinition& index, const TableDefinition& table);

/// The part of a key for one column whose value is known, null if there are no bytes.
void append_key(Key& key, std::optional<Bytes> stored, bool yes, const ColumnDefinition& column,
                bool ascending);

/// The key of a whole number in an index of one column; nothing if the column's type does not hold it.
std::optional<Key> number_key(std::int64_t number, const ColumnDefinition& column, bool ascending);

/// Appends the bytes of a text in the order "General", letter case not counted.
/// @throws Failure if a character's place in the order is not known
void append_text_key(Key& key, std::string_view text);

} // namespace tarvello::store::access
