#pragma once

#include "store/access/bytes.h"

#include <string>
#include <string_view>

namespace tarvello::store::access {

/// True if a file that starts with these bytes is of Access, of whatever version. 20 bytes are enough.
bool is_access_file(std::string_view first_bytes);

/// Looks at the header of a file. @param path  for the messages
/// @throws Failure, each with its own words, if it is of a version that is not known, has a password, or is
///         encrypted
void check_header(Bytes header, const std::string& path);

} // namespace tarvello::store::access
