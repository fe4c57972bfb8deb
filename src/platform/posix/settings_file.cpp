#include "platform/posix/settings_file.h"

#include "failure.h"
#include "platform/posix/new_file.h"
#include "platform/posix/posix_files.h"
#include "text/escapes.h"

#include <algorithm>
#include <array>

namespace tarvello {
namespace {

/// Stands for the program's directory at the start of a value.
constexpr std::string_view directory_mark = "\\p";
/// Editors of other systems leave it at the start of a file.
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// @return false if the line is none of so many fields
bool split(std::string_view line, std::array<std::string_view, 4>& fields) {
    if (std::count(line.begin(), line.end(), '\t') != 3) return false;
    for (std::string_view& field : fields) {
        field = line.substr(0, line.find('\t'));
        line.remove_prefix(std::min(field.size() + 1, line.size()));
    }
    return true;
}

} // namespace

SettingsFile::SettingsFile(std::string path, std::string program_directory)
    : path_(std::move(path)), program_directory_(std::move(program_directory)) {
    load();
}

std::optional<std::string> SettingsFile::value_of(std::string_view field) const {
    if (!field.starts_with(directory_mark)) return unescaped(field);
    const auto inside = unescaped(field.substr(directory_mark.size()));
    return inside ? std::optional(program_directory_ + *inside) : std::nullopt;
}

std::string SettingsFile::field_of(const std::string& value) const {
    if (program_directory_.empty() || !value.starts_with(program_directory_ + "/")) return escaped(value);
    return std::string(directory_mark) + escaped(std::string_view(value).substr(program_directory_.size()));
}

void SettingsFile::load() {
    PosixFiles files;
    std::string content;
    try {
        content = files.read(path_);
    } catch (const Failure&) { // none yet, or not to be read: a first run
        unread_ = files.exists(path_);
        return;
    }
    std::string_view rest = content;
    if (rest.starts_with(byte_order_mark)) rest.remove_prefix(byte_order_mark.size());
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        // One that stands here is of an editor that ends lines so; a value's own is escaped.
        if (line.ends_with('\r')) line.remove_suffix(1);
        std::array<std::string_view, 4> fields;
        if (!split(line, fields)) continue;
        const auto application = unescaped(fields[0]);
        const auto section = unescaped(fields[1]);
        const auto key = unescaped(fields[2]);
        const auto value = value_of(fields[3]);
        if (application && section && key && value) values_[{*application, *section, *key}] = *value;
    }
}

std::optional<std::string> SettingsFile::read(const std::string& application, const std::string& section,
                                              const std::string& key) {
    const auto found = values_.find(AddressView(application, section, key));
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void SettingsFile::write(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
    values_[{application, section, key}] = value;
    // Settings never stop the program: what could not be written now is written with the next one.
    skip_failures([&] { save(); });
}

void SettingsFile::save() {
    std::string content;
    for (const auto& [address, value] : values_) {
        const auto& [application, section, key] = address;
        content += escaped(application) + '\t' + escaped(section) + '\t' + escaped(key) + '\t' +
                   field_of(value) + '\n';
    }
    make_folders(folder_of(path_), private_folder);
    if (unread_) PosixFiles().keep_as(path_, path_ + "-non-letto"); // it may be read again on a better day
    unread_ = false;
    NewFile file(path_, private_file);
    file.write(content);
    file.finish();
    file.place();
}

} // namespace tarvello
