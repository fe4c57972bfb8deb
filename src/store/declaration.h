#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a table is made of, in words that every engine understands. The program declares its own tables so,
/// and what a file holds is told so:
///
///     const TableDeclaration payments{
///         "Pagamenti",
///         {{"ID", ColumnKind::autonumber}, {"Fattura", ColumnKind::whole}, {"Data", ColumnKind::date},
///          {"Importo", ColumnKind::currency}, {"Mezzo", ColumnKind::text, 40}, {"Note", ColumnKind::memo}},
///         {"ID"},
///         {{"Pagamenti_Fattura", {"Fattura"}}}};
///     connection.need_table(payments);
namespace tarvello::store {

/// autonumber: a whole number that the engine gives, never twice; at most one, and alone the primary key.
/// whole: 32 bits. number: a double, for rates and measures; never for money. text: up to its width. memo: a
/// text of any length, which no index is on. currency: an Amount. date: a day. yes_no: a bool, never null.
enum class ColumnKind : std::uint8_t { autonumber, whole, number, text, memo, currency, date, yes_no };

struct ColumnDeclaration {
    std::string name;
    ColumnKind kind = ColumnKind::text;
    /// Of a text, in UTF-16 units as Access counts them: 1 to 255. 0 in what a file holds: no limit is known.
    std::size_t width = 0;
    bool operator==(const ColumnDeclaration&) const = default;
};

struct IndexDeclaration {
    std::string name; ///< no other index of the file has it
    std::vector<std::string> columns;
    /// No two rows have the same key. Texts that differ in case alone are the same key, in the letters a to z
    /// at least. A key of nulls may repeat; one that is null in part is refused by Access files.
    bool unique = false;
    bool operator==(const IndexDeclaration&) const = default;
};

struct TableDeclaration {
    std::string name;
    std::vector<ColumnDeclaration> columns;
    std::vector<std::string> primary_key; ///< its columns, which are never null; empty for none
    std::vector<IndexDeclaration> indexes;
    /// The autonumber given last: the next one lies above it and above every key.
    std::int64_t last_autonumber = 0;
    bool operator==(const TableDeclaration&) const = default;

    /// The column of that name, without regard to case; null if there is none.
    const ColumnDeclaration* find(std::string_view column) const;
};

inline constexpr std::size_t most_text_width = 255;

/// @throws Failure that says what no engine could make of it: names that the dialect cannot say or longer
///         than 64 characters, names that come twice, a width outside 1 to 255, a key or index over a column
///         that is not there or a memo, an autonumber that is not alone the primary key
void check_declaration(const TableDeclaration& table);

} // namespace tarvello::store
