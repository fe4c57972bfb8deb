#pragma once

#include "store/engine.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvello::store {

/// Opens an SQLite file: rollback journal, full synchronisation, the engine's own locks. The file stays one
/// that any other SQLite program can read, write and check.
/// @param path  an existing file
/// @throws Failure if it is damaged or another program has locked it
std::unique_ptr<Engine> open_sqlite_engine(const std::string& path, const RegionalSettings& regional);

/// Makes an empty file an SQLite file with the tables of data/schema.sql. Nobody else knows of it yet and it
/// is thrown away as a whole if anything fails, so it has no journal; what commit() has ended is synced.
/// @throws Failure
std::unique_ptr<Engine> make_sqlite_engine(const std::string& path, const RegionalSettings& regional);

/// The tables of data/schema.sql.
std::vector<TableDeclaration> schema_tables();

} // namespace tarvello::store
