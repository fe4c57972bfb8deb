#include "store/access/index_writer.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

constexpr int deepest = 24;

void append_child(Key& entry, PageNumber child) {
    for (int shift = 24; shift >= 0; shift -= 8) entry.push_back(static_cast<std::uint8_t>(child >> shift));
}

} // namespace

Key IndexWriter::entry_of(KeyView key, RowPointer row) {
    Key entry(key);
    for (int shift = 16; shift >= 0; shift -= 8)
        entry.push_back(static_cast<std::uint8_t>(row.page >> shift));
    entry.push_back(row.row);
    return entry;
}

void IndexWriter::insert(KeyView key, RowPointer row) {
    if (key.size() > max_entry_size)
        throw not_writable("Il testo è troppo lungo per un indice del file Access.");
    run({entry_of(key, row), true});
}

void IndexWriter::erase(KeyView key, RowPointer row) { run({entry_of(key, row), false}); }

void IndexWriter::run(const Change& change) {
    const Outcome outcome = change_below(root_, true, change, 0);
    if (outcome.unchanged) return;
    if (outcome.pages.empty()) {
        write_index_page(store_.edit(root_), PageType::index_leaf, table_, {}, 0, 0, 0, 0, 0);
        return;
    }
    // write_leaves and write_nodes leave the root its page, above several others if it must be.
    lift_only_child();
}

IndexWriter::Outcome IndexWriter::change_below(PageNumber number, bool rightmost, const Change& change,
                                               int depth) {
    if (depth == deepest) throw damaged("un indice è troppo profondo");
    const IndexPage page(store_, number, table_);
    const Place place{number, page.previous(), page.next(), rightmost};
    return page.is_leaf() ? change_leaf(place, page, change) : change_node(place, page, change, depth);
}

IndexWriter::Outcome IndexWriter::change_leaf(const Place& place, const IndexPage& page,
                                              const Change& change) {
    std::vector<Key> entries(page.size());
    for (std::size_t i = 0; i < page.size(); ++i) page.entry(i, entries[i]);
    const Key old_last = entries.empty() ? Key() : entries.back();
    const auto found = std::ranges::lower_bound(entries, change.entry);
    const bool there = found != entries.end() && *found == change.entry;
    if (there == change.insert) {
        throw damaged(there ? "un indice ha già una voce" : "a un indice manca una voce");
    }
    if (change.insert) {
        entries.insert(found, change.entry);
    } else {
        entries.erase(found);
    }
    Outcome outcome;
    if (entries.empty() && place.page != root_) {
        if (place.previous != 0) set_next(place.previous, place.next);
        if (place.next != 0) set_previous(place.next, place.previous);
        drop_page(place.page);
    } else {
        outcome.pages = write_leaves(place, entries);
    }
    outcome.unchanged = outcome.pages.size() == 1 && outcome.pages[0].last == old_last;
    return outcome;
}

IndexWriter::Outcome IndexWriter::change_node(const Place& place, const IndexPage& page, const Change& change,
                                              int depth) {
    const std::size_t count = page.child_count();
    if (count == 0) throw damaged("una pagina di un indice è vuota");
    const std::size_t index = std::min(page.lower_bound(change.entry), count - 1);
    const bool last_child = index + 1 == count;
    Outcome below = change_below(page.child(index), place.rightmost && last_child, change, depth + 1);
    if (below.unchanged) return {};
    std::vector<IndexChild> children = read_children(page);
    const Key known_last = children[index].last;
    // A child on the right edge stands in no entry: that its last entry has moved is nobody's business.
    if (below.pages.size() == 1 && below.pages[0].page == children[index].page) {
        if (known_last.empty() || below.pages[0].last == known_last) return {};
    }
    const auto at = children.erase(children.begin() + static_cast<std::ptrdiff_t>(index));
    children.insert(at, below.pages.begin(), below.pages.end());

    Outcome outcome;
    outcome.unchanged = false;
    if (children.empty() && place.page != root_) {
        if (place.previous != 0) set_next(place.previous, place.next);
        if (place.next != 0) set_previous(place.next, place.previous);
        drop_page(place.page);
    } else if (!children.empty()) {
        outcome.pages = write_nodes(place, std::move(children));
    }
    return outcome;
}

void IndexWriter::split(const std::vector<Key>& entries, std::size_t from, std::size_t to,
                        std::vector<std::size_t>& ends) {
    if (entries_fit(entries, from, to)) {
        ends.push_back(to);
        return;
    }
    if (to - from < 2) throw damaged("una voce di un indice è troppo lunga");
    const std::size_t middle = (from + to) / 2;
    split(entries, from, middle, ends);
    split(entries, middle, to, ends);
}

std::vector<std::size_t> IndexWriter::pieces(const std::vector<Key>& entries, bool appended) {
    if (entries_fit(entries, 0, entries.size())) return {entries.size()};
    // Keys that only ever grow, such as autonumbers, fill their pages.
    if (appended && entries.size() > 1 && entries_fit(entries, 0, entries.size() - 1))
        return {entries.size() - 1, entries.size()};
    std::vector<std::size_t> ends;
    split(entries, 0, entries.size(), ends);
    return ends;
}

