#pragma once

#include "store/access/index_key.h"
#include "store/access/page_store.h"

#include <vector>

/// The pages of an index. A leaf holds keys with the place of their row, a node the last entry of each child
/// with the child's page.
namespace tarvello::store::access {

inline constexpr std::size_t entries_at = 480;
inline constexpr std::size_t entries_room = page_size - entries_at;
/// An entry may not be longer: two must fit on a page.
inline constexpr std::size_t max_entry_size = 1700;

/// A page to be read. It keeps the page.
class IndexPage {
public:
    IndexPage() = default;
    /// @throws Failure if the page is no page of this index's table, or its entries are not sound
    IndexPage(PageStore& store, PageNumber number, PageNumber table);

    bool is_leaf() const { return leaf_; }
    std::size_t size() const { return ends_.size(); }
    PageNumber previous() const { return load32(page_->data() + 12); }
    PageNumber next() const { return load32(page_->data() + 16); }
    PageNumber tail() const { return load32(page_->data() + 20); }

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

/// How many of the entries from `from` on fit on one page.
/// @param entries  in their order
bool entries_fit(const std::vector<Key>& entries, std::size_t from, std::size_t to);

/// Writes a page anew, its neighbours included in the head.
void write_index_page(Page& page, PageType type, PageNumber table, const std::vector<Key>& entries,
                      std::size_t from, std::size_t to, PageNumber previous, PageNumber next,
                      PageNumber tail);

} // namespace tarvello::store::access
