#pragma once

#include <string>

namespace tarvello::store {

/// The version of the embedded engine, such as 3.40.1.
std::string sqlite_version();

} // namespace tarvello::store
