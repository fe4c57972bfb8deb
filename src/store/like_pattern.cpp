#include "store/like_pattern.h"

#include "text/ascii.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <algorithm>

namespace tarvello::store {
namespace {

/// @param folded  an ASCII text in lower case
bool contains_ascii(std::string_view text, std::string_view folded) {
    if (folded.empty()) return true;
    if (text.size() < folded.size()) return false;
    const std::size_t last = text.size() - folded.size();
    for (std::size_t at = 0; at <= last; ++at) {
        if (ascii::lower(text[at]) != folded[0]) continue;
        std::size_t same = 1;
        while (same < folded.size() && ascii::lower(text[at + same]) == folded[same]) ++same;
        if (same == folded.size()) return true;
    }
    return false;
}

} // namespace

LikePattern::LikePattern(std::string_view pattern) {
    if (pattern.size() >= 2 && pattern.front() == '%' && pattern.back() == '%') {
        const std::string_view inside = pattern.substr(1, pattern.size() - 2);
        if (inside.find_first_of("%_[") == std::string_view::npos) {
            contains_only_ = true;
            contained_ = fold_case(inside);
            contained_is_ascii_ = ascii::contains_all(contained_);
            return;
        }
    }

    const std::u32string folded = utf8::decode(fold_case(pattern));
    for (std::size_t at = 0; at < folded.size(); ++at) {
        const char32_t c = folded[at];
        if (c == U'%') {
            items_.push_back({Item::Kind::any_run, false, {}});
        } else if (c == U'_') {
            items_.push_back({Item::Kind::any_one, false, {}});
        } else if (const std::size_t end = folded.find(U']', at); c == U'[' && end != std::u32string::npos) {
            Item list{Item::Kind::list, false, {}};
            ++at;
            if (folded[at] == U'!' && at + 1 < end) {
                list.negated = true;
                ++at;
            }
            for (; at < end; ++at) {
                const bool range = at + 2 < end && folded[at + 1] == U'-';
                list.ranges.push_back({folded[at], range ? folded[at + 2] : folded[at]});
                if (range) at += 2;
            }
            if (!list.ranges.empty()) items_.push_back(std::move(list));
        } else {
            items_.push_back({Item::Kind::list, false, {{c, c}}});
        }
    }
}

bool LikePattern::matches(std::string_view text) const {
    if (contains_only_) {
        if (contained_is_ascii_ && contains_ascii(text, contained_)) return true;
        // A text with letters outside ASCII may still hold it: some of them fold into ASCII ones.
        return !ascii::contains_all(text) && fold_case(text).find(contained_) != std::string::npos;
    }

    // Each % first takes nothing; on a mismatch the last one takes one character more.
    const std::u32string folded = utf8::decode(fold_case(text));
    std::size_t item = 0;
    std::size_t at = 0;
    std::size_t run_item = items_.size();
    std::size_t run_end = 0;
    while (at < folded.size()) {
        if (item < items_.size() && items_[item].kind == Item::Kind::any_run) {
            run_item = item++;
            run_end = at;
        } else if (item < items_.size() && matches_one(items_[item], folded[at])) {
            ++item;
            ++at;
        } else if (run_item < items_.size()) {
            item = run_item + 1;
            at = ++run_end;
        } else {
            return false;
        }
    }
    while (item < items_.size() && items_[item].kind == Item::Kind::any_run) ++item;
    return item == items_.size();
}

bool LikePattern::matches_one(const Item& item, char32_t character) {
    if (item.kind == Item::Kind::any_one) return true;
    const bool listed = std::any_of(item.ranges.begin(), item.ranges.end(), [&](const Range& range) {
        return range.first <= character && character <= range.last;
    });
    return listed != item.negated;
}

} // namespace tarvello::store
