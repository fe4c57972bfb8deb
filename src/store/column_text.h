#pragma once

#include <span>
#include <string>

namespace tarvello {

/// A column of a row to be written, with its text as it goes between the apostrophes of the statement: who
/// wants an apostrophe in it doubles it.
struct ColumnText {
    std::string column;
    std::string text;
};

/// The statement that adds a row of these columns to a table.
std::string insert_statement(const std::string& table, std::span<const ColumnText> columns);

/// The same with a parameter for each value.
std::string insert_statement(const std::string& table, std::span<const std::string> columns);

/// The statement that gives these columns new texts in the rows of a condition such as "ID=5".
std::string update_statement(const std::string& table, std::span<const ColumnText> columns,
                             const std::string& condition);

/// The same with a parameter for each value.
std::string update_statement(const std::string& table, std::span<const std::string> columns,
                             const std::string& condition);

} // namespace tarvello
