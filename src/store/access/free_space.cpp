#include "store/access/free_space.h"

#include "store/access/data_page.h"

namespace tarvello::store::access {

PageNumber FreeSpace::page_with_room(std::size_t size) {
    // The latest pages first: they are likely to be in memory, and earlier ones keep remnants of no use.
    // Looking at all of them would cost a walk through the whole table.
    constexpr int most_looked_at = 16;
    PageNumber below = max_pages;
    for (int i = 0; i < most_looked_at; ++i) {
        const auto found = with_room_.previous(below);
        if (!found) break;
        const PageRef page = store_.read(*found);
        if (!data_page::is_data_page(*page) || data_page::owner(*page) != owner_ ||
            !owned_.contains(*found)) {
            throw damaged("la mappa delle pagine con spazio non è valida");
        }
        if (data_page::has_room(*page, size)) return *found;
        below = *found;
    }
    return new_page();
}

PageNumber FreeSpace::new_page() {
    const PageNumber page = allocator_.take();
    data_page::clear(store_.edit(page), owner_);
    owned_.add(page, allocator_);
    return page;
}

RowPointer FreeSpace::add_row(Bytes row, std::uint32_t flags) {
    const PageNumber page = page_with_room(row.size());
    const std::uint8_t number = data_page::add(store_.edit(page), row, flags);
    update(page);
    return {page, number};
}

RowPointer FreeSpace::add_only_row(Bytes row) {
    const PageNumber page = new_page();
    return {page, data_page::add(store_.edit(page), row)};
}

void FreeSpace::erase_row(RowPointer row) {
    Page& page = store_.edit(row.page);
    data_page::erase(page, row.row);
    if (!data_page::all_deleted(page)) {
        update(row.page);
        return;
    }
    owned_.remove(row.page);
    with_room_.remove(row.page);
    allocator_.give_back(row.page);
}

void FreeSpace::update(PageNumber page) {
    const bool room = data_page::has_room(*store_.read(page), least_);
    if (room == with_room_.contains(page)) return;
    if (room) {
        with_room_.add(page, allocator_);
    } else {
        with_room_.remove(page);
    }
}

} // namespace tarvello::store::access
