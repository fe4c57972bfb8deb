#pragma once

#include <functional>
#include <string>

namespace tarvello {

class Program;

/// The folder of the templates, below the program's own.
std::string templates_folder(Program& program);

/// The same. @throws Failure if it is not there
std::string existing_templates_folder(Program& program);

/// Closes the shared results and opens the letterhead. Without one the user is told so, and the results are
/// closed again.
/// @return true if rsIntestazione stands on the letterhead
bool open_letterhead(Program& program);

/// Runs a step; its failure is shown to the user and ends there.
void or_show_failure(Program& program, const std::function<void()>& step);

} // namespace tarvello
