#pragma once

#include "store/access/usage_map.h"

#include <vector>

/// The pages that a table's definition lies on, as one text.
namespace tarvello::store::access {

/// @throws Failure if they are no definition
std::vector<std::uint8_t> read_definition_text(PageStore& store, PageNumber first);

/// Writes a text to the pages of a definition, which get more or fewer as it needs, and its length into it.
/// @param first  a page of its own, of whatever content
void write_definition_text(PageStore& store, PageAllocator& allocator, PageNumber first,
                           std::vector<std::uint8_t> text);

} // namespace tarvello::store::access
