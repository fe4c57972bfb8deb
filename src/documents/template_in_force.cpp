#include "documents/template_in_force.h"

#include <algorithm>

namespace tarvello {
namespace {

/// The next line of a text, without its end, which is taken from the text.
std::string_view take_line(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

} // namespace

std::string print_conf_of(const std::string& template_path) { return template_path + "\r\n"; }

std::string template_in_force(std::string_view content) {
    std::string path;
    while (!content.empty()) path += take_line(content);
    return path;
}

std::string template_on_view(std::string_view content) {
    std::string_view last;
    while (!content.empty()) {
        last = take_line(content);
        if (last.empty()) return {};
    }
    return std::string(last);
}

} // namespace tarvello
