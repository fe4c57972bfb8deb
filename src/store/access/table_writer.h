#pragma once

#include "store/access/index_filling.h"
#include "store/access/long_value.h"
#include "store/access/table_counts.h"
#include "store/access/table_rows.h"
#include "store/value.h"

#include <optional>
#include <span>
#include <vector>

namespace tarvello::store::access {

/// Inserts, changes and deletes the rows of a table with all that belongs to them: long values, every index,
/// counts, autonumbers. Within a change of the store, which the caller ends or rolls back.
class TableWriter {
public:
    TableWriter(PageStore& store, const TableDefinition& table);

    /// @param columns  the places of the columns that get a value; the others become null
    /// @throws Failure if a value does not fit its column, or a unique index has the key already
    void insert(const std::vector<std::size_t>& columns, std::span<const ValueView> values);
    /// Inserts a row of values as they are stored, one for each column.
    void insert_stored(StoredValues stored);
    /// Inserts a row whose entries in the indexes are gathered.
    /// @param fillings  one for each index
    void insert_gathering(const std::vector<std::size_t>& columns, std::span<const ValueView> values,
                          std::vector<IndexFilling>& fillings);
    /// The automatic number of the row inserted last; nothing if the table has none.
    std::optional<std::int64_t> last_number() const { return last_number_; }

    void update(RowPointer place, const std::vector<std::size_t>& columns, std::span<const ValueView> values);
    void erase(RowPointer place);

private:
    void set(StoredValues& stored, std::size_t column, const ValueView& value);
    StoredValues stored_values(const std::vector<std::size_t>& columns, std::span<const ValueView> values);
    RowPointer add_row(StoredValues& stored, std::vector<std::uint8_t>& row);
    void number(StoredValues& stored);
    void check_nulls(const StoredValues& stored) const;
    std::vector<std::uint8_t> fitting_row(StoredValues& stored, std::size_t least_size);
    std::vector<std::uint8_t> copy_of(RowPointer place) const;

    /// The key that a row of the file has in an index.
    RowKey written_key(const RowView& row, const IndexDefinition& index, RowPointer place) const;
    bool has(const IndexDefinition& index, const RowKey& key) const;
    void add_to_index(const IndexDefinition& index, const RowKey& key, RowPointer place);
    void remove_from_index(const IndexDefinition& index, const RowKey& key, RowPointer place);

    PageStore& store_;
    const TableDefinition& table_;
    PageAllocator allocator_;
    RowWriter rows_;
    LongValues long_values_;
    TableCounts counts_;
    std::optional<std::int64_t> last_number_;
};

/// The highest number in a column of automatic ones, 0 if there is none.
std::int32_t highest_number(PageStore& store, const TableDefinition& table, std::size_t column);

} // namespace tarvello::store::access
