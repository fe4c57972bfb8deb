#pragma once

#include "platform/files.h"

namespace tarvello {

/// The files of a POSIX system.
class PosixFiles final : public Files {
public:
    std::optional<FileFacts> facts(const std::string& path) override;
    std::string full_path(const std::string& path) override;
    std::vector<std::string> files_in(const std::string& folder, const std::string& pattern) override;
    std::vector<std::string> folders_in(const std::string& folder) override;
    std::string read(const std::string& path) override;
    void write(const std::string& path, const std::string& content) override;
    void make_folder(const std::string& path) override;
    bool copy(const std::string& source, const std::string& destination,
              const CopyProgress& progress = {}) override;
};

} // namespace tarvello
