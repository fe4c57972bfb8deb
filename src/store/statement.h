#pragma once

#include "store/value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The SQL of the program, read into plain data. One statement, nothing after it:
///
///     SELECT [TOP n] * FROM table [WHERE conditions] [ORDER BY column [ASC|DESC]]
///     INSERT INTO table (columns) VALUES (literals)
///     UPDATE table SET column=literal, ... [WHERE conditions]
///     DELETE * FROM table [WHERE conditions]
///
/// Conditions are `column op literal` or `column IN (literals)` joined by AND; op is one of = <> < > <= >=
/// LIKE. A literal is a number, a text between apostrophes, in which two apostrophes stand for one, or a ?,
/// whose value comes beside the text and so cannot break it; see bind_parameters. Key words, tables and
/// columns are known without regard to case; names may hold any letters.
namespace tarvello::store {

enum class Comparison : std::uint8_t {
    equal,
    not_equal,
    less,
    greater,
    less_or_equal,
    greater_or_equal,
    like,
    in
};

struct Literal {
    std::string text;    ///< as written, apostrophes undoubled
    bool quoted = false; ///< a text; else a number
    /// Of a ?: what the caller gave. A text that was given is a quoted literal like any other.
    std::optional<Value> value{};
    bool operator==(const Literal&) const = default;
};

struct Condition {
    std::string column;
    Comparison comparison = Comparison::equal;
    Literal literal;
    std::vector<Literal> list{}; ///< of IN, in place of the literal; at least one
    bool operator==(const Condition&) const = default;
};

struct Assignment {
    std::string column;
    Literal literal;
    bool operator==(const Assignment&) const = default;
};

enum class StatementKind : std::uint8_t { select, insert, update, remove };

struct Statement {
    StatementKind kind = StatementKind::select;
    std::string table;
    std::optional<std::int64_t> top;     ///< SELECT: at most so many rows
    std::vector<Assignment> assignments; ///< INSERT, UPDATE
    std::vector<Condition> conditions;   ///< all must hold
    std::string order_by;                ///< SELECT: a column; empty for the natural order
    bool descending = false;
    bool operator==(const Statement&) const = default;
};

/// Reads a statement.
/// @throws Failure, in Italian, that says what is wrong and at which character, counted from 1
Statement parse_statement(std::string_view sql);

/// Gives the ? of a statement their values, in the order in which they stand in its text.
/// @throws Failure if there are fewer values than ?, or more; or if what LIKE gets is no text
void bind_parameters(Statement& statement, std::span<const Value> values);

/// True if the dialect can say this name of a table or column as it stands.
bool is_plain_name(std::string_view name);

} // namespace tarvello::store
