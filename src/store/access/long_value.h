#pragma once

#include "store/access/free_space.h"
#include "store/access/row.h"

#include <string>
#include <string_view>

/// Memos: inside the row up to 64 bytes, else one row of a page of long values, or a chain of such rows.
namespace tarvello::store::access {

/// Reads a memo into `into` as UTF-8.
/// @param stored  what the row holds of it
/// @throws Failure if the value is not whole
void read_memo(PageStore& store, Bytes stored, std::string& into);

/// Writes and frees the long values of one table.
class LongValues {
public:
    LongValues(PageStore& store, PageAllocator& allocator) : store_(store), allocator_(allocator) {}

    /// @return what the row is to hold of it
    /// @param outside  put it outside of the row even if it is short
    std::vector<std::uint8_t> write(std::string_view text, const ColumnDefinition& column,
                                    bool outside = false);
    /// Frees the pages of a value. Nothing to do for one inside the row.
    void free(Bytes stored, const ColumnDefinition& column);

private:
    /// The pages of the column's long values.
    FreeSpace space(const ColumnDefinition& column);
    void erase_row(RowPointer row, const ColumnDefinition& column);

    PageStore& store_;
    PageAllocator& allocator_;
};

} // namespace tarvello::store::access
