#pragma once

#include "store/access/free_space.h"
#include "store/access/row.h"

#include <optional>
#include <vector>

namespace tarvello::store::access {

/// A row's bytes where they lie. Valid as long as the object is, and nothing is written.
struct RowBytes {
    PageRef page;
    Bytes bytes;
};

/// The bytes of a row, by the place that its table and indexes know, wherever they have gone since.
/// @return nothing if there is no such row, or it is deleted
/// @throws Failure if the file is damaged
std::optional<RowBytes> find_row(PageStore& store, const TableDefinition& table, RowPointer place);

/// Walks through all rows of a table in the order of its pages. It stays sound while others write.
class TableWalk {
public:
    TableWalk(PageStore& store, const TableDefinition& table)
        : store_(store), table_(table), owned_(store, table.owned_pages) {}

    /// The place of the next row; nothing at the end.
    std::optional<RowPointer> next();

private:
    PageStore& store_;
    const TableDefinition& table_;
    UsageMap owned_;
    PageNumber page_ = 0; // 0 before the first
    std::uint32_t row_ = 0;
};

/// Adds, changes and deletes the rows of a table; of indexes and counts it knows nothing.
class RowWriter {
public:
    RowWriter(PageStore& store, PageAllocator& allocator, const TableDefinition& table);

    RowPointer add(Bytes row);
    /// Rewrites a row. A longer one that its page cannot take moves to another page.
    void change(RowPointer place, Bytes row);
    void erase(RowPointer place);
    /// The bytes that a row has now where it lies, all of which change() must fill.
    std::size_t size(RowPointer place) const;

private:
    bool grow(RowPointer place, Bytes row, std::uint32_t flags);

    PageStore& store_;
    PageNumber table_;
    FreeSpace space_;
};

} // namespace tarvello::store::access
