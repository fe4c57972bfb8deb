#pragma once

#include "failure.h"
#include "platform/posix/disk.h"

#include <string>

#include <sys/types.h>

namespace tarvello {

/// Rights of what nobody but the user is to see: settings, archives, their copies.
inline constexpr mode_t private_file = 0600;
inline constexpr mode_t private_folder = 0700;

/// A file in the making. It lies beside its destination until it takes its place, as a whole and at once:
/// nothing of it is seen before. It goes with the object if it was never placed; what a kill leaves is taken
/// away by the next one with the same destination.
class NewFile {
public:
    /// @param destination  a link there stays: what it leads to is replaced
    /// @param rights       of a file that is new, less what the user's umask takes away; one that is replaced
    ///                     hands its own on
    /// @throws Failure if the destination is no regular file, is read-only, or a link that leads nowhere
    NewFile(const std::string& destination, mode_t rights);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// The destination, where it is a link the file that it leads to.
    const std::string& destination() const { return destination_; }
    /// Where the file lies until it is placed.
    const std::string& path() const { return path_; }
    int descriptor() const { return *file_; }

    /// @throws Failure
    void write(const std::string& content);
    /// Nothing more is written: what there is goes to the disk, and the file is closed. @throws Failure
    void finish();
    /// Puts the finished file in its place, durably.
    /// @throws Failure: then the destination is what it was, unless it was the folder that could not be
    ///         written to the disk
    void place();

    /// What to throw for an error in writing it.
    Failure failure(int error) const;

private:
    void create(mode_t rights);
    bool create_at(const std::string& path, mode_t rights);

    std::string destination_;
    std::string path_;
    Descriptor file_;
    bool placed_ = false;
};

} // namespace tarvello
