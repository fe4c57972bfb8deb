#include "store/access/long_value.h"

#include "store/access/data_page.h"
#include "store/access/stored_text.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using namespace format::long_value;

constexpr std::size_t most_in_chain_row = data_page::max_long_row_size - link_size;

/// A row of a page of long values. The page is kept while the bytes are read.
Bytes long_row(const Page& page, RowPointer place) {
    if (data_page::owner(page) != data_page::long_value_owner ||
        (data_page::flags(page, place.row) & data_page::deleted_flag) != 0) {
        throw damaged("un testo lungo manca");
    }
    return data_page::row(page, place.row);
}

} // namespace

void read_memo(PageStore& store, Bytes stored, std::string& into) {
    const std::uint32_t word = checked32(stored, 0);
    const std::size_t size = word & size_mask;
    if ((word & inline_kind) != 0) {
        decode_text(part(stored, head_size, size), into);
        return;
    }
    RowPointer next = RowPointer::from_word(checked32(stored, place_at));
    if ((word & one_row_kind) != 0) {
        const PageRef page = store.read(next.page);
        const Bytes row = long_row(*page, next);
        decode_text(part(row, 0, size), into);
        return;
    }
    // A value cannot be longer than its file: a damaged size or a chain that loops ends here.
    if (size > std::uint64_t{store.page_count()} * page_size) throw damaged("un testo lungo non finisce");
    std::vector<std::uint8_t> bytes;
    bytes.reserve(size);
    while (bytes.size() < size) {
        if (next.page == 0) throw damaged("un testo lungo non è intero");
        const PageRef page = store.read(next.page);
        const Bytes row = long_row(*page, next);
        next = RowPointer::from_word(checked32(row, 0));
        if (row.size() == link_size) throw damaged("un testo lungo non è intero");
        const std::size_t count = std::min(row.size() - link_size, size - bytes.size());
        const Bytes own = row.subspan(link_size, count);
        bytes.insert(bytes.end(), own.begin(), own.end());
    }
    decode_text(bytes, into);
}

std::vector<std::uint8_t> LongValues::write(std::string_view text, const ColumnDefinition& column,
                                            bool outside) {
    std::vector<std::uint8_t> bytes = encode_text(text, false);
    if (column.may_be_compressed && bytes.size() <= most_compressed) bytes = encode_text(text, true);
    if (bytes.size() > size_mask) {
        throw Failure(access_failure::too_long, source,
                      "Il testo è troppo lungo per la colonna " + column.name + ".");
    }
    std::vector<std::uint8_t> stored(head_size, 0);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    if (bytes.size() <= most_inline && !outside) {
        stored.resize(head_size + bytes.size());
        store32(stored.data(), inline_kind | size);
        std::copy(bytes.begin(), bytes.end(), stored.begin() + head_size);
        return stored;
    }
    if (bytes.size() <= data_page::max_long_row_size) {
        store32(stored.data(), one_row_kind | size);
        store32(stored.data() + place_at, space(column).add_row(bytes).word());
        return stored;
    }
    // Each row points to the next, so the last is written first. Each has a page of its own, as Access has
    // it. The stamp of the value and that of its first page stay 0 alike.
    store32(stored.data(), size);
    std::uint32_t next = 0;
    std::size_t end = bytes.size();
    while (end > 0) {
        const std::size_t count = end % most_in_chain_row == 0 ? most_in_chain_row : end % most_in_chain_row;
        std::vector<std::uint8_t> row(link_size + count);
        store32(row.data(), next);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(end - count), count, row.begin() + link_size);
        next = space(column).add_only_row(row).word();
        end -= count;
    }
    store32(stored.data() + place_at, next);
    return stored;
}

void LongValues::free(Bytes stored, const ColumnDefinition& column) {
    const std::uint32_t word = checked32(stored, 0);
    if ((word & inline_kind) != 0) return;
    RowPointer place = RowPointer::from_word(checked32(stored, place_at));
    if ((word & one_row_kind) != 0) {
        erase_row(place, column);
        return;
    }
    // An erased row is no row of a value any more, so a chain that loops fails.
    while (place.page != 0) {
        const RowPointer erased = place;
        place = RowPointer::from_word(checked32(long_row(*store_.read(place.page), place), 0));
        erase_row(erased, column);
    }
}

FreeSpace LongValues::space(const ColumnDefinition& column) {
    return {store_,
            allocator_,
            UsageMap(store_, *column.long_pages),
            UsageMap(store_, *column.long_free_pages),
            data_page::long_value_owner,
            least_row};
}

void LongValues::erase_row(RowPointer row, const ColumnDefinition& column) {
    long_row(*store_.read(row.page), row);
    if (!UsageMap(store_, *column.long_pages).contains(row.page)) {
        throw damaged("un testo lungo sta su una pagina altrui");
    }
    space(column).erase_row(row);
}

} // namespace tarvello::store::access
