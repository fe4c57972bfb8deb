#pragma once

#include "store/access/page_store.h"

namespace tarvello::store::access {

/// Fills a file that has no page yet with what every Access file has: the header, the maps, the four tables
/// of the catalogue and the rows that they start with. Within a change of the store.
void fill_empty_file(PageStore& store);

} // namespace tarvello::store::access
