#pragma once

#include "store/access/index_key.h"
#include "store/access/page_store.h"

#include <vector>

/// The pages of an index. A leaf holds keys with the place of their row, a node the last entry of each child
/// with the child's page.
namespace tarvello::store::access {

/// A page to be read. It keeps the page.
class IndexPage {
public:
    IndexPage() = default;
    /// @throws Failure if the page is no page of this index's table, or its entries are not sound
    IndexPage(PageStore& store, PageNumber number, PageNumber table);

    bool is_leaf() const { return leaf_; }
    std::size_t size() const { return ends_.size(); }
    PageNumber previous() const { return load32(page_->data() + format::index_page::previous_at); }
    PageNumber next() const { return load32(page_->data() + format::index_page::next_at); }
    PageNumber tail() const { return load32(page_->data() + format::index_page::tail_at); }

    /// A whole entry: of a leaf with the row, of a node with the row and the child.
    void entry(std::size_t index, Key& into) const;
    /// The row of an entry of a leaf.
    RowPointer row(std::size_t index) const;
    /// The children of a node: those of its entries, and the tail child if it is in none.
    std::size_t child_count() const;
    PageNumber child(std::size_t index) const;
    /// The first entry that is not below `key`; of nodes the child does not count. size() if there is none.
    std::size_t lower_bound(KeyView key) const;

private:
    Bytes rest(std::size_t index) const;
    int compare(std::size_t index, KeyView key) const;

    PageRef page_;
    bool leaf_ = true;
    std::size_t prefix_ = 0;
    std::vector<std::uint16_t> ends_; // of the entries, counted from entries_at
};

/// What a node knows of a child.
struct IndexChild {
    Key last; ///< its last entry, without the child's page; empty where no entry stands for the tail child
    PageNumber page = 0;
};

/// The children of a node, the tail child last.
std::vector<IndexChild> read_children(const IndexPage& node);

/// The end of a whole entry: the row, and of a node's the child.
void append_row(Key& key, RowPointer row);
void append_child(Key& entry, PageNumber child);

/// The entries of a page to be, which come in their order: tells how many fit.
class EntryRoom {
public:
    explicit EntryRoom(PageType type) : type_(type) {}
    /// Counts one more entry in. @return false if the page cannot take it; then nothing has changed
    bool add(const Key& entry);

private:
    PageType type_;
    Key first_;
    std::size_t count_ = 0;
    std::size_t size_ = 0;   // without a shared prefix
    std::size_t prefix_ = 0; // that all share
};

/// True if the entries fit on one page.
bool entries_fit(PageType type, const std::vector<Key>& entries, std::size_t from, std::size_t to);

/// What a page says of its neighbours, 0 for none.
struct IndexLinks {
    PageNumber previous = 0;
    PageNumber next = 0;
    PageNumber tail = 0; ///< of a node: the child that stands in no entry
};

/// Writes a page anew.
void write_index_page(Page& page, PageType type, PageNumber table, const std::vector<Key>& entries,
                      std::size_t from, std::size_t to, const IndexLinks& links);

} // namespace tarvello::store::access
