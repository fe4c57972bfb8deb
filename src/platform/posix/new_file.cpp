#include "platform/posix/new_file.h"

#include "platform/posix/error_words.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tarvello {
namespace {

/// How many files in the making for one destination are met before it counts as impossible: another
/// program's, or another user's that cannot be taken away.
constexpr int most_attempts = 9;

Failure not_written(const std::string& path, const std::string& why) {
    return {failure_number::file_access, "File",
            std::string(cannot_write) + " \"" + path + "\": " + why + "."};
}

/// @throws Failure if the way to it leads nowhere
std::string without_links(const std::string& destination) {
    const auto refuse = [&](int error) { return file_failure(error, cannot_write, destination); };
    if (destination.empty() || destination.find('\0') != std::string::npos) throw refuse(ENOENT);
    struct stat status {};
    if (::lstat(destination.c_str(), &status) != 0) {
        if (errno != ENOENT) throw refuse(errno);
        return destination;
    }
    if (!S_ISLNK(status.st_mode)) return destination;
    std::error_code error;
    const auto target = std::filesystem::canonical(destination, error);
    if (error.value() == ENOENT) throw not_written(destination, "è un collegamento a un file che non esiste");
    if (error) throw refuse(error.value());
    return target.string();
}

/// A name of our own for each destination, however long that one's is.
std::string working_name(const std::string& destination, int attempt) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : std::filesystem::path(destination).filename().string()) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    }
    char name[64];
    std::snprintf(name, sizeof name, "/.tarvello-%016llx-%d.parziale", static_cast<unsigned long long>(hash),
                  attempt);
    return folder_of(destination) + name;
}

/// Takes away what a program that was stopped has left, but nothing that somebody still writes.
void remove_if_left(const std::string& path) {
    const Descriptor left(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (left && ::flock(*left, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return;
    ::unlink(path.c_str());
}

} // namespace

NewFile::NewFile(const std::string& destination, mode_t rights) : destination_(without_links(destination)) {
    create(rights);
}

NewFile::~NewFile() {
    if (!placed_) ::unlink(path_.c_str());
}

void NewFile::create(mode_t rights) {
    struct stat former {};
    const bool there = ::stat(destination_.c_str(), &former) == 0;
    if (there && S_ISDIR(former.st_mode)) throw failure(EISDIR);
    if (there && !S_ISREG(former.st_mode)) throw not_written(destination_, "non è un file di dati");
    // A file that the user has made read-only is not replaced behind the user's back.
    if (const int error = there ? write_obstacle(destination_) : 0) throw failure(error);
    for (int attempt = 1; !file_; ++attempt) {
        if (attempt > most_attempts) throw failure(EBUSY);
        const std::string path = working_name(destination_, attempt);
        if (create_at(path, there ? private_file : rights)) break;
        remove_if_left(path);
        create_at(path, there ? private_file : rights);
    }
    if (!there) return;
    // To a group that the file cannot be given to again, it stays closed.
    const bool same_group = ::fchown(*file_, static_cast<uid_t>(-1), former.st_gid) == 0;
    ::fchmod(*file_, former.st_mode & (same_group ? 0777U : 0707U));
}

/// @return false if there is something at that path already
bool NewFile::create_at(const std::string& path, mode_t rights) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    Descriptor made(uninterrupted([&] { return ::open(path.c_str(), flags, rights); }));
    if (!made && errno != EEXIST) throw failure(errno);
    if (!made) return false;
    // The lock says that somebody is at work here. In the moment before it, another program may have taken
    // the file for one that was left.
    if (::flock(*made, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    struct stat status {};
    if (::fstat(*made, &status) != 0 || status.st_nlink == 0) return false;
    file_ = std::move(made);
    path_ = path;
    return true;
}

void NewFile::write(const std::string& content) {
    if (const int error = write_all(*file_, content.data(), content.size())) throw failure(error);
}

void NewFile::finish() {
    if (uninterrupted([&] { return ::fsync(*file_); }) != 0) throw failure(errno);
    file_ = Descriptor();
}

void NewFile::place() {
    if (::rename(path_.c_str(), destination_.c_str()) != 0) throw failure(errno);
    placed_ = true;
    if (const int error = sync_folder(folder_of(destination_))) throw failure(error);
}

Failure NewFile::failure(int error) const { return file_failure(error, cannot_write, destination_); }

} // namespace tarvello
