#pragma once

#include "store/access/bytes.h"
#include "store/access/usage_map.h"

namespace tarvello::store::access {

/// The data pages of one owner: finds room for rows among them, takes new pages and gives empty ones back.
class FreeSpace {
public:
    /// @param owned      the map of the owner's pages
    /// @param with_room  the map of those with room
    /// @param owner      what the pages name as their owner
    /// @param least      the size of the smallest row that may come: a page has room while one fits
    FreeSpace(PageStore& store, PageAllocator& allocator, UsageMap owned, UsageMap with_room,
              std::uint32_t owner, std::size_t least)
        : store_(store), allocator_(allocator), owned_(owned), with_room_(with_room), owner_(owner),
          least_(least) {}

    /// Writes a row where there is room. It must not be longer than a page takes.
    RowPointer add_row(Bytes row, std::uint32_t flags = 0);
    /// Writes a row as the only one of a new page, which takes no other: it is not in the map of those with
    /// room.
    RowPointer add_only_row(Bytes row);
    /// Deletes a row; a page without rows is given back.
    void erase_row(RowPointer row);
    /// Brings the map of pages with room up to date after the rows of a page have changed.
    void update(PageNumber page);

private:
    PageNumber page_with_room(std::size_t size);
    PageNumber new_page();

    PageStore& store_;
    PageAllocator& allocator_;
    UsageMap owned_;
    UsageMap with_room_;
    std::uint32_t owner_;
    std::size_t least_;
};

} // namespace tarvello::store::access
