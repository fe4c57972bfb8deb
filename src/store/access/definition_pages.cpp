#include "store/access/definition_pages.h"

#include "store/access/bytes.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using namespace format::definition;

bool is_definition(const Page& page) {
    return page[format::page::type_at] == static_cast<std::uint8_t>(PageType::definition);
}

} // namespace

std::vector<std::uint8_t> read_definition_text(PageStore& store, PageNumber first) {
    std::vector<std::uint8_t> text;
    PageNumber number = first;
    for (int count = 0; number != 0; ++count) {
        if (count == most_pages) throw damaged("la definizione di una tabella non finisce");
        const PageRef page = store.read(number);
        if (!is_definition(*page)) throw damaged("la definizione di una tabella manca");
        text.insert(text.end(), page->begin() + (text.empty() ? 0 : head_size), page->end());
        number = load32(page->data() + next_page_at);
    }
    return text;
}

void write_definition_text(PageStore& store, PageAllocator& allocator, PageNumber first,
                           std::vector<std::uint8_t> text) {
    store32(text.data() + length_at, static_cast<std::uint32_t>(text.size()));
    PageNumber number = first;
    for (std::size_t at = 0; at < text.size();) {
        Page& page = store.edit(number);
        const PageNumber old_next = is_definition(page) ? load32(page.data() + next_page_at) : 0;
        // The head of the first page is part of the text.
        const std::size_t head = at == 0 ? 0 : head_size;
        const std::size_t count = std::min(text.size() - at, page_size - head);
        page.fill(0);
        std::copy_n(text.begin() + static_cast<std::ptrdiff_t>(at), count,
                    page.begin() + static_cast<std::ptrdiff_t>(head));
        at += count;
        PageNumber next = old_next;
        if (at < text.size() && next == 0) next = allocator.take();
        if (at == text.size()) {
            for (PageNumber spare = old_next; spare != 0;) {
                const PageNumber behind = load32(store.read(spare)->data() + next_page_at);
                allocator.give_back(spare);
                spare = behind;
            }
            next = 0;
        }
        // The free bytes are told as if there was another head.
        const std::size_t used = std::min(head + count + head_size, page_size);
        page[format::page::type_at] = static_cast<std::uint8_t>(PageType::definition);
        page[format::page::mark_at] = format::page::mark;
        store16(page.data() + format::page::free_bytes_at, static_cast<std::uint32_t>(page_size - used));
        store32(page.data() + next_page_at, next);
        number = next;
    }
}

} // namespace tarvello::store::access
