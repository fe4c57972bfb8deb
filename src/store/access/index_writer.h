#pragma once

#include "store/access/index_page.h"
#include "store/access/usage_map.h"

namespace tarvello::store::access {

/// Adds and removes the entries of one index: splits full pages, drops empty ones, and keeps what the nodes
/// above say of them. The root keeps its page.
///
/// Every child of a node stands in an entry, but for the nodes on the right edge of the index: their last
/// child is the tail child, which stands in none, so that keys that only ever grow change nothing above their
/// leaf. Such a node has an entry at least.
class IndexWriter {
public:
    IndexWriter(PageStore& store, PageAllocator& allocator, const IndexDefinition& index)
        : store_(store), allocator_(allocator), pages_(store, index.pages), root_(index.root),
          table_(index.table) {}

    /// @param key  without the row
    void insert(KeyView key, RowPointer row);
    /// @throws Failure if the entry is not there
    void erase(KeyView key, RowPointer row);
    /// Puts all entries into an index that has none.
    /// @param entries  keys with their rows, in order
    void fill(const std::vector<Key>& entries);

    /// A key with the row behind it, as a leaf holds it.
    /// @throws Failure if the key is too long for an index
    static Key entry_of(KeyView key, RowPointer row);

private:
    using Children = std::vector<IndexChild>;
    struct Change {
        Key entry;
        bool insert = true;
    };
    /// What stands in the place of a page after a change below it.
    struct Outcome {
        bool unchanged = true; ///< the page still ends with the same entry: nothing to tell its parent
        Children pages;
    };
    /// A page that is written anew, from its old head.
    struct Place {
        PageNumber page = 0;
        PageNumber previous = 0;
        PageNumber next = 0;
        bool rightmost = false; ///< on the right edge of the index
    };

    void run(const Change& change);
    Outcome change_below(PageNumber number, bool rightmost, const Change& change, int depth);
    Outcome change_leaf(const Place& place, const IndexPage& page, const Change& change);
    Outcome change_node(const Place& place, const IndexPage& page, const Change& change, int depth);
    bool mend_right_edge(Children& children);
    Children write_leaves(const Place& place, const std::vector<Key>& entries);
    Children write_leaves(const Place& place, const std::vector<Key>& entries,
                          const std::vector<std::size_t>& ends);
    Children write_nodes(const Place& place, const Children& children);
    void write_node(const Place& place, const Children& children);
    /// Where the entries are cut so that each piece fits on a page: the ends of the pieces.
    static std::vector<std::size_t> pieces(PageType type, const std::vector<Key>& entries, bool appended);
    static void split(PageType type, const std::vector<Key>& entries, std::size_t from, std::size_t to,
                      std::vector<std::size_t>& ends);

    bool is_node(PageNumber number);
    Key last_entry(PageNumber number);
    Place place_of(PageNumber number, bool rightmost);
    PageNumber take_page();
    void drop_page(PageNumber number);
    void unlink(const Place& place);
    void set_previous(PageNumber number, PageNumber previous);
    void set_next(PageNumber number, PageNumber next);
    void lift_only_child();

    PageStore& store_;
    PageAllocator& allocator_;
    UsageMap pages_;
    PageNumber root_;
    PageNumber table_;
};

} // namespace tarvello::store::access
