#pragma once

#include "text/dates.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {

/// What the disk knows about a file or a folder. Times are local; one that is not kept is missing.
struct FileFacts {
    bool folder = false;
    std::uint64_t size = 0;  ///< bytes; 0 for a folder
    bool read_only = false;  ///< this user may not write it
    bool compressed = false; ///< by the file system
    std::optional<DateTime> created;
    std::optional<DateTime> accessed;
    std::optional<DateTime> modified;
};

/// Tells how far a copy has come, in bytes. @return false to give it up
using CopyProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// A copy that is whole and on the disk, and lies beside its destination. It goes with the object if it never
/// takes its place.
class PendingCopy {
public:
    virtual ~PendingCopy() = default;
    /// Where it lies.
    virtual const std::string& path() const = 0;
    /// Where it goes: a link is followed to the file that it leads to.
    virtual const std::string& destination() const = 0;
    /// Takes the place of what may stand at the destination, durably and at once. @throws Failure
    virtual void place() = 0;
};

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
    /// The same for what nobody but the user is to read.
    virtual void write_private(const std::string& path, const std::string& content) = 0;

    /// Makes a folder that is nobody else's business, and those above it that are missing. @throws Failure
    virtual void make_folder(const std::string& path) = 0;

    /// Copies a file over what may stand at the destination: all or nothing, whatever happens to the program,
    /// the disk or the machine meanwhile. On disk when the call returns.
    /// @return false if `progress` gave it up: the destination is what it was
    /// @throws Failure if it could not be done: the destination is what it was
    virtual bool copy(const std::string& source, const std::string& destination,
                      const CopyProgress& progress = {}) = 0;

    /// The first half of a copy, for who wants to look at it before it replaces anything. Where it replaces
    /// nothing, nobody but the user may read it, whoever may read the source.
    /// @return null if `progress` gave it up
    /// @throws Failure; with failure_number::disk_full if the disk has no room for it beside what is there
    virtual std::unique_ptr<PendingCopy> prepare_copy(const std::string& source,
                                                      const std::string& destination,
                                                      const CopyProgress& progress = {}) = 0;
    /// Copies a file into the one that stands at the destination, for a disk that has no room for both. What
    /// stood there is lost from the start.
    /// @throws Failure if it could not be done to the end
    virtual void overwrite(const std::string& source, const std::string& destination,
                           const CopyProgress& progress = {}) = 0;
    /// Bytes that this user may still write on the disk that holds a path; 0 if that is not known.
    virtual std::uint64_t free_bytes(const std::string& path) = 0;

    /// Gives a file another name, durably: a second one, where the disk knows such, else in place of the
    /// first.
    /// @return false if that name is taken
    /// @throws Failure
    virtual bool keep_as(const std::string& path, const std::string& name) = 0;
    /// Takes files of one folder away, durably; those that are not there are no fault. @throws Failure
    virtual void remove(const std::vector<std::string>& paths) = 0;

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
