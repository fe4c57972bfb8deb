#pragma once

#include <string>
#include <string_view>

/// The file in the folder of the templates that names the template in force, in its one line.
namespace tarvello {

inline const std::string print_conf = "print.conf";

/// What the file holds for the path of a template.
std::string print_conf_of(const std::string& template_path);

/// The path as documents take it: all lines, with nothing between them.
std::string template_in_force(std::string_view content);

/// The path as the letterhead shows it: the last line. Nothing if there is an empty line, which ends the
/// reading, or no line at all.
std::string template_on_view(std::string_view content);

} // namespace tarvello
