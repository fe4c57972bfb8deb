#include "platform/posix/source_file.h"

#include "platform/posix/error_words.h"

#include <fcntl.h>
#include <sys/file.h>

namespace tarvello {
namespace {

/// How much is copied between two looks at the progress.
constexpr std::size_t piece = std::size_t{8} << 20;

Failure no_data(const std::string& path) {
    return {failure_number::file_access, "File",
            std::string(cannot_read) + " \"" + path + "\": non è un file di dati."};
}

} // namespace

SourceFile::SourceFile(const std::string& path) : path_(path) {
    // Looked at before it is opened: the opening alone may do something to a device.
    if (::stat(path.c_str(), &status_) != 0) throw failure(errno);
    if (S_ISDIR(status_.st_mode)) throw failure(EISDIR);
    if (!S_ISREG(status_.st_mode)) throw no_data(path);
    if (const int error = read_obstacle(path)) throw failure(error);
    file_ = Descriptor(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file_ || ::fstat(*file_, &status_) != 0) throw failure(errno);
    if (!S_ISREG(status_.st_mode)) throw no_data(path);
    // Whoever tidies up what a stopped program has left sees that this is in use.
    ::flock(*file_, LOCK_SH | LOCK_NB);
}

std::size_t SourceFile::read(std::vector<char>& into) const {
    const ssize_t got = uninterrupted([&] { return ::read(*file_, into.data(), into.size()); });
    if (got < 0) throw failure(errno);
    return static_cast<std::size_t>(got);
}

ssize_t SourceFile::copy_in_kernel(int to) const {
    return uninterrupted([&] { return ::copy_file_range(*file_, nullptr, to, nullptr, piece, 0); });
}

bool SourceFile::copy_to(int to, const std::string& target, const CopyProgress& progress) const {
    std::vector<char> buffer;
    std::uint64_t done = 0;
    for (;;) {
        if (progress && !progress(done, size())) return false;
        ssize_t copied = buffer.empty() ? copy_in_kernel(to) : -1;
        if (copied < 0) {
            // The kernel cannot for this pair of disks, or something has failed: through memory it shows on
            // which side.
            buffer.resize(piece);
            copied = static_cast<ssize_t>(read(buffer));
            if (const int error = write_all(to, buffer.data(), static_cast<std::size_t>(copied)))
                throw file_failure(error, cannot_write, target);
        }
        if (copied == 0) break;
        done += static_cast<std::uint64_t>(copied);
    }
    struct stat now {};
    if (::fstat(*file_, &now) != 0) throw failure(errno);
    if (done == size() && now.st_size == status_.st_size) return true;
    throw Failure(failure_number::file_access, "File",
                  "Il file \"" + path_ + "\" è cambiato mentre veniva copiato: la copia non è valida.");
}

Failure SourceFile::failure(int error) const { return file_failure(error, cannot_read, path_); }

} // namespace tarvello
