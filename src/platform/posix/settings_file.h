#pragma once

#include "platform/platform.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace tarvello {

/// The user's settings in one file, a line each: application, section, key and value, parted by tabs; a
/// backslash starts \t, \n, \r, \0, \\, and \p for the program's directory: a route inside of it is found
/// again when the folder has moved. Lines that are none of these count for nothing.
///
/// All is held in memory: the file is read once. A write replaces it whole, so that a kill at any moment
/// leaves either the old file or the new one. Nobody but the user may read it.
class SettingsFile final : public SettingsStore {
public:
    /// @param path               full path; folders on the way to it are made with the first write
    /// @param program_directory  without a separator at its end; empty: all routes are kept as they are
    explicit SettingsFile(std::string path, std::string program_directory = {});

    std::optional<std::string> read(const std::string& application, const std::string& section,
                                    const std::string& key) override;
    void write(const std::string& application, const std::string& section, const std::string& key,
               const std::string& value) override;

private:
    using Address = std::tuple<std::string, std::string, std::string>;
    using AddressView = std::tuple<const std::string&, const std::string&, const std::string&>;

    void load();
    void save();
    std::optional<std::string> value_of(std::string_view field) const;
    std::string field_of(const std::string& value) const;

    std::string path_;
    std::string program_directory_;
    bool unread_ = false; ///< there is a file that could not be read
    std::map<Address, std::string, std::less<>> values_;
};

} // namespace tarvello
