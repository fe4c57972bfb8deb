#include "store/access/index_writer.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using namespace format::index_page;

/// The first of a row of pieces keeps the page of what was cut, but for the root: it becomes the node above.
bool keeps_page(std::size_t piece, std::size_t pieces, bool root) {
    return piece == 0 && (!root || pieces == 1);
}

} // namespace

Key IndexWriter::entry_of(KeyView key, RowPointer row) {
    if (key.size() > max_entry_size)
        throw not_writable("Il testo è troppo lungo per un indice del file Access.");
    Key entry(key);
    append_row(entry, row);
    return entry;
}

void IndexWriter::insert(KeyView key, RowPointer row) { run({entry_of(key, row), true}); }

void IndexWriter::erase(KeyView key, RowPointer row) { run({entry_of(key, row), false}); }

void IndexWriter::run(const Change& change) {
    const Outcome outcome = change_below(root_, true, change, 0);
    if (outcome.unchanged) return;
    if (outcome.pages.empty()) {
        write_index_page(store_.edit(root_), PageType::index_leaf, table_, {}, 0, 0, {});
        return;
    }
    // write_leaves and write_nodes leave the root its page, above several others if it must be.
    lift_only_child();
}

IndexWriter::Outcome IndexWriter::change_below(PageNumber number, bool rightmost, const Change& change,
                                               int depth) {
    if (depth == deepest) throw damaged(damage::index_too_deep);
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
        unlink(place);
    } else {
        outcome.pages = write_leaves(place, entries);
    }
    outcome.unchanged = outcome.pages.size() == 1 && outcome.pages[0].last == old_last;
    return outcome;
}

IndexWriter::Outcome IndexWriter::change_node(const Place& place, const IndexPage& page, const Change& change,
                                              int depth) {
    const std::size_t count = page.child_count();
    if (count == 0) throw damaged(damage::empty_index_page);
    const std::size_t index = std::min(page.lower_bound(change.entry), count - 1);
    const bool on_edge = place.rightmost && index + 1 == count;
    const Outcome below = change_below(page.child(index), on_edge, change, depth + 1);
    if (below.unchanged) return {};
    Children children = read_children(page);
    const IndexChild known = children[index];
    const auto at = children.erase(children.begin() + static_cast<std::ptrdiff_t>(index));
    children.insert(at, below.pages.begin(), below.pages.end());
    const bool mended = on_edge && mend_right_edge(children);
    const bool same = below.pages.size() == 1 && below.pages[0].page == known.page;
    // A child on the right edge stands in no entry: that its last entry has moved is nobody's business.
    if (same && !mended && (known.last.empty() || below.pages[0].last == known.last)) return {};

    Outcome outcome;
    outcome.unchanged = false;
    if (children.empty() && place.page != root_) {
        unlink(place);
    } else if (!children.empty()) {
        outcome.pages = write_nodes(place, children);
    }
    return outcome;
}

/// Sees to it that the last of the children, if it is a node, has a tail child and at least one entry.
/// @return true if what their parent says of the children has changed
bool IndexWriter::mend_right_edge(Children& children) {
    if (children.size() < 2 || !is_node(children.back().page)) return false;
    const Place place = place_of(children.back().page, true);
    const IndexPage page(store_, place.page, table_);
    Children own = read_children(page);
    if (own.empty()) throw damaged(damage::empty_index_page);
    if (own.size() > 1) {
        if (page.tail() != 0) return false;
        mend_right_edge(own); // it has only now come to the right edge
        write_node(place, own);
        return false;
    }
    IndexChild& beside = children[children.size() - 2];
    const Place left = place_of(beside.page, false);
    Children others = read_children(IndexPage(store_, left.page, table_));
    if (others.empty()) throw damaged(damage::empty_index_page);
    own.insert(own.begin(), others.back());
    others.pop_back();
    if (others.empty()) {
        unlink(left);
        children.erase(children.end() - 2);
    } else {
        beside.last = others.back().last.empty() ? last_entry(others.back().page) : others.back().last;
        write_node(left, others);
    }
    mend_right_edge(own);
    write_node(place_of(place.page, true), own);
    return true;
}

void IndexWriter::split(PageType type, const std::vector<Key>& entries, std::size_t from, std::size_t to,
                        std::vector<std::size_t>& ends) {
    if (entries_fit(type, entries, from, to)) {
        ends.push_back(to);
        return;
    }
    if (to - from < 2) throw damaged("una voce di un indice è troppo lunga");
    const std::size_t middle = (from + to) / 2;
    split(type, entries, from, middle, ends);
    split(type, entries, middle, to, ends);
}

std::vector<std::size_t> IndexWriter::pieces(PageType type, const std::vector<Key>& entries, bool appended) {
    if (entries_fit(type, entries, 0, entries.size())) return {entries.size()};
    // Keys that only ever grow, such as autonumbers, fill their pages.
    if (appended && entries.size() > 1 && entries_fit(type, entries, 0, entries.size() - 1))
        return {entries.size() - 1, entries.size()};
    std::vector<std::size_t> ends;
    split(type, entries, 0, entries.size(), ends);
    return ends;
}

IndexWriter::Children IndexWriter::write_leaves(const Place& place, const std::vector<Key>& entries) {
    return write_leaves(place, entries, pieces(PageType::index_leaf, entries, place.rightmost));
}

