#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// What all lists of the program share: sorting, narrowing, export. Pure functions on texts as they are
/// shown.
namespace tarvello::lists {

/// What the texts of a column stand for.
enum class ColumnKind : std::uint8_t {
    text,
    number, ///< 7, 12,5, 22%
    amount, ///< € 1.234,56
    date,   ///< in the short form
};

struct Column {
    std::string header;
    ColumnKind kind = ColumnKind::text;
};

/// A view of a list: it lasts as long as what it looks at.
struct Table {
    std::vector<Column> columns;
    std::size_t rows = 0;
    /// The cell as it is shown.
    std::function<std::string_view(std::size_t row, std::size_t column)> text;
};

} // namespace tarvello::lists
