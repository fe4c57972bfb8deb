#pragma once

#include "store/engine.h"

#include <memory>
#include <string>

namespace tarvello::store {

/// Opens an SQLite file: rollback journal, full synchronisation, the engine's own locks. The file stays one
/// that any other SQLite program can read, write and check.
/// @param path  an existing file
/// @throws Failure if it is damaged or another program has locked it
std::unique_ptr<Engine> open_sqlite_engine(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
