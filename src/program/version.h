#pragma once

#include <string>

namespace tarvello {

/// Major, minor and revision, joined by points.
std::string version_text();

/// The program's name among the settings of the user.
inline const std::string application_name = "Tarvello";

} // namespace tarvello
