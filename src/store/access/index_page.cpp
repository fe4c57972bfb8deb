#include "store/access/index_page.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tarvello::store::access {
namespace {

using namespace format::index_page;

constexpr std::size_t most_likely_entries = entries_room / 9; // keys of a number, with their rows

std::uint32_t big_endian24(const std::uint8_t* at) {
    return (std::uint32_t{at[0]} << 16) | (std::uint32_t{at[1]} << 8) | at[2];
}

std::size_t common_prefix(const Key& left, const Key& right) {
    const auto ends = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    return static_cast<std::size_t>(ends.first - left.begin());
}

/// The bytes of an entry that may be in a shared prefix: it never loses all its own.
std::size_t sharable(const Key& entry) { return entry.size() - row_size - 1; }

std::size_t total_size(const std::vector<Key>& entries, std::size_t from, std::size_t to) {
    std::size_t size = 0;
    for (std::size_t i = from; i < to; ++i) size += entries[i].size();
    return size;
}

void append_big_endian(Key& key, std::uint32_t number, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        key.push_back(static_cast<std::uint8_t>(number >> shift));
}

} // namespace

IndexPage::IndexPage(PageStore& store, PageNumber number, PageNumber table) : page_(store.read(number)) {
    const std::uint8_t* bytes = page_->data();
    leaf_ = bytes[format::page::type_at] == static_cast<std::uint8_t>(PageType::index_leaf);
    if ((!leaf_ && bytes[format::page::type_at] != static_cast<std::uint8_t>(PageType::index_node)) ||
        load32(bytes + format::page::owner_at) != table) {
        throw damaged("la pagina " + std::to_string(number) + " non è del suo indice");
    }
    prefix_ = load16(bytes + prefix_at);
    const std::size_t least = row_size + 1 + (leaf_ ? 0 : child_size);
    // The mask is read in words of 8 bytes, the last one filled up with zeros.
    std::array<std::uint8_t, (mask_size + 7) / 8 * 8> mask{};
    std::copy_n(bytes + mask_at, mask_size, mask.begin());
    ends_.reserve(most_likely_entries);
    std::size_t start = 0;
    for (std::size_t i = 0; i < mask.size(); i += 8) {
        for (std::uint64_t bits = load64(mask.data() + i); bits != 0; bits &= bits - 1) {
            const std::size_t end = i * 8 + static_cast<std::size_t>(std::countr_zero(bits));
            const std::size_t whole = end - start + (ends_.empty() ? 0 : prefix_);
            if (end > entries_room || whole < least || (ends_.empty() && whole < prefix_)) {
                throw damaged("le voci di un indice non sono valide");
            }
            ends_.push_back(static_cast<std::uint16_t>(end));
            start = end;
        }
    }
}

Bytes IndexPage::rest(std::size_t index) const {
    const std::size_t start = index == 0 ? 0 : ends_[index - 1];
    return {page_->data() + entries_at + start, ends_[index] - start};
}

void IndexPage::entry(std::size_t index, Key& into) const {
    const Bytes own = rest(index);
    into.clear();
    if (index > 0) into.append(page_->data() + entries_at, prefix_);
    into.append(own.data(), own.size());
}

RowPointer IndexPage::row(std::size_t index) const {
    // The shared prefix may reach into the row's bytes in files of other writers.
    Key whole;
    const Bytes own = rest(index);
    const std::uint8_t* end = own.data() + own.size();
    if (own.size() < row_size) {
        entry(index, whole);
        end = whole.data() + whole.size();
    }
    return {big_endian24(end - row_size), end[-1]};
}

std::size_t IndexPage::child_count() const {
    const bool tail_alone = tail() != 0 && (size() == 0 || child(size() - 1) != tail());
    return size() + (tail_alone ? 1 : 0);
}

PageNumber IndexPage::child(std::size_t index) const {
    if (index == size()) return tail();
    Key whole;
    const Bytes own = rest(index);
    const std::uint8_t* end = own.data() + own.size();
    if (own.size() < child_size) {
        entry(index, whole);
        end = whole.data() + whole.size();
    }
    return (std::uint32_t{end[-4]} << 24) | big_endian24(end - 3);
}

