#pragma once

#include <string>

namespace tarvello::qt {

/// The folder of the program's data. It is where the executable lies, if the data lies there too and the user
/// can write there: a folder that can be carried on a stick. Else it is one of the user's own, which is
/// filled on the first start from what was installed.
/// @param executable_folder  where the executable lies
/// @param users_folder       the one of the user's own; made if it is needed and does not exist
std::string program_directory(const std::string& executable_folder, const std::string& users_folder);

} // namespace tarvello::qt
