#pragma once

#include "text/regional_settings.h"

#include <string>

namespace tarvello::store {

/// Opens a database and lets it go again. What was cut short in it is undone by that.
/// @return why it does not open, for the user; empty if it does
/// @throws Failure if another program is at work in it
std::string why_not_open(const std::string& path, const RegionalSettings& regional);

/// Looks at a database from end to end.
/// @return what is wrong with it, for the user; empty if it is sound
std::string why_unsound(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
