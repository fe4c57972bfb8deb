#include "store/access/usage_map.h"

#include "store/access/bytes.h"
#include "store/access/data_page.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

/// The pages that a page of bits stands for; its bits start behind a head of 4 bytes.
constexpr PageNumber pages_per_bit_page = (page_size - 4) * 8;

bool bit(const std::uint8_t* bits, PageNumber index) { return ((bits[index / 8] >> (index % 8)) & 1) != 0; }

void set_bit(std::uint8_t* bits, PageNumber index, bool value) {
    const auto mask = static_cast<std::uint8_t>(1U << (index % 8));
    if (value) {
        bits[index / 8] |= mask;
    } else {
        bits[index / 8] &= static_cast<std::uint8_t>(~mask);
    }
}

} // namespace

UsageMap::Row UsageMap::row(const Page& page) const {
    const Bytes found = data_page::row(page, place_.row);
    if (found.size() < 5) throw damaged("una mappa delle pagine è troppo corta");
    return {static_cast<std::size_t>(found.data() - page.data()), found.size()};
}

bool UsageMap::is_list() const {
    const PageRef page = store_->read(place_.page);
    const std::uint8_t kind = (*page)[row(*page).at];
    if (kind > 1) throw damaged("una mappa delle pagine è di genere sconosciuto");
    return kind == 1;
}

std::size_t UsageMap::entries() const {
    const PageRef page = store_->read(place_.page);
    return (row(*page).size - 1) / 4;
}

UsageMap::Window UsageMap::window(PageNumber page) const {
    const PageRef holder = store_->read(place_.page);
    const Row place = row(*holder);
    const std::uint8_t* bytes = holder->data() + place.at;
    if (bytes[0] > 1) throw damaged("una mappa delle pagine è di genere sconosciuto");
    if (bytes[0] == 0) {
        const PageNumber first = load32(bytes + 1);
        const std::size_t count = place.size - 5;
        if (first >= max_pages) throw damaged("una mappa delle pagine comincia oltre la fine");
        const auto end = static_cast<PageNumber>(first + count * 8);
        if (page < first) return {0, 0, 0, 0, first};
        if (page >= end) return {0, 0, 0, end, max_pages};
        return {place_.page, place.at + 5, count, first, end};
    }
    const PageNumber entry = page / pages_per_bit_page;
    const PageNumber first = entry * pages_per_bit_page;
    if (entry >= (place.size - 1) / 4) return {0, 0, 0, first, max_pages};
    const PageNumber bit_page = load32(bytes + 1 + entry * 4);
    if (bit_page == 0) return {0, 0, 0, first, first + pages_per_bit_page};
    if ((*store_->read(bit_page))[0] != static_cast<std::uint8_t>(PageType::usage_bits)) {
        throw damaged("una mappa delle pagine porta a una pagina di altro genere");
    }
    return {bit_page, 4, page_size - 4, first, first + pages_per_bit_page};
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
        const auto capacity = static_cast<PageNumber>((place.size - 5) * 8);
        const PageNumber first = load32(bytes + 1);
        if (page < first || page >= first + capacity) {
            // The set may still fit if its window moves: it spans from its lowest page to its highest, and
            // starts at a multiple of 8, as each byte of the lists of pages does.
            const PageNumber low = std::min(page, next(0).value_or(page)) / 8 * 8;
            const PageNumber high = std::max(page, previous(max_pages).value_or(page));
            if (high - low >= capacity) {
                become_list(allocator);
                return add(page, allocator);
            }
            std::vector<std::uint8_t> moved(place.size - 5, 0);
            for (auto member = next(0); member; member = next(*member + 1)) {
                set_bit(moved.data(), *member - low, true);
            }
            std::uint8_t* row_bytes = store_->edit(place_.page).data() + place.at;
            store32(row_bytes + 1, low);
            std::copy(moved.begin(), moved.end(), row_bytes + 5);
        }
    } else if (window(page).bytes == 0) {
        const PageNumber entry = page / pages_per_bit_page;
        if (entry >= entries()) throw damaged("una mappa delle pagine è piena");
        const PageNumber bit_page = allocator.take();
        Page& fresh = store_->edit(bit_page);
        fresh[0] = static_cast<std::uint8_t>(PageType::usage_bits);
        fresh[1] = 1;
        Page& holder = store_->edit(place_.page);
        store32(holder.data() + row(holder).at + 1 + entry * 4, bit_page);
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
    holder[place.at] = 1;
    for (const PageNumber member : members) add(member, allocator);
}

// PageAllocator

PageNumber PageAllocator::take() {
    // Pages behind the end of the file are marked as free too, so the search stops there.
    const auto found = map_.next(1);
    PageNumber page = 0;
    if (found && *found < store_.page_count()) {
        page = *found;
        store_.edit(page).fill(0);
    } else {
        page = store_.append();
    }
    mark_taken(page);
    return page;
}

void PageAllocator::mark_taken(PageNumber page) {
    UsageMap::Window found = map_.window(page);
    if (found.bytes != 0) {
        set_bit(store_.edit(found.holder).data() + found.at, page - found.first, false);
        return;
    }
    // The map says nothing of this page, which so counts as free. It becomes a list whose pages of bits start
    // with every page free, but for what the bits so far say and the pages of bits themselves.
    std::vector<PageNumber> taken{page};
    const bool list = map_.is_list();
    if (!list) {
        const PageRef before = store_.read(global_map_page);
        const UsageMap::Row place = map_.row(*before);
        const PageNumber first = load32(before->data() + place.at + 1);
        for (PageNumber index = 0; index < (place.size - 5) * 8; ++index) {
            if (!bit(before->data() + place.at + 5, index)) taken.push_back(first + index);
        }
        Page& holder = store_.edit(global_map_page);
        std::fill_n(holder.begin() + static_cast<std::ptrdiff_t>(place.at), place.size, std::uint8_t{0});
        holder[place.at] = 1;
    }
    for (std::size_t i = 0; i < taken.size(); ++i) {
        found = map_.window(taken[i]);
        if (found.bytes == 0) {
            const PageNumber entry = taken[i] / pages_per_bit_page;
            if (entry >= map_.entries()) throw damaged("la mappa delle pagine libere è piena");
            const PageNumber bit_page = store_.append();
            Page& fresh = store_.edit(bit_page);
            fresh.fill(0xFF);
            fresh[0] = static_cast<std::uint8_t>(PageType::usage_bits);
            fresh[1] = 1;
            fresh[2] = fresh[3] = 0;
            Page& holder = store_.edit(global_map_page);
            store32(holder.data() + map_.row(holder).at + 1 + entry * 4, bit_page);
            taken.push_back(bit_page);
            found = map_.window(taken[i]);
        }
        set_bit(store_.edit(found.holder).data() + found.at, taken[i] - found.first, false);
    }
}

void PageAllocator::give_back(PageNumber page) {
    const UsageMap::Window found = map_.window(page);
    if (found.bytes == 0) return; // counts as free already
    set_bit(store_.edit(found.holder).data() + found.at, page - found.first, true);
}

} // namespace tarvello::store::access
