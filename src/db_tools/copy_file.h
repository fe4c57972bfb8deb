#pragma once

#include "platform/platform.h"

#include <functional>
#include <string>

namespace tarvello {

enum class CopyOutcome {
    made,
    given_up, ///< by the user, in the question or in the progress window: the destination is what it was
    failed,   ///< likewise
    spoilt    ///< failed after the user had agreed to give up the file at the destination
};

/// What a copy does when it has been agreed to.
/// @param target  the destination; a folder's name has got that of the source
/// @return false if `progress` gave it up
using CopyStep = std::function<bool(const std::string& target, const CopyProgress& progress)>;

/// What the user sees of a copy.
/// @param may_ask        asks the user before a file is replaced
/// @param show_progress  shows a window with the progress, and says why a copy failed
CopyOutcome run_copy(Platform& platform, const std::string& source, const std::string& destination,
                     bool may_ask, bool show_progress, const CopyStep& step);

/// Copies a file as the desktop does. The destination may be a folder: the copy takes the name of the source.
/// A database is copied by CopiaDatabase.
/// @return false if the copy could not be made. A copy that the user gave up counts as made.
bool CopiaFile(Platform& platform, const std::string& source, const std::string& destination,
               bool may_ask = false, bool show_progress = false);

} // namespace tarvello
