#pragma once

struct sqlite3;

namespace tarvello::store::sqlite {

/// The collation of an index on names: without regard to letter case, in all of Unicode.
inline constexpr const char* folded_collation = "TARVELLO_FOLD";

/// Makes the collation known to a connection. Both who writes such an index and who reads it need it.
/// @return a result code of SQLite
int add_folded_collation(sqlite3* database);

} // namespace tarvello::store::sqlite