std::vector<IndexChild> IndexWriter::write_leaves(const Place& place, const std::vector<Key>& entries) {
    const std::vector<std::size_t> ends = pieces(entries, place.rightmost);
    std::vector<IndexChild> leaves;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        // The root's own page becomes the node above.
        const bool keeps = i == 0 && (place.page != root_ || ends.size() == 1);
        leaves.push_back({entries.empty() ? Key() : entries[ends[i] - 1], keeps ? place.page : take_page()});
    }
    std::size_t from = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const PageNumber previous = i == 0 ? place.previous : leaves[i - 1].page;
        const PageNumber next = i + 1 == ends.size() ? place.next : leaves[i + 1].page;
        write_index_page(store_.edit(leaves[i].page), PageType::index_leaf, table_, entries, from, ends[i],
                         previous, next, 0);
        from = ends[i];
    }
    if (leaves.size() > 1 && place.next != 0) set_previous(place.next, leaves.back().page);
    if (leaves.size() > 1 && place.page == root_) write_node(root_, leaves, 0, leaves.size(), 0, 0, true);
    return leaves;
}

std::vector<IndexChild> IndexWriter::write_nodes(const Place& place, std::vector<IndexChild> children) {
    // Off the right edge every child stands in an entry.
    if (children.back().last.empty() && (!place.rightmost || children.size() == 1)) {
        children.back().last = last_entry(children.back().page);
    }
    const bool tail_alone = place.rightmost && children.size() > 1;
    std::vector<Key> entries;
    for (std::size_t i = 0; i < children.size() - (tail_alone ? 1 : 0); ++i) {
        entries.push_back(children[i].last);
        append_child(entries.back(), children[i].page);
    }
    std::vector<std::size_t> ends = pieces(entries, place.rightmost);
    if (tail_alone) ++ends.back();
    std::vector<IndexChild> nodes;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool keeps = i == 0 && (place.page != root_ || ends.size() == 1);
        nodes.push_back({children[ends[i] - 1].last, keeps ? place.page : take_page()});
    }
    const bool above_nodes = is_node(children.front().page);
    std::size_t from = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const PageNumber previous = i == 0 ? place.previous : nodes[i - 1].page;
        const PageNumber next = i + 1 == ends.size() ? place.next : nodes[i + 1].page;
        const bool rightmost = place.rightmost && i + 1 == ends.size();
        write_node(nodes[i].page, children, from, ends[i], previous, next, rightmost);
        if (above_nodes) {
            // Nodes are chained among the children of one parent.
            for (std::size_t child = from; child < ends[i]; ++child) {
                set_previous(children[child].page, child == from ? 0 : children[child - 1].page);
                set_next(children[child].page, child + 1 == ends[i] ? 0 : children[child + 1].page);
            }
        }
        from = ends[i];
    }
    if (nodes.size() > 1 && place.next != 0) set_previous(place.next, nodes.back().page);
    if (nodes.size() > 1 && place.page == root_) write_node(root_, nodes, 0, nodes.size(), 0, 0, true);
    return nodes;
}

void IndexWriter::write_node(PageNumber number, const std::vector<IndexChild>& children, std::size_t from,
                             std::size_t to, PageNumber previous, PageNumber next, bool rightmost) {
    // An only child stands in an entry too: a node without entries is nothing that others write.
    const bool tail_alone = rightmost && to - from > 1;
    std::vector<Key> entries;
    for (std::size_t i = from; i < (tail_alone ? to - 1 : to); ++i) {
        entries.push_back(children[i].last.empty() ? last_entry(children[i].page) : children[i].last);
        append_child(entries.back(), children[i].page);
    }
    write_index_page(store_.edit(number), PageType::index_node, table_, entries, 0, entries.size(), previous,
                     next, rightmost ? children[to - 1].page : 0);
}

void IndexWriter::lift_only_child() {
    for (;;) {
        const IndexPage root(store_, root_, table_);
        if (root.is_leaf()) return;
        const std::vector<IndexChild> children = read_children(root);
        if (children.size() != 1) return;
        const PageNumber child = children[0].page;
        Page copy = *store_.read(child);
        store32(copy.data() + 12, 0);
        store32(copy.data() + 16, 0);
        store_.edit(root_) = copy;
        drop_page(child);
    }
}

bool IndexWriter::is_node(PageNumber number) { return !IndexPage(store_, number, table_).is_leaf(); }

Key IndexWriter::last_entry(PageNumber number) {
    for (int depth = 0; depth < deepest; ++depth) {
        const IndexPage page(store_, number, table_);
        if (page.is_leaf()) {
            if (page.size() == 0) throw damaged("una pagina di un indice è vuota");
            Key last;
            page.entry(page.size() - 1, last);
            return last;
        }
        const std::vector<IndexChild> children = read_children(page);
        if (children.empty()) throw damaged("una pagina di un indice è vuota");
        number = children.back().page;
    }
    throw damaged("un indice è troppo profondo");
}

PageNumber IndexWriter::take_page() {
    const PageNumber page = allocator_.take();
    pages_.add(page, allocator_);
    return page;
}

void IndexWriter::drop_page(PageNumber number) {
    pages_.remove(number);
    allocator_.give_back(number);
}

void IndexWriter::set_previous(PageNumber number, PageNumber previous) {
    if (load32(store_.read(number)->data() + 12) != previous)
        store32(store_.edit(number).data() + 12, previous);
}

void IndexWriter::set_next(PageNumber number, PageNumber next) {
    if (load32(store_.read(number)->data() + 16) != next) store32(store_.edit(number).data() + 16, next);
}

} // namespace tarvello::store::access
