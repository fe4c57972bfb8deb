#pragma once

#include "lists/table.h"
#include "text/regional_settings.h"

#include <string>

namespace tarvello::lists {

/// A list as a .csv file that Italian spreadsheets read without a question: UTF-8 with its mark, semicolons,
/// decimal commas, numbers and amounts without symbol and thousands separators, days as 05/03/2006. One line
/// of headers.
std::string csv_file(const Table& table, const RegionalSettings& regional);

} // namespace tarvello::lists
