#include "store/access/usage_map.h"

#include "store/access/bytes.h"
#include "store/access/data_page.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using namespace format::map;

bool bit(const std::uint8_t* bits, PageNumber index) { return ((bits[index / 8] >> (index % 8)) & 1) != 0; }

void set_bit(std::uint8_t* bits, PageNumber index, bool value) {
    const auto mask = static_cast<std::uint8_t>(1U << (index % 8));
    if (value) {
        bits[index / 8] |= mask;
    } else {
        bits[index / 8] &= static_cast<std::uint8_t>(~mask);
    }
}

/// Makes an empty page of bits.
void clear_bit_page(Page& page) {
    page.fill(0);
    page[format::page::type_at] = static_cast<std::uint8_t>(PageType::usage_bits);
    page[format::page::mark_at] = format::page::mark;
}

/// A multiple of what first pages are, at or below `page`.
PageNumber window_start(PageNumber page) { return page / first_multiple * first_multiple; }

} // namespace

UsageMap::Row UsageMap::row(const Page& page) const {
    const Bytes found = data_page::row(page, place_.row);
    if (found.size() < bits_at) throw damaged("una mappa delle pagine è troppo corta");
    return {static_cast<std::size_t>(found.data() - page.data()), found.size()};
}

bool UsageMap::is_list() const {
    const PageRef page = store_->read(place_.page);
    const std::uint8_t kind = (*page)[row(*page).at];
    if (kind > list_kind) throw damaged("una mappa delle pagine è di genere sconosciuto");
    return kind == list_kind;
}

PageNumber UsageMap::first_page() const {
    const PageRef page = store_->read(place_.page);
    return load32(page->data() + row(*page).at + first_page_at);
}

std::size_t UsageMap::entries() const {
    const PageRef page = store_->read(place_.page);
    return (row(*page).size - list_at) / entry_size;
}

UsageMap::Window UsageMap::window(PageNumber page) const {
    const PageRef holder = store_->read(place_.page);
    const Row place = row(*holder);
    const std::uint8_t* bytes = holder->data() + place.at;
    if (bytes[0] > list_kind) throw damaged("una mappa delle pagine è di genere sconosciuto");
    if (bytes[0] == bits_kind) {
        const PageNumber first = load32(bytes + first_page_at);
        const std::size_t count = place.size - bits_at;
        if (first >= max_pages) throw damaged("una mappa delle pagine comincia oltre la fine");
        const auto end = static_cast<PageNumber>(first + count * 8);
        if (page < first) return {0, 0, 0, 0, first};
        if (page >= end) return {0, 0, 0, end, max_pages};
        return {place_.page, place.at + bits_at, count, first, end};
    }
    const PageNumber entry = page / pages_per_bit_page;
    const PageNumber first = entry * pages_per_bit_page;
    if (entry >= (place.size - list_at) / entry_size) return {0, 0, 0, first, max_pages};
    const PageNumber bit_page = load32(bytes + list_at + entry * entry_size);
    if (bit_page == 0) return {0, 0, 0, first, first + pages_per_bit_page};
    if ((*store_->read(bit_page))[format::page::type_at] != static_cast<std::uint8_t>(PageType::usage_bits)) {
        throw damaged("una mappa delle pagine porta a una pagina di altro genere");
    }
    return {bit_page, page_bits_at, page_size - page_bits_at, first, first + pages_per_bit_page};
}

bool UsageMap::contains(PageNumber page) const {
    const Window found = window(page);
    if (found.bytes == 0) return false;
    return bit(store_->read(found.holder)->data() + found.at, page - found.first);
}

std::optional<PageNumber> UsageMap::next(PageNumber from) const {
    while (from < max_pages) {
        const Window found = window(from);
        if (found.bytes != 0) {
            const PageRef holder = store_->read(found.holder);
            const std::uint8_t* bits = holder->data() + found.at;
            while (from < found.end) {
                const PageNumber index = from - found.first;
                if (index % 8 == 0 && bits[index / 8] == 0) {
                    from += 8;
                    continue;
                }
                if (bit(bits, index)) return from;
                ++from;
            }
        }
        from = found.end;
    }
    return std::nullopt;
}

