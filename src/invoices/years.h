#pragma once

#include "platform/controls.h"

#include <string>

namespace tarvello {

/// Fills a list with the years to choose from, wherever invoices are looked for by year.
inline void add_years(ComboBox& combo) {
    constexpr int first_year = 2004;
    constexpr int last_year = 2020;
    combo.set_tool_tip("Anno del quale si desiderano consulatare le fatture");
    for (int year = first_year; year <= last_year; ++year) combo.add_item(std::to_string(year));
}

} // namespace tarvello
