#pragma once

#include "store/access/page_store.h"

#include <optional>
#include <vector>

namespace tarvello::store::access {

class PageAllocator;

/// A set of pages: those that a table owns, those that still have room, those of an index. It is a row of a
/// data page, in one of two kinds: bits from a first page on, or a list of pages of bits.
class UsageMap {
public:
    UsageMap(PageStore& store, RowPointer place) : store_(&store), place_(place) {}

    RowPointer place() const { return place_; }
    bool contains(PageNumber page) const;
    /// The first page of the set that is `from` or above.
    std::optional<PageNumber> next(PageNumber from) const;
    /// The last page of the set that is below `below`.
    std::optional<PageNumber> previous(PageNumber below) const;

    /// @param allocator  gives the pages of bits that a wide set needs
    void add(PageNumber page, PageAllocator& allocator);
    void remove(PageNumber page);

private:
    friend class PageAllocator;

    /// The bits of the set that hold `page`: they start at `first`.
    struct Window {
        PageNumber holder = 0;
        std::size_t at = 0;    // of the first byte
        std::size_t bytes = 0; // 0: the set has nothing there
        PageNumber first = 0;
        PageNumber end = 0; // of the pages that the window speaks for
    };

    /// The row on its page. @throws Failure if there is no such row
    struct Row {
        std::size_t at = 0;
        std::size_t size = 0;
    };
    Row row(const Page& page) const;
    Window window(PageNumber page) const;
    bool is_list() const;
    PageNumber first_page() const; // of one that is no list
    void become_list(PageAllocator& allocator);
    std::size_t entries() const;

    PageStore* store_;
    RowPointer place_;
};

/// Gives pages out and takes them back: the global map of free pages. Pages below its first page are taken,
/// those behind its end free.
class PageAllocator {
public:
    explicit PageAllocator(PageStore& store) : store_(store), map_(store, {format::global_map_page, 0}) {}

    /// A page that nobody has, its bytes zero.
    PageNumber take();
    void give_back(PageNumber page);

private:
    bool is_trusted();
    void mark(PageNumber page, bool free);
    void reach(PageNumber page);
    void become_list();
    PageNumber add_bit_page(PageNumber entry);

    PageStore& store_;
    UsageMap map_;
    std::optional<bool> trusted_;
    PageNumber search_from_ = 0; // no page below it is free
};

/// The bytes of a new map, with one page or none.
std::vector<std::uint8_t> new_usage_map(std::optional<PageNumber> member = {});

} // namespace tarvello::store::access
