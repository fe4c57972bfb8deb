#pragma once

#include "lists/table.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello::lists {

/// Narrows a list while the user types. Made once for a filled list; then each key costs a look at its
/// letters only.
class Narrowing {
public:
    explicit Narrowing(const Table& table);

    /// The rows that hold every word of what is typed, anywhere, whatever its accents and capitals: "rossi
    /// mil" finds Rossi of Milano. In the order of the list; all rows if nothing is typed.
    std::vector<std::size_t> rows(std::string_view typed) const;

private:
    std::string letters_; // of all rows, folded
    std::vector<std::size_t> row_ends_;
};

} // namespace tarvello::lists
