#pragma once

#include "store/declaration.h"
#include "store/statement.h"
#include "store/value.h"
#include "text/regional_settings.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the engines share: the names of a statement looked up in a table, its literals made values.
namespace tarvello::store {

struct Column {
    std::string name;
    ColumnType type = ColumnType::text;
    std::size_t width = 0; ///< of a text, in UTF-16 units; 0 for no limit
};

struct Table {
    std::string name; ///< as the file spells it
    std::vector<Column> columns;
    std::optional<std::size_t> key; ///< the column that is the primary key

    /// The place of a column, known without regard to case. @throws Failure if there is none of that name
    std::size_t place_of(std::string_view column) const;
};

/// Where the columns that a statement names lie in its table.
struct Places {
    std::vector<std::size_t> assignments; ///< one for each of the statement's
    std::vector<std::size_t> conditions;
    std::optional<std::size_t> order_by;
};

/// @throws Failure if the table lacks a column, or one is written to twice
Places find_places(const Statement& statement, const Table& table);

/// The value of a literal that is written to a column of that type: what the alternative of Value for it is,
/// or null. Numbers in an integer column are rounded half to even, those in a currency column too, to
/// ten-thousandths. A quoted number may be plain (12.5) or as the regional settings write it (1.234,5). Any
/// number but 0 is a yes.
/// @throws Failure (type mismatch) if the text does not convert, the empty one too where no text is asked
///         for; (overflow) if the column has no room for the number, which is 32 bits wide in an integer one,
///         or for the text
Value convert_literal(const Literal& literal, const Column& column, const RegionalSettings& regional);

/// The same for a value of any kind: a text as a quoted literal, a text column takes the text that the forms
/// see. No value at all is a no in a yes/no column, else null.
Value convert_value(const ValueView& value, const Column& column, const RegionalSettings& regional);

/// The value of a literal that a column of that type is compared with: as convert_literal, but a number stays
/// what it is, so that ID<12.5 holds for 12; a currency column is compared with an Amount, or with a double
/// that is none. Nothing compares with null.
Value convert_comparand(const Literal& literal, const Column& column, const RegionalSettings& regional);

/// A value as the text that the forms see: numbers without thousands separators and with the decimal mark of
/// the regional settings, dates in their short form, null as the empty text, yes and no as Access numbers
/// them, -1 and 0.
std::string value_text(const ValueView& value, const RegionalSettings& regional);

/// What the values of a declared column are.
ColumnType type_of(ColumnKind kind);

/// The failure of a text that a column has no room for.
[[noreturn]] void fail_for_width(std::string_view column, std::size_t width);

/// The failure of a name that the database does not have.
[[noreturn]] void fail_for_missing_table(std::string_view name);

} // namespace tarvello::store
