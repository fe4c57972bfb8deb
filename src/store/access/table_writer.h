#pragma once

#include "store/access/index_key.h"
#include "store/access/index_writer.h"
#include "store/access/long_value.h"
#include "store/access/row.h"
#include "store/access/table_rows.h"
#include "store/value.h"

#include <vector>

namespace tarvello::store::access {

/// Inserts, changes and deletes the rows of a table with all that belongs to them: long values, every index,
/// counts, autonumbers. Within a change of the store, which the caller ends or rolls back.
class TableWriter {
public:
    TableWriter(PageStore& store, const TableDefinition& table);

    /// @param columns  the places of the columns that get a value; the others become null
    /// @throws Failure if a value does not fit its column, or a unique index has the key already
    void insert(const std::vector<std::size_t>& columns, const std::vector<Value>& values);
    void update(RowPointer place, const std::vector<std::size_t>& columns, const std::vector<Value>& values);
    void erase(RowPointer place);

private:
    void set(StoredValues& stored, std::size_t column, const Value& value);
    void number(StoredValues& stored);
    void check_nulls(const StoredValues& stored) const;
    std::vector<std::uint8_t> fitting_row(StoredValues& stored, std::size_t least_size);
    std::vector<std::uint8_t> copy_of(RowPointer place) const;

    /// The key that a row of the file has in an index.
    RowKey written_key(const RowView& row, const IndexDefinition& index, RowPointer place) const;
    bool has(const IndexDefinition& index, const RowKey& key) const;
    bool holds(const IndexDefinition& index, const RowKey& key) const;
    void add_to_index(const IndexDefinition& index, const RowKey& key, RowPointer place);
    void remove_from_index(const IndexDefinition& index, const RowKey& key, RowPointer place);

    PageStore& store_;
    const TableDefinition& table_;
    PageAllocator allocator_;
    RowWriter rows_;
    LongValues long_values_;
    TableCounts counts_;
};

} // namespace tarvello::store::access
