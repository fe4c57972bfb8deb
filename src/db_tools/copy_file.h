#pragma once

#include "platform/platform.h"

#include <string>

namespace tarvello {

/// Copies a file as the desktop does. The destination may be a folder: the copy takes the name of the source.
/// @param may_ask        asks the user before a file is replaced
/// @param show_progress  shows a window with the progress, and says why a copy failed
/// @return false if the copy could not be made. A copy that the user gave up, in the question or in the
///         progress window, counts as made; the destination is then what it was.
bool CopiaFile(Platform& platform, const std::string& source, const std::string& destination,
               bool may_ask = false, bool show_progress = false);

} // namespace tarvello
