#pragma once

#include <string>

namespace tarvello::store {

/// Looks at an SQLite file from end to end, its indexes too. @throws Failure that says what is wrong
void check_sqlite_file(const std::string& path);

} // namespace tarvello::store
