#pragma once

#include "failure.h"

#include <string>

namespace tarvello {

/// What an error number of the system means to the user, to stand behind a colon: "è una cartella".
std::string error_words(int error);

inline constexpr const char* cannot_read = "Impossibile leggere il file";
inline constexpr const char* cannot_write = "Impossibile scrivere il file";

/// The failure of something done to a file: `what` such as cannot_read, the path, and the
/// words of the error. A disk without room and a file that is not there have numbers of their own.
Failure file_failure(int error, const std::string& what, const std::string& path);

} // namespace tarvello
