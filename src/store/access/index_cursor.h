#pragma once

#include "store/access/index_page.h"

namespace tarvello::store::access {

/// Walks through the entries of an index, either way. It stays sound while others write: it then finds its
/// place again by its entry.
class IndexCursor {
public:
    IndexCursor(PageStore& store, const IndexDefinition& index)
        : store_(&store), root_(index.root), table_(index.table) {}

    /// Each goes to an entry. @return false if there is none
    bool first();
    bool last();
    bool first_not_below(KeyView key);
    bool last_below(KeyView key);
    bool next();
    bool previous();

    /// The entry that the cursor stands on.
    const Key& entry() const { return entry_; }
    /// Its key, without the row.
    KeyView key() const { return KeyView(entry_).substr(0, entry_.size() - format::index_page::row_size); }
    RowPointer row() const { return row_; }

private:
    void go_to_leaf(PageNumber number);
    /// Down from the root to the leaf that holds the first entry not below `key`, or the leaf at an end.
    enum class Way : std::uint8_t { by_key, leftmost, rightmost };
    void descend(Way way, KeyView key);
    bool settle_forward();
    bool settle_backward();
    void take_entry();

    PageStore* store_;
    PageNumber root_;
    PageNumber table_;
    IndexPage leaf_;
    PageNumber leaf_number_ = 0;
    std::size_t at_ = 0;
    std::uint64_t seen_change_ = 0;
    PageNumber leaves_walked_ = 0; // since the last change: more than the file has pages is a loop
    Key entry_;
    RowPointer row_;
};

} // namespace tarvello::store::access
