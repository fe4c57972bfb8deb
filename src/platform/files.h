#pragma once

#include "text/dates.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {

/// What the disk knows about a file or a folder. Times are local; one that is not kept is missing.
struct FileFacts {
    bool folder = false;
    std::uint64_t size = 0; ///< bytes; 0 for a folder
    bool read_only = false; ///< this user may not write it
    bool compressed = false; ///< by the file system
    std::optional<DateTime> created;
    std::optional<DateTime> accessed;
    std::optional<DateTime> modified;
};

/// Tells how far a copy has come, in bytes. @return false to give it up
using CopyProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// Files and folders. Paths are absolute. Failures say in Italian what could not be done and why.
class Files {
public:
    /// @return nothing if there is nothing of that name
    virtual std::optional<FileFacts> facts(const std::string& path) = 0;
    bool exists(const std::string& path) { return facts(path).has_value(); }
    bool folder_exists(const std::string& path) {
        const auto found = facts(path);
        return found && found->folder;
    }

    /// The path without "." and "..", without doubled separators, from the root.
    virtual std::string full_path(const std::string& path) = 0;

    /// Names of the files of a folder, without path, in the order of an index, regardless of letter case.
    /// None if the folder cannot be read.
    /// @param pattern  such as "*.rtf", without regard to letter case; "*" for all
    virtual std::vector<std::string> files_in(const std::string& folder, const std::string& pattern) = 0;
    /// Names of the folders inside a folder, in the same order.
    virtual std::vector<std::string> folders_in(const std::string& folder) = 0;

    /// The whole content of a file. @throws Failure
    virtual std::string read(const std::string& path) = 0;

    /// Gives a file this content: all of it, on disk when the call returns, or else the file is what it was.
    /// @throws Failure
    virtual void write(const std::string& path, const std::string& content) = 0;

    /// Makes a folder, and those above it that are missing. @throws Failure
    virtual void make_folder(const std::string& path) = 0;

    /// Copies a file over what may stand at the destination: all or nothing, whatever happens to the program,
    /// the disk or the machine meanwhile. On disk when the call returns.
    /// @return false if `progress` gave it up: the destination is what it was
    /// @throws Failure if it could not be done: the destination is what it was
    virtual bool copy(const std::string& source, const std::string& destination,
                      const CopyProgress& progress = {}) = 0;

protected:
    ~Files() = default;
};

/// What the user sees of a copy.
class CopyDialog {
public:
    /// Asks whether a file that stands at the destination may be replaced.
    virtual bool may_replace(const std::string& destination) = 0;
    /// Opens the progress window, which has a button to give up.
    virtual void begin(const std::string& title) = 0;
    /// @return false once the user has given up, or the program ends
    virtual bool advance(std::uint64_t done, std::uint64_t total) = 0;
    virtual void end() = 0;
    /// Says that the copy could not be made.
    virtual void report_failure(const std::string& description) = 0;

protected:
    ~CopyDialog() = default;
};

} // namespace tarvello
