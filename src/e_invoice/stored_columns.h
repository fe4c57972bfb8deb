#pragma once

#include "store/database.h"
#include "store/declaration.h"
#include "text/letter_case.h"

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// A record and the columns it is kept in, told once: a function `columns(visitor, record)` names each column
/// with the member it goes to, and three visitors make of it the declaration of the table, the values of a
/// statement, and the record again. Empty texts and dates are kept as null.
namespace tarvello::e_invoice {

/// Makes the columns of a table.
class ColumnList {
public:
    std::vector<store::ColumnDeclaration> columns;

    void text(const char* name, const std::string&, std::size_t width) {
        columns.push_back({name, store::ColumnKind::text, width});
    }
    void memo(const char* name, const std::string&) { columns.push_back({name, store::ColumnKind::memo}); }
    void lines(const char* name, const std::vector<std::string>&) {
        columns.push_back({name, store::ColumnKind::memo});
    }
    void yes(const char* name, bool) { columns.push_back({name, store::ColumnKind::yes_no}); }
    template <typename Number>
    void whole(const char* name, const Number&) {
        columns.push_back({name, store::ColumnKind::whole});
    }
    void date(const char* name, const std::optional<Date>&) {
        columns.push_back({name, store::ColumnKind::date});
    }
    void cents(const char* name, const std::optional<std::int64_t>&) {
        columns.push_back({name, store::ColumnKind::currency});
    }
};

/// Collects the values of a record for INSERT and UPDATE.
class ColumnValues {
public:
    std::vector<std::string> names;
    Parameters values;

    void text(const char* name, const std::string& text, std::size_t) { memo(name, text); }
    void memo(const char* name, const std::string& text) {
        add(name, text.empty() ? store::Value() : store::Value(text));
    }
    void lines(const char* name, const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
        memo(name, text);
    }
    void yes(const char* name, bool yes) { add(name, yes); }
    template <typename Number>
    void whole(const char* name, const Number& number) {
        add(name, static_cast<std::int64_t>(number));
    }
    void date(const char* name, const std::optional<Date>& date) {
        add(name, date ? store::Value(*date) : store::Value());
    }
    void cents(const char* name, const std::optional<std::int64_t>& cents) {
        add(name, cents ? store::Value(Amount::of_cents(*cents)) : store::Value());
    }

    void insert(Connection& connection, const std::string& table) const {
        std::string columns;
        std::string marks;
        for (const std::string& name : names) {
            columns += (columns.empty() ? "" : ",") + name;
            marks += marks.empty() ? "?" : ",?";
        }
        connection.execute("INSERT INTO " + table + " (" + columns + ") VALUES (" + marks + ")", values);
    }
    /// @param condition  such as "ID=?", with its value
    void update(Connection& connection, const std::string& table, const std::string& condition,
                store::Value key) const {
        std::string assignments;
        for (const std::string& name : names) assignments += (assignments.empty() ? "" : ",") + name + "=?";
        Parameters all = values;
        all.push_back(std::move(key));
        connection.execute("UPDATE " + table + " SET " + assignments + " WHERE " + condition, all);
    }

private:
    void add(const char* name, store::Value value) {
        names.emplace_back(name);
        values.push_back(std::move(value));
    }
};

/// Fills a record from the row on which a result stands.
class ColumnReader {
public:
    explicit ColumnReader(const Recordset& row) : row_(row) {}

    void text(const char* name, std::string& text, std::size_t) { memo(name, text); }
    void memo(const char* name, std::string& text) { text = row_.text_or_empty(name); }
    void lines(const char* name, std::vector<std::string>& lines) {
        lines.clear();
        std::istringstream text(row_.text_or_empty(name));
        for (std::string line; std::getline(text, line);) lines.push_back(line);
    }
    void yes(const char* name, bool& yes) { yes = !row_.is_null(name) && row_.yes(name); }
    template <typename Number>
    void whole(const char* name, Number& number) {
        if (!row_.is_null(name)) number = static_cast<Number>(row_.whole(name));
    }
    void date(const char* name, std::optional<Date>& date) {
        date = row_.is_null(name) ? std::nullopt : std::optional(row_.date(name));
    }
    void cents(const char* name, std::optional<std::int64_t>& cents) {
        constexpr std::int64_t of_a_cent = 100;
        cents.reset();
        if (!row_.is_null(name)) cents = row_.amount(name).ten_thousandths / of_a_cent;
    }

private:
    const Recordset& row_;
};

} // namespace tarvello::e_invoice
