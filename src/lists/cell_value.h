#pragma once

#include "lists/table.h"
#include "text/dates.h"
#include "text/regional_settings.h"

#include <optional>
#include <string_view>
#include <variant>

namespace tarvello::lists {

/// What a cell holds: nothing, a text, a number, a day.
using CellValue = std::variant<std::monostate, std::string_view, double, Date>;

/// The value behind the text of a cell. A text that is none of its kind stays a text; one of blanks is
/// nothing.
CellValue cell_value(std::string_view text, ColumnKind kind, const RegionalSettings& regional);

/// The number that a text shows: with or without currency symbol, thousands separators and percent sign.
/// @return nothing if it is no number
std::optional<double> shown_number(std::string_view text, const RegionalSettings& regional);

} // namespace tarvello::lists
