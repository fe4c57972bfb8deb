#pragma once

#include "platform/platform.h"

#include <map>
#include <string>
#include <tuple>

namespace tarvello::qt {

/// The user's settings in one file, a line each: application, section, key and value, parted by tabs; a
/// backslash starts \t, \n, \r, \0 and \\. Lines that are none of these count for nothing.
///
/// All is held in memory: the file is read once. A write replaces it whole, so that a kill at any moment
/// leaves either the old file or the new one.
class SettingsFile final : public SettingsStore {
public:
    /// @param path  full path; folders on the way to it are made with the first write
    explicit SettingsFile(std::string path);

    /// The file of this user.
    static std::string usual_path();

    std::optional<std::string> read(const std::string& application, const std::string& section,
                                    const std::string& key) override;
    void write(const std::string& application, const std::string& section, const std::string& key,
               const std::string& value) override;

private:
    using Address = std::tuple<std::string, std::string, std::string>;
    using AddressView = std::tuple<const std::string&, const std::string&, const std::string&>;

    void load();
    void save() const;

    std::string path_;
    std::map<Address, std::string, std::less<>> values_;
};

} // namespace tarvello::qt
