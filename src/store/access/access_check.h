#pragma once

#include "store/access/page_store.h"

namespace tarvello::store::access {

/// Looks at every row of every table of the user and at every entry of their indexes: each row can be read,
/// and its indexes know it and no others.
/// @throws Failure that says what is wrong
void check_tables(PageStore& store);

} // namespace tarvello::store::access
