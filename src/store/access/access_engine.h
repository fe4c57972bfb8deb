#pragma once

#include "store/access/file.h"
#include "store/engine.h"

#include <memory>
#include <string>

namespace tarvello::store {

/// Opens a file of Access 2000-2003, which stays one. See docs/access_engine.md.
/// @param watch  asked before every call that reaches the disk; may be null, else it outlives the engine
/// @throws Failure if it is of another version, has a password, is encrypted, damaged, or another program has
/// it
std::unique_ptr<Engine> open_access_engine(const std::string& path, const RegionalSettings& regional,
                                           access::FileWatch* watch = nullptr);

/// Makes a new Access file without tables, for create_table and fill. Nobody else knows of it yet and it is
/// given up as a whole if anything fails, so that it needs no journal; what commit() has ended is synced.
/// @param path  of an empty file, or of none
/// @throws Failure
std::unique_ptr<Engine> make_access_engine(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
