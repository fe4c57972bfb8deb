#pragma once

#include "store/access/bytes.h"
#include "store/access/table_definition.h"
#include "store/value.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvello::store::access {

/// The bytes of a row, taken apart. A view: it lives as long as the bytes and the definition.
class RowView {
public:
    /// @throws Failure if the bytes are no row
    RowView(Bytes bytes, const TableDefinition& table);

    /// The stored bytes of a column; nothing if it is null. Of a yes/no column, whose value is its bit in the
    /// null mask, the bytes are empty, and it is never nothing: see yes().
    std::optional<Bytes> stored(const ColumnDefinition& column) const;
    bool yes(const ColumnDefinition& column) const { return has_value(column); }

private:
    bool has_value(const ColumnDefinition& column) const;

    Bytes bytes_;
    std::uint32_t columns_ = 0;
    std::size_t mask_at_ = 0;
    std::size_t fixed_end_ = 0;
    std::uint32_t variable_count_ = 0;
    std::size_t count_at_ = 0; // of the number of variable columns: their starts lie in front of it
};

/// The value of a column of fixed length, a text of which is never one.
ValueView fixed_value(Bytes stored, const ColumnDefinition& column);

/// A GUID as Access shows it: {00112233-4455-6677-8899-AABBCCDDEEFF}, the first three groups being numbers.
std::string guid_text(Bytes stored);

/// What the columns of a new or changed row hold, in the order of the definition's columns: the stored bytes,
/// nothing for null. Of a yes/no column anything but null is yes.
using StoredValues = std::vector<std::optional<std::vector<std::uint8_t>>>;

/// The stored bytes of a value. Long values are not made here.
/// @throws Failure if the column cannot hold it
std::vector<std::uint8_t> store_value(const ValueView& value, const ColumnDefinition& column);

/// The size of the smallest row of a table.
std::size_t least_row_size(const TableDefinition& table);

/// Puts a row together.
/// @param least_size  it is filled up to this size
std::vector<std::uint8_t> build_row(const StoredValues& values, const TableDefinition& table,
                                    std::size_t least_size = 0);

/// The days that a file counts from.
inline constexpr std::chrono::sys_days first_day{std::chrono::year{1899} / 12 / 30};

} // namespace tarvello::store::access
