#pragma once

#include "store/access/page_store.h"
#include "store/engine.h"

#include <vector>

namespace tarvello::store::access {

/// What tables of the user a file holds, in words that every engine understands.
std::vector<StoredTable> stored_tables(PageStore& store);

} // namespace tarvello::store::access