std::optional<PageNumber> UsageMap::previous(PageNumber below) const {
    while (below > 0) {
        const Window found = window(below - 1);
        if (found.bytes == 0) {
            below = found.first;
            continue;
        }
        const PageRef holder = store_->read(found.holder);
        const std::uint8_t* bits = holder->data() + found.at;
        while (below > found.first) {
            const PageNumber index = below - 1 - found.first;
            if (index % 8 == 7 && bits[index / 8] == 0) {
                below -= 8;
                continue;
            }
            if (bit(bits, index)) return below - 1;
            --below;
        }
    }
    return std::nullopt;
}

void UsageMap::add(PageNumber page, PageAllocator& allocator) {
    if (!is_list()) {
        const PageRef before = store_->read(place_.page);
        const Row place = row(*before);
        const std::uint8_t* bytes = before->data() + place.at;
        const auto capacity = static_cast<PageNumber>((place.size - bits_at) * 8);
        const PageNumber first = load32(bytes + first_page_at);
        if (page < first || page >= first + capacity) {
            // The set may still fit if its window moves: it spans from its lowest page to its highest.
            const PageNumber high = std::max(page, previous(max_pages).value_or(page));
            const PageNumber low = high < capacity ? 0 : window_start(std::min(page, next(0).value_or(page)));
            if (high - low >= capacity) {
                become_list(allocator);
                return add(page, allocator);
            }
            std::vector<std::uint8_t> moved(place.size - bits_at, 0);
            for (auto member = next(0); member; member = next(*member + 1)) {
                set_bit(moved.data(), *member - low, true);
            }
            std::uint8_t* row_bytes = store_->edit(place_.page).data() + place.at;
            store32(row_bytes + first_page_at, low);
            std::copy(moved.begin(), moved.end(), row_bytes + bits_at);
        }
    } else if (window(page).bytes == 0) {
        const PageNumber entry = page / pages_per_bit_page;
        if (entry >= entries()) throw damaged("una mappa delle pagine è piena");
        const PageNumber bit_page = allocator.take();
        clear_bit_page(store_->edit(bit_page));
        Page& holder = store_->edit(place_.page);
        store32(holder.data() + row(holder).at + list_at + entry * entry_size, bit_page);
    }
    const Window found = window(page);
    set_bit(store_->edit(found.holder).data() + found.at, page - found.first, true);
}

void UsageMap::remove(PageNumber page) {
    const Window found = window(page);
    if (found.bytes == 0) return;
    set_bit(store_->edit(found.holder).data() + found.at, page - found.first, false);
}

void UsageMap::become_list(PageAllocator& allocator) {
    std::vector<PageNumber> members;
    for (auto member = next(0); member; member = next(*member + 1)) members.push_back(*member);
    Page& holder = store_->edit(place_.page);
    const Row place = row(holder);
    std::fill_n(holder.begin() + static_cast<std::ptrdiff_t>(place.at), place.size, std::uint8_t{0});
    holder[place.at] = list_kind;
    for (const PageNumber member : members) add(member, allocator);
}

std::vector<std::uint8_t> new_usage_map(std::optional<PageNumber> member) {
    std::vector<std::uint8_t> row(new_size, 0);
    if (!member) return row;
    const auto capacity = static_cast<PageNumber>((new_size - bits_at) * 8);
    const PageNumber first = *member < capacity ? 0 : window_start(*member);
    store32(row.data() + first_page_at, first);
    set_bit(row.data() + bits_at, *member - first, true);
    return row;
}

// PageAllocator

bool PageAllocator::is_trusted() {
    // There are writers that let a map call pages free which are in use, those of the catalogue among them.
    if (!trusted_) {
        const auto lowest = map_.next(0);
        trusted_ = !lowest || *lowest > format::last_system_page;
    }
    return *trusted_;
}

