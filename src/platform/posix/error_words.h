#pragma once

#include "failure.h"

#include <string>

namespace tarvello {

/// What an error number of the system means to the user, to stand behind a colon: "il disco è pieno".
std::string error_words(int error);

/// The failure of something done to a file: `what` such as "Impossibile leggere il file", the path, and the
/// words of the error. A disk without room and a file that is not there have numbers of their own.
Failure file_failure(int error, const std::string& what, const std::string& path);

} // namespace tarvello
