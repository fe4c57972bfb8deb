#include "store/column_text.h"

namespace tarvello {
namespace {

std::string value_place(const ColumnText& column) { return "'" + column.text + "'"; }
std::string value_place(const std::string&) { return "?"; }

const std::string& column_name(const ColumnText& column) { return column.column; }
const std::string& column_name(const std::string& column) { return column; }

template <typename Column>
std::string insert_into(const std::string& table, std::span<const Column> columns) {
    std::string names;
    std::string values;
    for (const Column& column : columns) {
        names += (names.empty() ? "" : ",") + column_name(column);
        values += (values.empty() ? "" : ",") + value_place(column);
    }
    return "INSERT INTO " + table + " (" + names + ") VALUES (" + values + ")";
}

template <typename Column>
std::string update_of(const std::string& table, std::span<const Column> columns,
                      const std::string& condition) {
    std::string assignments;
    for (const Column& column : columns) {
        assignments += (assignments.empty() ? "" : ",") + column_name(column) + "=" + value_place(column);
    }
    return "UPDATE " + table + " SET " + assignments + " WHERE " + condition;
}

} // namespace

std::string insert_statement(const std::string& table, std::span<const ColumnText> columns) {
    return insert_into(table, columns);
}

std::string insert_statement(const std::string& table, std::span<const std::string> columns) {
    return insert_into(table, columns);
}

std::string update_statement(const std::string& table, std::span<const ColumnText> columns,
                             const std::string& condition) {
    return update_of(table, columns, condition);
}

std::string update_statement(const std::string& table, std::span<const std::string> columns,
                             const std::string& condition) {
    return update_of(table, columns, condition);
}

} // namespace tarvello
