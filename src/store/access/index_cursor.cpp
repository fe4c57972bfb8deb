#include "store/access/index_cursor.h"

#include <algorithm>

namespace tarvello::store::access {

void IndexCursor::go_to_leaf(PageNumber number) {
    if (++leaves_walked_ > store_->page_count()) throw damaged("le pagine di un indice formano un anello");
    leaf_ = IndexPage(*store_, number, table_);
    if (!leaf_.is_leaf()) throw damaged("un indice porta a una pagina di altro genere");
    leaf_number_ = number;
}

void IndexCursor::descend(Way way, KeyView key) {
    seen_change_ = store_->change_count();
    leaves_walked_ = 0;
    PageNumber number = root_;
    for (int depth = 0; depth < format::index_page::deepest; ++depth) {
        const IndexPage page(*store_, number, table_);
        if (page.is_leaf()) {
            go_to_leaf(number);
            return;
        }
        const std::size_t count = page.child_count();
        if (count == 0) throw damaged(damage::empty_index_page);
        std::size_t place = 0;
        if (way == Way::rightmost) place = count - 1;
        if (way == Way::by_key) place = std::min(page.lower_bound(key), count - 1);
        number = page.child(place);
    }
    throw damaged(damage::index_too_deep);
}

void IndexCursor::take_entry() {
    leaf_.entry(at_, entry_);
    row_ = leaf_.row(at_);
}

bool IndexCursor::settle_forward() {
    while (at_ >= leaf_.size()) {
        const PageNumber next = leaf_.next();
        if (next == 0) return false;
        go_to_leaf(next);
        at_ = 0;
    }
    take_entry();
    return true;
}

bool IndexCursor::settle_backward() {
    while (at_ == 0) {
        const PageNumber previous = leaf_.previous();
        if (previous == 0) return false;
        go_to_leaf(previous);
        at_ = leaf_.size();
    }
    --at_;
    take_entry();
    return true;
}

bool IndexCursor::first() {
    descend(Way::leftmost, {});
    at_ = 0;
    return settle_forward();
}

bool IndexCursor::last() {
    descend(Way::rightmost, {});
    at_ = leaf_.size();
    return settle_backward();
}

bool IndexCursor::first_not_below(KeyView key) {
    descend(Way::by_key, key);
    at_ = leaf_.lower_bound(key);
    return settle_forward();
}

bool IndexCursor::last_below(KeyView key) {
    descend(Way::by_key, key);
    at_ = leaf_.lower_bound(key);
    return settle_backward();
}

bool IndexCursor::next() {
    const Key from = entry_;
    if (seen_change_ != store_->change_count()) {
        if (!first_not_below(from)) return false;
        if (entry_ != from) return true; // its own entry is gone
    }
    ++at_;
    if (!settle_forward()) return false;
    if (entry_ <= from) throw damaged("le voci di un indice non sono in ordine");
    return true;
}

bool IndexCursor::previous() {
    const Key from = entry_;
    if (seen_change_ != store_->change_count()) return last_below(from);
    if (!settle_backward()) return false;
    if (entry_ >= from) throw damaged("le voci di un indice non sono in ordine");
    return true;
}

} // namespace tarvello::store::access
