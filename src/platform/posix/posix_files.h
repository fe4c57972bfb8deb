#pragma once

#include "platform/files.h"

namespace tarvello {

/// The files of a POSIX system.
class PosixFiles : public Files {
public:
    virtual ~PosixFiles() = default;
    std::optional<FileFacts> facts(const std::string& path) override;
    std::string full_path(const std::string& path) override;
    std::vector<std::string> files_in(const std::string& folder, const std::string& pattern) override;
    std::vector<std::string> folders_in(const std::string& folder) override;
    std::string read(const std::string& path) override;
    void write(const std::string& path, const std::string& content) override;
    void write_private(const std::string& path, const std::string& content) override;
    void make_folder(const std::string& path) override;
    bool copy(const std::string& source, const std::string& destination,
              const CopyProgress& progress = {}) override;
    std::unique_ptr<PendingCopy> prepare_copy(const std::string& source, const std::string& destination,
                                              const CopyProgress& progress = {}) override;
    void overwrite(const std::string& source, const std::string& destination,
                   const CopyProgress& progress = {}) override;
    std::uint64_t free_bytes(const std::string& path) override;
    bool keep_as(const std::string& path, const std::string& name) override;
    void remove(const std::vector<std::string>& paths) override;
};

} // namespace tarvello
