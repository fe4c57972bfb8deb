#include "lists/csv_file.h"

#include "lists/cell_value.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tarvello::lists {
namespace {

constexpr char separator = ';';

void append_text(std::string& file, std::string_view text) {
    constexpr std::string_view special = ";\"\r\n";
    const bool padded = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (!padded && text.find_first_of(special) == std::string_view::npos) {
        file += text;
        return;
    }
    file += '"';
    for (const char c : text) {
        if (c == '"') file += '"';
        file += c;
    }
    file += '"';
}

/// With two decimals if it is an amount, else with those that it has.
void append_number(std::string& file, double number, bool amount) {
    constexpr int longest = 400; // of the greatest double, without an exponent
    std::array<char, longest> digits{};
    char* const begin = digits.data();
    char* const end = begin + digits.size();
    const auto written = amount ? std::to_chars(begin, end, number, std::chars_format::fixed, 2)
                                : std::to_chars(begin, end, number, std::chars_format::fixed);
    std::replace(begin, written.ptr, '.', ',');
    file.append(begin, written.ptr);
}

void append_cell(std::string& file, std::string_view text, ColumnKind kind,
                 const RegionalSettings& regional) {
    const CellValue value = cell_value(text, kind, regional);
    if (const auto* number = std::get_if<double>(&value)) {
        append_number(file, *number, kind == ColumnKind::amount);
    } else if (const auto* date = std::get_if<Date>(&value)) {
        file += short_date_text(*date, RegionalSettings{}); // Italian, whatever the user's own form
    } else {
        append_text(file, text);
    }
}

} // namespace

std::string csv_file(const Table& table, const RegionalSettings& regional) {
    std::string file = "\xEF\xBB\xBF";
    const std::size_t columns = table.columns.size();
    const auto append_end = [&](std::size_t column) {
        if (column + 1 < columns) {
            file += separator;
        } else {
            file += "\r\n";
        }
    };
    for (std::size_t column = 0; column < columns; ++column) {
        append_text(file, table.columns[column].header);
        append_end(column);
    }
    for (std::size_t row = 0; row < table.rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            append_cell(file, table.text(row, column), table.columns[column].kind, regional);
            append_end(column);
        }
    }
    return file;
}

} // namespace tarvello::lists