int IndexPage::compare(std::size_t index, KeyView key) const {
    const Bytes own = rest(index);
    KeyView head(page_->data() + entries_at, index == 0 ? 0 : prefix_);
    KeyView tail(own.data(), own.size());
    if (!leaf_) {
        // A child's page is no part of the order.
        if (tail.size() >= child_size) {
            tail.remove_suffix(child_size);
        } else {
            head.remove_suffix(child_size - tail.size());
            tail = {};
        }
    }
    const KeyView first = key.substr(0, head.size());
    if (const int order = head.compare(first); order != 0) return order;
    return tail.compare(key.substr(first.size()));
}

std::size_t IndexPage::lower_bound(KeyView key) const {
    std::size_t low = 0;
    std::size_t high = size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (compare(middle, key) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

std::vector<IndexChild> read_children(const IndexPage& node) {
    std::vector<IndexChild> children(node.child_count());
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i].page = node.child(i);
        if (i == node.size()) break; // the tail child has no entry
        node.entry(i, children[i].last);
        children[i].last.resize(children[i].last.size() - child_size);
    }
    return children;
}

void append_row(Key& key, RowPointer row) {
    append_big_endian(key, row.page, 3);
    key.push_back(row.row);
}

void append_child(Key& entry, PageNumber child) { append_big_endian(entry, child, child_size); }

bool EntryRoom::add(const Key& entry) {
    const std::size_t prefix =
        count_ == 0 ? sharable(entry) : std::min({prefix_, sharable(entry), common_prefix(first_, entry)});
    const std::size_t size = size_ + entry.size();
    // Nodes share no prefix.
    const std::size_t saved = type_ == PageType::index_leaf ? count_ * prefix : 0;
    if (size - saved > entries_room) return false;
    if (count_ == 0) first_ = entry;
    ++count_;
    size_ = size;
    prefix_ = prefix;
    return true;
}

bool entries_fit(PageType type, const std::vector<Key>& entries, std::size_t from, std::size_t to) {
    if (total_size(entries, from, to) <= entries_room) return true;
    EntryRoom room(type);
    for (std::size_t i = from; i < to; ++i)
        if (!room.add(entries[i])) return false;
    return true;
}

void write_index_page(Page& page, PageType type, PageNumber table, const std::vector<Key>& entries,
                      std::size_t from, std::size_t to, const IndexLinks& links) {
    std::size_t prefix = 0;
    if (total_size(entries, from, to) >
        entries_room) { // sorted, so that the first and the last tell what all share
        prefix = common_prefix(entries[from], entries[to - 1]);
        for (std::size_t i = from; i < to; ++i) prefix = std::min(prefix, sharable(entries[i]));
    }
    page.fill(0);
    page[format::page::type_at] = static_cast<std::uint8_t>(type);
    page[format::page::mark_at] = format::page::mark;
    store32(page.data() + format::page::owner_at, table);
    store32(page.data() + previous_at, links.previous);
    store32(page.data() + next_at, links.next);
    store32(page.data() + tail_at, links.tail);
    store16(page.data() + prefix_at, static_cast<std::uint32_t>(prefix));
    if (type == PageType::index_node) page[node_mark_at] = node_mark;
    std::size_t at = 0;
    for (std::size_t i = from; i < to; ++i) {
        const std::size_t skipped = i == from ? 0 : prefix;
        std::copy(entries[i].begin() + static_cast<std::ptrdiff_t>(skipped), entries[i].end(),
                  page.begin() + static_cast<std::ptrdiff_t>(entries_at + at));
        at += entries[i].size() - skipped;
        page[mask_at + at / 8] |= static_cast<std::uint8_t>(1U << (at % 8));
    }
    store16(page.data() + format::page::free_bytes_at, static_cast<std::uint32_t>(entries_room - at));
}

} // namespace tarvello::store::access
