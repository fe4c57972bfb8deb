#include "store/access/data_page.h"

#include <algorithm>
#include <cstring>

namespace tarvello::store::access::data_page {
namespace {

std::uint32_t slot(const Page& page, std::uint32_t row) {
    if (row >= row_count(page)) throw damaged("un rimando porta a una riga che manca");
    return load16(page.data() + slots_at + slot_size * row);
}

std::uint32_t row_end(const Page& page, std::uint32_t row) {
    return row == 0 ? static_cast<std::uint32_t>(page_size) : slot(page, row - 1) & offset_mask;
}

} // namespace

bool is_data_page(const Page& page) {
    return page[format::page::type_at] == static_cast<std::uint8_t>(PageType::data);
}

std::uint32_t owner(const Page& page) { return load32(page.data() + format::page::owner_at); }

std::uint32_t row_count(const Page& page) {
    const std::uint32_t count = load16(page.data() + row_count_at);
    if (!is_data_page(page) || count > (page_size - slots_at) / slot_size) {
        throw damaged("una pagina non è di dati");
    }
    return count;
}

std::uint32_t flags(const Page& page, std::uint32_t row) {
    return slot(page, row) & (deleted_flag | elsewhere_flag);
}

Bytes row(const Page& page, std::uint32_t row) {
    const std::uint32_t start = slot(page, row) & offset_mask;
    const std::uint32_t end = row_end(page, row);
    if (start > end || end > page_size || start < slots_at + slot_size * row_count(page)) {
        throw damaged("una riga esce dalla sua pagina");
    }
    return {page.data() + start, end - start};
}

std::uint32_t free_bytes(const Page& page) {
    const std::uint32_t count = row_count(page);
    const auto slots_end = static_cast<std::uint32_t>(slots_at + slot_size * count);
    const std::uint32_t lowest = count == 0 ? static_cast<std::uint32_t>(page_size) : row_end(page, count);
    if (lowest < slots_end || lowest > page_size) throw damaged("una riga esce dalla sua pagina");
    return lowest - slots_end;
}

bool has_room(const Page& page, std::size_t size) {
    return row_count(page) < max_rows && free_bytes(page) >= size + slot_size;
}

bool all_deleted(const Page& page) {
    const std::uint32_t count = row_count(page);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (flags(page, i) != (deleted_flag | elsewhere_flag)) return false;
    }
    return true;
}

void clear(Page& page, std::uint32_t owner) {
    page.fill(0);
    page[format::page::type_at] = static_cast<std::uint8_t>(PageType::data);
    page[format::page::mark_at] = format::page::mark;
    store32(page.data() + format::page::owner_at, owner);
    store16(page.data() + format::page::free_bytes_at, static_cast<std::uint32_t>(page_size - slots_at));
}

std::uint8_t add(Page& page, Bytes row, std::uint32_t flags) {
    const std::uint32_t count = row_count(page);
    const std::uint32_t start = static_cast<std::uint32_t>(row_end(page, count) - row.size());
    std::copy(row.begin(), row.end(), page.begin() + start);
    store16(page.data() + slots_at + slot_size * count, start | flags);
    store16(page.data() + row_count_at, count + 1);
    store16(page.data() + format::page::free_bytes_at, free_bytes(page));
    return static_cast<std::uint8_t>(count);
}

std::size_t resize(Page& page, std::uint32_t row, std::size_t size) {
    const std::uint32_t count = row_count(page);
    const Bytes old = data_page::row(page, row);
    const std::uint32_t lowest = row_end(page, count);
    const auto start = static_cast<std::uint32_t>(old.data() - page.data());
    const auto shift = static_cast<std::ptrdiff_t>(old.size()) - static_cast<std::ptrdiff_t>(size);
    if (lowest > start) throw damaged("le righe di una pagina si accavallano");
    if (size > old.size() + free_bytes(page)) throw damaged("una riga non sta nella sua pagina");
    std::memmove(page.data() + lowest + shift, page.data() + lowest, start - lowest);
    for (std::uint32_t i = row; i < count; ++i) {
        const std::uint32_t word = slot(page, i);
        if ((word & offset_mask) > start || (word & offset_mask) < lowest) {
            throw damaged("le righe di una pagina si accavallano");
        }
        const auto moved =
            static_cast<std::uint32_t>(static_cast<std::ptrdiff_t>(word & offset_mask) + shift);
        store16(page.data() + slots_at + slot_size * i, moved | (word & ~offset_mask));
    }
    store16(page.data() + format::page::free_bytes_at, free_bytes(page));
    return static_cast<std::size_t>(static_cast<std::ptrdiff_t>(start) + shift);
}

void set_flags(Page& page, std::uint32_t row, std::uint32_t flags) {
    store16(page.data() + slots_at + slot_size * row, (slot(page, row) & offset_mask) | flags);
}

void erase(Page& page, std::uint32_t row) {
    resize(page, row, 0);
    set_flags(page, row, deleted_flag | elsewhere_flag);
}

} // namespace tarvello::store::access::data_page
