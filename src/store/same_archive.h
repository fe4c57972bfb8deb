#pragma once

#include "text/regional_settings.h"

#include <string>

namespace tarvello::store {

/// True if an archive holds what another one held: if it is a later state of the same. Some rows may be
/// missing or changed, as users delete and mend some between two days; where more than one in ten is, or the
/// other file has other tables, its content would be lost with it.
/// @param now     a database that opens
/// @param before  likewise
bool holds_what_was_in(const std::string& now, const std::string& before, const RegionalSettings& regional);

} // namespace tarvello::store
