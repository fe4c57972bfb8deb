#pragma once

#include "text/regional_settings.h"

#include <string>

namespace tarvello::store {

/// Opens a database and lets it go again. What was cut short in it is undone by that.
/// @param notice  gets behind it what the user is to know of that; null for nothing
/// @return why it does not open, for the user; empty if it does
/// @throws Failure if another program is at work in it
std::string why_not_open(const std::string& path, const RegionalSettings& regional,
                         std::string* notice = nullptr);

/// Looks at a database from end to end, every value of every table.
/// @return what is wrong with it, for the user; empty if it is sound
std::string why_unsound(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
