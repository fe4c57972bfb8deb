#include "store/sqlite/plan.h"

#include <sqlite3.h>

#include <utility>

namespace tarvello::store {
namespace {

const char* operator_text(Comparison comparison) {
    switch (comparison) {
    case Comparison::not_equal:
        return "<>";
    case Comparison::less:
        return "<";
    case Comparison::greater:
        return ">";
    case Comparison::less_or_equal:
        return "<=";
    case Comparison::greater_or_equal:
        return ">=";
    default:
        return "=";
    }
}

std::string parameter(int& count) { return "?" + std::to_string(++count); }

std::string condition_sql(const Table& table, std::size_t place, const Condition& condition,
                          int& parameters) {
    const Column& column = table.columns[place];
    const std::string name = quoted_name(column.name);
    const Comparison comparison = condition.comparison;
    if (comparison == Comparison::in) {
        std::string list;
        for (std::size_t i = 0; i < condition.list.size(); ++i)
            list += (i == 0 ? "" : ",") + parameter(parameters);
        return name + (column.type == ColumnType::text ? " COLLATE ignoring_case" : "") + " IN (" + list +
               ")";
    }
    const std::string value = parameter(parameters);
    if (comparison == Comparison::like) return "matches(" + name + "," + value + ")";
    if (column.type != ColumnType::text) return name + operator_text(comparison) + value;
    std::string holds = name + operator_text(comparison) + value + " COLLATE ignoring_case";
    if (comparison != Comparison::equal || !table.key) return holds;
    // A column that is looked up has two indexes, see data/schema.sql. Each answers one half of the list;
    // what holds is decided afterwards on the few rows of it.
    const std::string key = quoted_name(table.columns[*table.key].name);
    const std::string keys = "SELECT " + key + " FROM " + quoted_name(table.name) + " WHERE " + name;
    return key + " IN (" + keys + "=" + value + " COLLATE NOCASE UNION ALL " + keys +
           " GLOB '*[^ -~]*') AND " + holds;
}

std::string where_sql(const Statement& statement, const Plan& plan, int& parameters) {
    std::string sql;
    for (std::size_t i = 0; i < statement.conditions.size(); ++i) {
        sql += i == 0 ? " WHERE " : " AND ";
        sql += condition_sql(*plan.table, plan.places.conditions[i], statement.conditions[i], parameters);
    }
    return sql;
}

std::string select_sql(const Statement& statement, const Plan& plan) {
    const SqliteTable& table = *plan.table;
    std::string sql = "SELECT ";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0) sql += ",";
        sql += quoted_name(table.columns[i].name);
    }
    int parameters = 0;
    sql += " FROM " + quoted_name(table.name) + where_sql(statement, plan, parameters);
    if (plan.places.order_by) {
        const Column& column = table.columns[*plan.places.order_by];
        sql += " ORDER BY " + quoted_name(column.name);
        if (column.type == ColumnType::text) sql += " COLLATE ignoring_case";
        if (statement.descending) sql += " DESC";
    } else {
        for (const std::size_t key : table.key_columns) {
            sql += (key == table.key_columns.front() ? " ORDER BY " : ",") +
                   quoted_name(table.columns[key].name);
        }
    }
    if (statement.top) sql += " LIMIT " + parameter(parameters);
    return sql;
}

std::string sql_of(const Statement& statement, const Plan& plan) {
    const Table& table = *plan.table;
    int parameters = 0;
    std::string sql;
    switch (statement.kind) {
    case StatementKind::select:
        return select_sql(statement, plan);
    case StatementKind::insert: {
        std::string values;
        sql = "INSERT INTO " + quoted_name(table.name) + " (";
        for (std::size_t i = 0; i < plan.places.assignments.size(); ++i) {
            if (i > 0) sql += ",";
            if (i > 0) values += ",";
            sql += quoted_name(table.columns[plan.places.assignments[i]].name);
            values += parameter(parameters);
        }
        return sql + ") VALUES (" + values + ")";
    }
    case StatementKind::update:
        sql = "UPDATE " + quoted_name(table.name) + " SET ";
        for (std::size_t i = 0; i < plan.places.assignments.size(); ++i) {
            if (i > 0) sql += ",";
            sql += quoted_name(table.columns[plan.places.assignments[i]].name) + "=" + parameter(parameters);
        }
        return sql + where_sql(statement, plan, parameters);
    case StatementKind::remove:
        break;
    }
    return "DELETE FROM " + quoted_name(table.name) + where_sql(statement, plan, parameters);
}

} // namespace

Plan::Plan(std::shared_ptr<SqliteFile> file_of_it, const Statement& statement)
    : file(std::move(file_of_it)), table(file->table(statement.table)),
      places(find_places(statement, *table)), sql(sql_of(statement, *this)) {}

Plan::~Plan() {
    if (!file->is_open()) return; // a closed file has ended its statements
    for (sqlite3_stmt* statement : idle) sqlite3_finalize(statement);
}

void append_shape(std::string& shape, const Statement& statement) {
    shape += static_cast<char>('0' + static_cast<int>(statement.kind));
    shape += statement.top ? 'T' : '-';
    shape += statement.table;
    for (const Assignment& assignment : statement.assignments) {
        shape += '=';
        shape += assignment.column;
    }
    for (const Condition& condition : statement.conditions) {
        shape += '?';
        shape += condition.column;
        shape += static_cast<char>('0' + static_cast<int>(condition.comparison));
        if (!condition.list.empty()) shape += std::to_string(condition.list.size());
    }
    shape += statement.descending ? '>' : '<';
    shape += statement.order_by;
}

} // namespace tarvello::store
