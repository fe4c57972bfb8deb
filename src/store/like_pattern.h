#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvello::store {

/// A pattern of LIKE: % any characters, _ one, [abc], [a-z] and [!a-z] one of a list. Regardless of letter
/// case, in all of Unicode. A [ that no ] closes stands for itself; [] for nothing at all.
class LikePattern {
public:
    explicit LikePattern(std::string_view pattern);
    bool matches(std::string_view text) const;

private:
    struct Range {
        char32_t first;
        char32_t last;
    };
    struct Item {
        enum class Kind { any_run, any_one, list } kind;
        bool negated = false;
        std::vector<Range> ranges; ///< of a list; a plain character is a list of one
    };

    static bool matches_one(const Item& item, char32_t character);

    std::vector<Item> items_;
    /// "%text%" without wildcards inside is what the searches send: then `text`, its case folded.
    std::string contained_;
    bool contains_only_ = false;
    bool contained_is_ascii_ = false;
};

} // namespace tarvello::store
