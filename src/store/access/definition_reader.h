#pragma once

#include "store/access/page_store.h"
#include "store/access/table_definition.h"

#include <string>

namespace tarvello::store::access {

/// @throws Failure if the page holds no sound definition
TableDefinition read_table_definition(PageStore& store, PageNumber page, std::string name);

} // namespace tarvello::store::access
