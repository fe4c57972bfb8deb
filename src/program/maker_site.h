#pragma once

#include <string>
#include <string_view>

namespace tarvello {

/// The host of the maker's site, fixed when the program is built.
std::string maker_host();

/// The address of a page on the maker's site.
/// @param path  from the root of the site; its backslashes become slashes
std::string maker_address(std::string_view path);

} // namespace tarvello
