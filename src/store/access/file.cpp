#include "store/access/file.h"

#include "platform/posix/disk.h"
#include "platform/posix/error_words.h"
#include "store/access/failures.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvello::store::access {
namespace {

[[noreturn]] void fail_with(const std::string& path, const std::string& what, int error) {
    throw Failure(access_failure::file, source,
                  what + " del file \"" + path + "\" non riuscita: " + error_words(error) + ".");
}

} // namespace

File::File(std::string path, Mode mode, FileWatch* watch, std::string known_as)
    : path_(std::move(path)), known_as_(known_as.empty() ? path_ : std::move(known_as)), watch_(watch),
      can_write_(mode != Mode::read_only) {
    if (!allow(FileCall::open)) fail("Apertura", EIO);
    int flags = O_CLOEXEC | (mode == Mode::read_only ? O_RDONLY : O_RDWR);
    if (mode == Mode::create) flags |= O_CREAT | O_TRUNC;
    if (mode == Mode::create_new) flags |= O_CREAT;
    handle_ = ::open(path_.c_str(), flags, 0600);
    if (handle_ < 0 && (flags & O_CREAT) != 0 && errno == EACCES) {
        throw Failure(access_failure::file, source,
                      "Non è possibile scrivere nella cartella del file \"" + known_as_ +
                          "\": per salvare ci vuole il permesso di scriverci.");
    }
    if (handle_ < 0) fail("Apertura", errno);
    struct stat status {};
    if (::fstat(handle_, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(handle_);
        fail("Apertura", EISDIR);
    }
    if (mode == Mode::create_new && status.st_size != 0) {
        ::close(handle_);
        fail("Apertura", EEXIST);
    }
}

File::~File() { ::close(handle_); }

void File::fail(const char* what, int error) const { fail_with(known_as_, what, error); }

std::uint64_t File::size() const {
    struct stat status {};
    if (::fstat(handle_, &status) != 0) fail("Lettura", errno);
    return static_cast<std::uint64_t>(status.st_size);
}

std::uint64_t File::stamp() const {
    struct stat status {};
    if (::fstat(handle_, &status) != 0) fail("Lettura", errno);
    const auto seconds = static_cast<std::uint64_t>(status.st_mtim.tv_sec);
    const auto nanoseconds = static_cast<std::uint64_t>(status.st_mtim.tv_nsec);
    return (seconds * 1'000'000'000U + nanoseconds) ^ (static_cast<std::uint64_t>(status.st_size) << 40);
}

bool File::in_place() const {
    struct stat here {};
    struct stat there {};
    return ::fstat(handle_, &here) == 0 && ::stat(path_.c_str(), &there) == 0 &&
           here.st_dev == there.st_dev && here.st_ino == there.st_ino;
}

std::size_t File::read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    if (!allow(FileCall::read)) fail("Lettura", EIO);
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t count =
            ::pread(handle_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail("Lettura", errno);
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void File::write(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    if (!allow(FileCall::write)) fail("Scrittura", EIO);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::pwrite(handle_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail("Scrittura", errno);
        done += static_cast<std::size_t>(count);
    }
}

void File::sync() {
    if (!allow(FileCall::sync)) fail("Scrittura", EIO);
    if (::fdatasync(handle_) != 0) fail("Scrittura", errno);
}

void File::truncate(std::uint64_t size) {
    if (!allow(FileCall::truncate)) fail("Scrittura", EIO);
    if (::ftruncate(handle_, static_cast<off_t>(size)) != 0) fail("Scrittura", errno);
}

bool File::lock() {
    if (!allow(FileCall::lock)) return false;
    if (::flock(handle_, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return false;
        // Network folders refuse it for a file that is open for reading; the other lock is enough there.
        if (errno != EBADF || can_write_) fail("Chiusura agli altri programmi", errno);
    }
    // Programs that share files over a network lock ranges and do not see the lock above.
    struct flock range {};
    range.l_type = static_cast<short>(can_write_ ? F_WRLCK : F_RDLCK);
    range.l_whence = SEEK_SET;
    if (::fcntl(handle_, F_OFD_SETLK, &range) == 0) return true;
    if (errno == EAGAIN || errno == EACCES) return false;
    fail("Chiusura agli altri programmi", errno);
}

void File::take_permissions_of(const File& other) {
    struct stat status {};
    // Where it cannot be done, on disks without permissions, they are the same for all files.
    if (::fstat(other.handle_, &status) == 0) ::fchmod(handle_, status.st_mode & 0777);
}

bool File::exists(const std::string& path) {
    std::error_code ignored; // what cannot be looked at is not there
    return std::filesystem::exists(path, ignored);
}

std::string File::real_path(const std::string& path) {
    std::error_code missing; // then opening it fails, and says why
    const auto real = std::filesystem::canonical(path, missing);
    return missing ? path : real.string();
}

bool File::writable(const std::string& path) { return write_obstacle(path) == 0; }

bool File::is_held(const std::string& path) {
    const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (handle < 0) return errno != ENOENT;
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    const bool told = ::fcntl(handle, F_OFD_GETLK, &range) == 0;
    const bool held = !told || range.l_type != F_UNLCK || ::flock(handle, LOCK_EX | LOCK_NB) != 0;
    ::close(handle);
    return held;
}

void File::rename(const std::string& from, const std::string& to, FileWatch* watch) {
    if (watch != nullptr && !watch->allow(FileCall::rename)) fail_with(from, "Spostamento", EIO);
    if (::rename(from.c_str(), to.c_str()) != 0) fail_with(from, "Spostamento", errno);
}

void File::remove(const std::string& path, FileWatch* watch) {
    if (watch != nullptr && !watch->allow(FileCall::remove)) fail_with(path, "Cancellazione", EIO);
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) fail_with(path, "Cancellazione", errno);
}

void File::sync_folder_of(const std::string& path, FileWatch* watch) {
    if (watch != nullptr && !watch->allow(FileCall::sync)) fail_with(path, "Scrittura", EIO);
    const int error = sync_folder(folder_of(path));
    if (error != 0) fail_with(path, "Scrittura", error);
}

} // namespace tarvello::store::access
