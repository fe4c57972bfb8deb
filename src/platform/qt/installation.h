#pragma once

#include <string>

namespace tarvello::qt {

/// Where the executable of this process lies.
std::string executable_folder();

/// Where this user's data lie if not there. The folder need not be there yet.
std::string users_directory();

/// The folder of what came with the program and stays as it is: the pictures, the guide, the licences, and
/// under "originali" what the user's own folder is filled from. It is where the executable lies (the build
/// folder, a portable folder), or share/tarvello beside the folder of an installed executable.
/// @param executable_folder  where the executable lies
std::string shipped_directory(const std::string& executable_folder);

/// An executable or a library of the program's own: beside the executable, or libexec/tarvello beside the
/// folder of an installed executable. If it is in neither place, the first of them.
/// @param executable_folder  where the executable lies
/// @param name               file name
std::string private_file(const std::string& executable_folder, const std::string& name);

/// The folder of the program's data. It is where the executable lies, if what came with the program lies
/// there too and the user can write there: a folder that can be carried on a stick. Else it is one of the
/// user's own.
/// @param executable_folder  where the executable lies
/// @param users_folder       the one of the user's own
std::string program_directory(const std::string& executable_folder, const std::string& users_folder);

/// Fills the folder of the program's data on the first start, see platform/posix/first_fill.h. Only for the
/// one copy of the program that goes on.
/// @param directory  what program_directory() has said
void fill_program_directory(const std::string& executable_folder, const std::string& directory);

/// The file of this user's settings.
std::string settings_path();

/// The folder of what is kept for this user from one session to the next and is no setting.
std::string state_directory();

} // namespace tarvello::qt
