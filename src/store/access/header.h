#pragma once

#include "store/access/bytes.h"
#include "store/access/format.h"

#include <string>
#include <string_view>

namespace tarvello::store::access {

/// True if a file that starts with these bytes is of Access, of whatever version. 20 bytes are enough.
bool is_access_file(std::string_view first_bytes);

/// Looks at the header of a file. @param path  for the messages
/// @throws Failure, each with its own words, if it is of a version that is not known, has a password, or is
///         encrypted
void check_header(Bytes header, const std::string& path);

/// The sort order of the file, as its columns bear it.
std::uint32_t sort_order(Bytes header);

/// The first page of a new file in the order "General", without a password.
/// @param created  days since the first day of the format
Page new_header(double created);

} // namespace tarvello::store::access
