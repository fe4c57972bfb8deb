#pragma once

#include "lists/table.h"
#include "text/regional_settings.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace tarvello::lists {

/// By which column a list is sorted. A click on its header sorts, a second one turns the order round, a third
/// one brings back the order in which the rows came.
struct SortOrder {
    std::optional<std::size_t> column;
    bool descending = false;

    void click(std::size_t header);
};

/// The rows of a list in the order of a column: numbers as numbers, days as days, texts in Italian order (see
/// append_order_key). What is no value of the column's kind comes behind those that are; rows that are equal
/// stay as they came; empty cells are last in both directions.
std::vector<std::size_t> sorted_rows(const Table& table, const SortOrder& order,
                                     const RegionalSettings& regional);

} // namespace tarvello::lists
