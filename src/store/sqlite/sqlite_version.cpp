#include "store/sqlite/sqlite_version.h"

#include <sqlite3.h>

namespace tarvello::store {

std::string sqlite_version() { return sqlite3_libversion(); }

} // namespace tarvello::store
