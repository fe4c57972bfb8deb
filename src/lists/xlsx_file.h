#pragma once

#include "lists/table.h"
#include "text/regional_settings.h"

#include <string>
#include <string_view>

namespace tarvello::lists {

/// A list as a .xlsx file: numbers, amounts (as € 1.234,56) and days as what they are, everything else as
/// text, so that a postal code keeps its zeros. The headers stand still when the list is scrolled, and have
/// the buttons of a filter.
/// @param title  the name of the sheet; cut to what a spreadsheet takes
/// @throws Failure if it cannot be made, or has more rows than a spreadsheet
std::string xlsx_file(const Table& table, std::string_view title, const RegionalSettings& regional);

} // namespace tarvello::lists
