#pragma once

#include "text/amount.h"
#include "text/dates.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace tarvello::store {

/// What a column holds.
enum class ColumnType : std::uint8_t { text, integer, number, date, currency, yes_no };

/// A value on its way into a row or into a comparison. monostate is null.
using Value = std::variant<std::monostate, std::int64_t, double, std::string, Date, Amount, bool>;

/// A value of the current row, read where it lies: valid until the row source moves.
using ValueView = std::variant<std::monostate, std::int64_t, double, std::string_view, Date, Amount, bool>;

/// The same value; valid as long as the value is.
inline ValueView view_of(const Value& value) {
    return std::visit([](const auto& held) { return ValueView(held); }, value);
}

} // namespace tarvello::store
