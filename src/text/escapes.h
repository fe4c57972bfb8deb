#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvello {

/// A text as one field of a line whose fields are parted by tabs: \t, \n, \r, \0 and \\ stand for what would
/// end it.
std::string escaped(std::string_view text);

/// The text of a field. @return nothing if it holds an escape that does not exist
std::optional<std::string> unescaped(std::string_view field);

} // namespace tarvello
