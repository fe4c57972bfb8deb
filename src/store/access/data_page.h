#pragma once

#include "store/access/bytes.h"
#include "store/access/format.h"

/// The rows of a data page. They grow from the end of the page down: row i ends where row i-1 starts. A row's
/// number never changes; a deleted one keeps its slot.
namespace tarvello::store::access::data_page {

using namespace format::data;

bool is_data_page(const Page& page);
std::uint32_t owner(const Page& page);
/// @throws Failure if it has more than fit
std::uint32_t row_count(const Page& page);
/// The flags of a row's slot. @throws Failure if there is no such row
std::uint32_t flags(const Page& page, std::uint32_t row);
/// The bytes of a row, whatever its flags. @throws Failure if there is no such row
Bytes row(const Page& page, std::uint32_t row);
std::uint32_t free_bytes(const Page& page);
/// True if the page can take a new row of that size.
bool has_room(const Page& page, std::size_t size);
/// True if no row is left that is not deleted.
bool all_deleted(const Page& page);

/// Makes an empty data page.
void clear(Page& page, std::uint32_t owner);
/// Adds a row; there must be room. @return its number
std::uint8_t add(Page& page, Bytes row, std::uint32_t flags = 0);
/// Gives the row `size` bytes, moving those below it; the room must be there. The bytes of the row are
/// rubbish after it.
/// @return the place of its first byte
std::size_t resize(Page& page, std::uint32_t row, std::size_t size);
void set_flags(Page& page, std::uint32_t row, std::uint32_t flags);
/// Deletes a row and frees its bytes.
void erase(Page& page, std::uint32_t row);

} // namespace tarvello::store::access::data_page
