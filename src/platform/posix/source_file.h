#pragma once

#include "failure.h"
#include "platform/files.h"
#include "platform/posix/disk.h"

#include <string>
#include <vector>

#include <sys/stat.h>

namespace tarvello {

class NewFile;

/// A file that is read. Only a regular one: a pipe or a device would keep the program waiting.
class SourceFile {
public:
    /// @throws Failure if there is no such file, or this user may not read it
    explicit SourceFile(const std::string& path);

    /// The file as it was when it was opened.
    const struct stat& status() const { return status_; }
    std::uint64_t size() const { return static_cast<std::uint64_t>(status_.st_size); }

    /// Reads on. @return bytes read, 0 at the end  @throws Failure
    std::size_t read(std::vector<char>& into) const;

    /// Copies all of it to where `to` stands.
    /// @param target  the name of `to` in messages
    /// @return false if `progress` gave it up
    /// @throws Failure that names the side that failed; also if the file has not stayed as long as it was
    bool copy_to(int to, const std::string& target, const CopyProgress& progress) const;

private:
    Failure failure(int error) const;
    /// @return bytes copied, 0 at the end, -1 if it has to be done through memory
    ssize_t copy_in_kernel(int to) const;

    std::string path_;
    Descriptor file_;
    struct stat status_ {};
};

} // namespace tarvello