PageNumber PageAllocator::take() {
    // Pages behind the end of the file are marked as free too, so the search stops there.
    const auto found = is_trusted() ? map_.next(search_from_) : std::nullopt;
    PageNumber page = 0;
    if (found && *found < store_.page_count()) {
        page = *found;
        store_.edit(page).fill(0);
    } else {
        page = store_.append();
    }
    search_from_ = page;
    mark(page, false);
    return page;
}

void PageAllocator::give_back(PageNumber page) {
    search_from_ = std::min(search_from_, page);
    mark(page, true);
}

void PageAllocator::mark(PageNumber page, bool free) {
    UsageMap::Window found = map_.window(page);
    if (found.bytes == 0) {
        if (!free && !map_.is_list() && page < map_.first_page()) return; // taken as it is
        reach(page);
        found = map_.window(page);
    }
    set_bit(store_.edit(found.holder).data() + found.at, page - found.first, free);
}

void PageAllocator::reach(PageNumber page) {
    if (map_.is_list()) {
        const PageNumber entry = page / pages_per_bit_page;
        if (entry >= map_.entries()) throw damaged("la mappa delle pagine libere è piena");
        const PageNumber bit_page = add_bit_page(entry);
        mark(bit_page, false);
        return;
    }
    // The row grows, and starts at the first page of the file as it does in every file of Access.
    Page& holder = store_.edit(format::global_map_page);
    const UsageMap::Row place = map_.row(holder);
    const PageNumber first = map_.first_page();
    const auto end = static_cast<PageNumber>(first + (place.size - bits_at) * 8);
    const std::size_t growths = (std::max(end, page + 1) + pages_per_growth - 1) / pages_per_growth;
    const std::size_t size = bits_at + growths * (pages_per_growth / 8);
    if (size > place.size + data_page::free_bytes(holder)) {
        become_list();
        if (map_.window(page).bytes == 0) reach(page);
        return;
    }
    std::vector<std::uint8_t> row(size, 0);
    const std::uint8_t* bits = holder.data() + place.at + bits_at;
    for (PageNumber number = first; number < (size - bits_at) * 8; ++number)
        if (number >= end || bit(bits, number - first)) set_bit(row.data() + bits_at, number, true);
    const std::size_t at = data_page::resize(holder, map_.place().row, size);
    std::copy(row.begin(), row.end(), holder.begin() + static_cast<std::ptrdiff_t>(at));
}

void PageAllocator::become_list() {
    std::vector<PageNumber> members;
    for (auto member = map_.next(0); member && *member < store_.page_count(); member = map_.next(*member + 1))
        members.push_back(*member);
    Page& holder = store_.edit(format::global_map_page);
    const std::size_t at = data_page::resize(holder, map_.place().row, new_size);
    std::fill_n(holder.begin() + static_cast<std::ptrdiff_t>(at), new_size, std::uint8_t{0});
    holder[at] = list_kind;
    std::vector<PageNumber> bit_pages;
    for (PageNumber entry = 0; entry <= (store_.page_count() - 1) / pages_per_bit_page; ++entry)
        bit_pages.push_back(add_bit_page(entry));
    for (const PageNumber member : members) mark(member, true);
    for (const PageNumber bit_page : bit_pages) mark(bit_page, false);
}

PageNumber PageAllocator::add_bit_page(PageNumber entry) {
    // What lies behind the end of the file is marked as free.
    const PageNumber bit_page = store_.append();
    Page& fresh = store_.edit(bit_page);
    clear_bit_page(fresh);
    const PageNumber first = entry * pages_per_bit_page;
    for (PageNumber page = std::max(first, store_.page_count()); page < first + pages_per_bit_page; ++page)
        set_bit(fresh.data() + page_bits_at, page - first, true);
    Page& holder = store_.edit(format::global_map_page);
    store32(holder.data() + map_.row(holder).at + list_at + entry * entry_size, bit_page);
    return bit_page;
}

} // namespace tarvello::store::access
