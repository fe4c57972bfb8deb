#pragma once

#include "text/dates.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace tarvello::store {

/// What a column holds.
enum class ColumnType : std::uint8_t { text, integer, number, date };

/// A value on its way into a row or into a comparison. monostate is null.
using Value = std::variant<std::monostate, std::int64_t, double, std::string, Date>;

/// A value of the current row, read where it lies: valid until the row source moves.
using ValueView = std::variant<std::monostate, std::int64_t, double, std::string_view, Date>;

} // namespace tarvello::store