IndexWriter::Children IndexWriter::write_leaves(const Place& place, const std::vector<Key>& entries,
                                                const std::vector<std::size_t>& ends) {
    Children leaves;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool keeps = keeps_page(i, ends.size(), place.page == root_);
        leaves.push_back({entries.empty() ? Key() : entries[ends[i] - 1], keeps ? place.page : take_page()});
    }
    std::size_t from = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        IndexLinks links{place.previous, place.next, 0};
        if (i > 0) links.previous = leaves[i - 1].page;
        if (i + 1 < ends.size()) links.next = leaves[i + 1].page;
        write_index_page(store_.edit(leaves[i].page), PageType::index_leaf, table_, entries, from, ends[i],
                         links);
        from = ends[i];
    }
    if (leaves.size() > 1 && place.next != 0) set_previous(place.next, leaves.back().page);
    if (leaves.size() > 1 && place.page == root_) write_nodes({root_, 0, 0, true}, leaves);
    return leaves;
}

IndexWriter::Children IndexWriter::write_nodes(const Place& place, const Children& children) {
    // On the right edge the last child comes along with the entry in front of it.
    const std::size_t count = children.size() - (place.rightmost && children.size() > 1 ? 1 : 0);
    std::vector<Key> entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(children[i].last.empty() ? last_entry(children[i].page) : children[i].last);
        append_child(entries.back(), children[i].page);
    }
    std::vector<std::size_t> ends = pieces(PageType::index_node, entries, place.rightmost);
    ends.back() = children.size();
    Children nodes;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool keeps = keeps_page(i, ends.size(), place.page == root_);
        nodes.push_back({children[ends[i] - 1].last, keeps ? place.page : take_page()});
    }
    std::size_t from = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        Place node{nodes[i].page, place.previous, place.next, place.rightmost && i + 1 == ends.size()};
        if (i > 0) node.previous = nodes[i - 1].page;
        if (i + 1 < ends.size()) node.next = nodes[i + 1].page;
        const auto at = children.begin();
        write_node(node, {at + static_cast<std::ptrdiff_t>(from), at + static_cast<std::ptrdiff_t>(ends[i])});
        from = ends[i];
    }
    if (nodes.size() > 1 && place.next != 0) set_previous(place.next, nodes.back().page);
    if (nodes.size() > 1 && place.page == root_) write_nodes({root_, 0, 0, true}, nodes);
    return nodes;
}

void IndexWriter::write_node(const Place& place, const Children& children) {
    std::vector<Key> entries;
    for (const IndexChild& child : children) {
        if (place.rightmost && &child == &children.back()) break;
        entries.push_back(child.last.empty() ? last_entry(child.page) : child.last);
        append_child(entries.back(), child.page);
    }
    const PageNumber tail = place.rightmost ? children.back().page : 0;
    write_index_page(store_.edit(place.page), PageType::index_node, table_, entries, 0, entries.size(),
                     {place.previous, place.next, tail});
    if (!is_node(children.front().page)) return;
    // Nodes are chained among the children of one parent.
    for (std::size_t i = 0; i < children.size(); ++i) {
        set_previous(children[i].page, i == 0 ? 0 : children[i - 1].page);
        set_next(children[i].page, i + 1 == children.size() ? 0 : children[i + 1].page);
    }
}

void IndexWriter::fill(const std::vector<Key>& entries) {
    std::vector<std::size_t> ends;
    EntryRoom room(PageType::index_leaf);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (room.add(entries[i])) continue;
        ends.push_back(i);
        room = EntryRoom(PageType::index_leaf);
        room.add(entries[i]);
    }
    ends.push_back(entries.size());
    write_leaves({root_, 0, 0, true}, entries, ends);
}

void IndexWriter::lift_only_child() {
    for (;;) {
        const IndexPage root(store_, root_, table_);
        if (root.is_leaf()) return;
        const Children children = read_children(root);
        if (children.size() != 1) return;
        const PageNumber child = children[0].page;
        if (is_node(child)) {
            write_node({root_, 0, 0, true}, read_children(IndexPage(store_, child, table_)));
        } else {
            const Page copy = *store_.read(child);
            store_.edit(root_) = copy;
            set_previous(root_, 0);
            set_next(root_, 0);
        }
        drop_page(child);
    }
}

bool IndexWriter::is_node(PageNumber number) { return !IndexPage(store_, number, table_).is_leaf(); }

Key IndexWriter::last_entry(PageNumber number) {
    for (int depth = 0; depth < deepest; ++depth) {
        const IndexPage page(store_, number, table_);
        if (page.is_leaf()) {
            if (page.size() == 0) throw damaged(damage::empty_index_page);
            Key last;
            page.entry(page.size() - 1, last);
            return last;
        }
        const Children children = read_children(page);
        if (children.empty()) throw damaged(damage::empty_index_page);
        number = children.back().page;
    }
    throw damaged(damage::index_too_deep);
}

IndexWriter::Place IndexWriter::place_of(PageNumber number, bool rightmost) {
    const IndexPage page(store_, number, table_);
    return {number, page.previous(), page.next(), rightmost};
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

void IndexWriter::unlink(const Place& place) {
    if (place.previous != 0) set_next(place.previous, place.next);
    if (place.next != 0) set_previous(place.next, place.previous);
    drop_page(place.page);
}

void IndexWriter::set_previous(PageNumber number, PageNumber previous) {
    if (load32(store_.read(number)->data() + previous_at) != previous)
        store32(store_.edit(number).data() + previous_at, previous);
}

void IndexWriter::set_next(PageNumber number, PageNumber next) {
    if (load32(store_.read(number)->data() + next_at) != next)
        store32(store_.edit(number).data() + next_at, next);
}

} // namespace tarvello::store::access
