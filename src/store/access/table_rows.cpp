#include "store/access/table_rows.h"

#include "store/access/data_page.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using data_page::deleted_flag;
using data_page::elsewhere_flag;

PageRef page_of(PageStore& store, PageNumber table, PageNumber number) {
    PageRef page = store.read(number);
    if (!data_page::is_data_page(*page) || data_page::owner(*page) != table) {
        throw damaged("la pagina " + std::to_string(number) + " non è della sua tabella");
    }
    return page;
}

/// Where the bytes of a row lie that has moved away from `home`.
RowPointer target_of(const Page& home, std::uint32_t row) {
    return RowPointer::from_word(checked32(data_page::row(home, row), 0));
}

} // namespace

std::optional<RowBytes> find_row(PageStore& store, const TableDefinition& table, RowPointer place) {
    PageRef page = store.read(place.page);
    if (!data_page::is_data_page(*page) || data_page::owner(*page) != table.page ||
        place.row >= data_page::row_count(*page)) {
        return std::nullopt;
    }
    const std::uint32_t flags = data_page::flags(*page, place.row);
    if ((flags & deleted_flag) != 0) return std::nullopt;
    if ((flags & elsewhere_flag) == 0) {
        const Bytes bytes = data_page::row(*page, place.row);
        return RowBytes{std::move(page), bytes};
    }
    const RowPointer target = target_of(*page, place.row);
    page = page_of(store, table.page, target.page);
    if ((data_page::flags(*page, target.row) & elsewhere_flag) != 0) throw damaged("una riga spostata manca");
    const Bytes bytes = data_page::row(*page, target.row);
    return RowBytes{std::move(page), bytes};
}

std::optional<RowPointer> TableWalk::next() {
    for (;;) {
        if (page_ != 0 && owned_.contains(page_)) {
            const PageRef page = page_of(store_, table_.page, page_);
            const std::uint32_t count = data_page::row_count(*page);
            while (row_ < count && row_ < data_page::max_rows) {
                const std::uint32_t row = row_++;
                if ((data_page::flags(*page, row) & deleted_flag) != 0) continue;
                return RowPointer{page_, static_cast<std::uint8_t>(row)};
            }
        }
        const auto following = owned_.next(page_ + 1);
        if (!following) {
            return std::nullopt;
        }
        page_ = *following;
        row_ = 0;
    }
}

RowWriter::RowWriter(PageStore& store, PageAllocator& allocator, const TableDefinition& table)
    : store_(store), table_(table.page),
      space_(store, allocator, UsageMap(store, table.owned_pages), UsageMap(store, table.free_pages),
             table.page, least_row_size(table)) {}

RowPointer RowWriter::add(Bytes row) { return space_.add_row(row); }

std::size_t RowWriter::size(RowPointer place) const {
    const PageRef page = page_of(store_, table_, place.page);
    if ((data_page::flags(*page, place.row) & elsewhere_flag) == 0)
        return data_page::row(*page, place.row).size();
    const RowPointer target = target_of(*page, place.row);
    return data_page::row(*page_of(store_, table_, target.page), target.row).size();
}

bool RowWriter::grow(RowPointer place, Bytes row, std::uint32_t flags) {
    const PageRef before = page_of(store_, table_, place.page);
    const std::size_t size = data_page::row(*before, place.row).size();
    if (row.size() > size + data_page::free_bytes(*before)) return false;
    Page& page = store_.edit(place.page);
    const std::size_t at =
        row.size() == size ? static_cast<std::size_t>(data_page::row(page, place.row).data() - page.data())
                           : data_page::resize(page, place.row, row.size());
    std::copy(row.begin(), row.end(), page.begin() + static_cast<std::ptrdiff_t>(at));
    data_page::set_flags(page, place.row, flags);
    space_.update(place.page);
    return true;
}

void RowWriter::change(RowPointer place, Bytes row) {
    const PageRef home = page_of(store_, table_, place.page);
    const bool moved = (data_page::flags(*home, place.row) & elsewhere_flag) != 0;
    const RowPointer target = moved ? target_of(*home, place.row) : place;
    if (grow(target, row, moved ? deleted_flag : 0)) return;
    // What others read of a moved row: its home slot leads to it, and where it lies a walk passes it by.
    const RowPointer fresh = space_.add_row(row, deleted_flag);
    if (moved) space_.erase_row(target);
    std::uint8_t word[4];
    store32(word, fresh.word());
    Page& page = store_.edit(place.page);
    const std::size_t at = data_page::resize(page, place.row, sizeof word);
    std::copy(std::begin(word), std::end(word), page.begin() + static_cast<std::ptrdiff_t>(at));
    data_page::set_flags(page, place.row, elsewhere_flag);
    space_.update(place.page);
}

void RowWriter::erase(RowPointer place) {
    const PageRef home = page_of(store_, table_, place.page);
    const bool moved = (data_page::flags(*home, place.row) & elsewhere_flag) != 0;
    const RowPointer target = moved ? target_of(*home, place.row) : place;
    if (moved) space_.erase_row(target);
    space_.erase_row(place);
}

} // namespace tarvello::store::access
