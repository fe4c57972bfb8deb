#pragma once

/// The names of the user's files in the program's directory.
namespace tarvello::file_name {

inline constexpr const char* database = "tarvello.mdb"; ///< unless the user chooses another
inline constexpr const char* backup = "tarvello.bak";   ///< likewise
inline constexpr const char* municipalities = "Comuni.mdb";
inline constexpr const char* templates = "modelli";   ///< a folder
inline constexpr const char* working_copies = "temp"; ///< a folder

} // namespace tarvello::file_name
