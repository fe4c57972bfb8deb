#pragma once

#include "store/like_pattern.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tarvello::store {

/// What the engine's statements use beyond SQLite's own means. It lives on the connection alone: a schema
/// that held any of it could not be read by other programs.
///
/// - the collation `ignoring_case`, letter case folded in all of Unicode
/// - the function `matches(column, ?)`, whose second argument is bound by bind_pattern
void register_sqlite_functions(sqlite3* handle);

/// @param index  of the parameter, from 1; the statement owns the pattern until it is bound anew
/// @return a result code of SQLite
int bind_pattern(sqlite3_stmt* statement, int index, LikePattern pattern);

} // namespace tarvello::store
