#include "store/column_text.h"

namespace tarvello {

std::string insert_statement(const std::string& table, std::span<const ColumnText> columns) {
    std::string names;
    std::string values;
    for (const auto& [column, text] : columns) {
        names += (names.empty() ? "" : ",") + column;
        values += (values.empty() ? "'" : ",'") + text + "'";
    }
    return "INSERT INTO " + table + " (" + names + ") VALUES (" + values + ")";
}

std::string update_statement(const std::string& table, std::span<const ColumnText> columns,
                             const std::string& condition) {
    std::string assignments;
    for (const auto& [column, text] : columns) {
        assignments += (assignments.empty() ? "" : ",") + column + "='" + text + "'";
    }
    return "UPDATE " + table + " SET " + assignments + " WHERE " + condition;
}

} // namespace tarvello
