#pragma once

#include "store/access/index_writer.h"

#include <vector>

/// What belongs into an index, and how very many entries get there at once.
namespace tarvello::store::access {

/// False for a key that the index passes over.
bool belongs_to(const IndexDefinition& index, const RowKey& key);
/// @throws Failure if the index wants a value where the key has none
void need_values(const IndexDefinition& index, const RowKey& key, const TableDefinition& table);
/// The failure of a key that a unique index has already.
[[noreturn]] void fail_for_repeated_key(const IndexDefinition& index, const RowKey& key,
                                        const TableDefinition& table);

/// The entries of an index that has none yet: gathered row by row, and put into it in their order.
class IndexFilling {
public:
    IndexFilling(const TableDefinition& table, const IndexDefinition& index) : table_(table), index_(index) {}

    /// @throws Failure as for a single entry
    void add(const RowView& row, RowPointer place);
    /// Brings the entries into their order. @throws Failure if a unique index would have a key twice
    void sort();

    std::size_t size() const { return entries_.size(); }
    /// The number of different keys; after sort().
    std::size_t distinct() const { return distinct_; }
    /// Writes the entries, and keeps them no longer; after sort().
    void write(PageStore& store, PageAllocator& allocator);

private:
    const TableDefinition& table_;
    IndexDefinition index_;
    std::vector<Key> entries_;
    std::size_t distinct_ = 0;
};

} // namespace tarvello::store::access
