#include "platform/posix/posix_files.h"

#include "failure.h"
#include "text/letter_case.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvello {
namespace {

/// How much is copied between two looks at the progress.
constexpr std::size_t piece = std::size_t{8} << 20;

std::string reason(int error) {
    switch (error) {
    case ENOENT:
        return "il file o la cartella non esiste";
    case ENOTDIR:
        return "una parte del percorso non è una cartella";
    case EACCES:
    case EPERM:
        return "non si hanno i permessi necessari";
    case EROFS:
        return "il disco è protetto da scrittura";
    case ENOSPC:
    case EDQUOT:
        return "lo spazio sul disco è esaurito";
    case EFBIG:
        return "il file è troppo grande";
    case EISDIR:
        return "è una cartella";
    case ENAMETOOLONG:
        return "il nome è troppo lungo";
    case EIO:
        return "il disco non risponde correttamente";
    default:
        return std::strerror(error);
    }
}

Failure file_failure(int error, const std::string& what, const std::string& path) {
    const int number = error == ENOENT ? failure_number::file_not_found : failure_number::file_access;
    return {number, "File", what + " \"" + path + "\": " + reason(error) + "."};
}

/// An open file, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int operator*() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_;
};

/// A file in the making beside its destination, under a fixed name: what a kill leaves behind is taken up by
/// the next attempt. Nothing of it is seen until it takes its place.
class NewFile {
public:
    explicit NewFile(const std::string& destination)
        : path_(target_of(destination)), temporary_(path_ + ".parziale"), file_(create()) {}
    ~NewFile() {
        if (!placed_) ::unlink(temporary_.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int descriptor() const { return *file_; }

    void write(const char* data, std::size_t size) {
        while (size > 0) {
            const ssize_t written = ::write(*file_, data, size);
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) throw failure(errno);
            data += written;
            size -= static_cast<std::size_t>(written);
        }
    }

    /// Flushes the file, puts it in its place and flushes the folder.
    void place() {
        if (::fsync(*file_) != 0) throw failure(errno);
        if (::rename(temporary_.c_str(), path_.c_str()) != 0) throw failure(errno);
        placed_ = true;
        const std::string folder = std::filesystem::path(path_).parent_path().string();
        const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        // Not every file system can flush a folder; the file itself is safe by now.
        if (opened) ::fsync(*opened);
    }

    Failure failure(int error) const { return file_failure(error, "Impossibile scrivere il file", path_); }

private:
    /// A link at the destination stays: what it points to is replaced.
    static std::string target_of(const std::string& destination) {
        struct stat status {};
        if (::lstat(destination.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return destination;
        std::error_code dangling;
        const auto target = std::filesystem::canonical(destination, dangling);
        return dangling ? destination : target.string();
    }

    int create() const {
        struct stat status {};
        const bool there = ::stat(path_.c_str(), &status) == 0;
        if (there && !S_ISREG(status.st_mode)) throw failure(S_ISDIR(status.st_mode) ? EISDIR : EPERM);
        // A file that the user has made read-only is not replaced behind the user's back.
        if (there && ::access(path_.c_str(), W_OK) != 0) throw failure(errno);
        const mode_t mode = there ? status.st_mode & 0777 : 0666;
        const int made =
            ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, mode);
        if (made < 0) throw failure(errno);
        return made;
    }

    std::string path_;
    std::string temporary_;
    Descriptor file_;
    bool placed_ = false;
};

std::optional<DateTime> local_time(const timespec& time) {
    if (time.tv_sec == 0) return std::nullopt;
    tm parts{};
    if (!::localtime_r(&time.tv_sec, &parts)) return std::nullopt;
    const auto day = std::chrono::local_days(make_date(
        parts.tm_year + 1900, static_cast<unsigned>(parts.tm_mon + 1), static_cast<unsigned>(parts.tm_mday)));
    return DateTime(day) + std::chrono::hours(parts.tm_hour) + std::chrono::minutes(parts.tm_min) +
           std::chrono::seconds(parts.tm_sec);
}

std::vector<std::string> names_in(const std::string& folder, const std::string& pattern, bool folders) {
    std::vector<std::pair<std::string, std::string>> found; // in one letter case, as it is
    const std::string folded_pattern = fold_case(pattern);
    std::error_code unreadable;
    for (std::filesystem::directory_iterator it(folder, unreadable), end; !unreadable && it != end;
         it.increment(unreadable)) {
        std::error_code vanished;
        if (it->is_directory(vanished) != folders || vanished) continue;
        const std::string name = it->path().filename().string();
        std::string folded = fold_case(name);
        if (::fnmatch(folded_pattern.c_str(), folded.c_str(), FNM_PERIOD) != 0) continue;
        found.emplace_back(std::move(folded), name);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& [folded, name] : found) names.push_back(std::move(name));
    return names;
}

/// One piece from file to file, inside the kernel where it can. @return bytes copied, 0 at the end
ssize_t copy_piece(int from, int to, std::vector<char>& buffer) {
    if (buffer.empty()) {
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, piece, 0);
        if (copied >= 0) return copied;
        if (errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP && errno != EBADF)
            return copied;
        buffer.resize(piece); // this pair of file systems cannot: from here on through memory
    }
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    for (ssize_t put = 0; put < got;) {
        const ssize_t written = ::write(to, buffer.data() + put, static_cast<std::size_t>(got - put));
        if (written < 0 && errno != EINTR) return written;
        if (written > 0) put += written;
    }
    return got;
}

} // namespace

std::optional<FileFacts> PosixFiles::facts(const std::string& path) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return std::nullopt;
    const auto local = [](const statx_timestamp& time) {
        return local_time({static_cast<time_t>(time.tv_sec), static_cast<long>(time.tv_nsec)});
    };
    FileFacts facts;
    facts.folder = S_ISDIR(status.stx_mode);
    facts.size = facts.folder ? 0 : status.stx_size;
    facts.read_only = ::access(path.c_str(), W_OK) != 0;
    facts.compressed = (status.stx_attributes & STATX_ATTR_COMPRESSED) != 0;
    if (status.stx_mask & STATX_BTIME) facts.created = local(status.stx_btime);
    facts.accessed = local(status.stx_atime);
    facts.modified = local(status.stx_mtime);
    return facts;
}

std::string PosixFiles::full_path(const std::string& path) {
    if (path.empty()) return path;
    std::error_code no_current_folder;
    const auto absolute = std::filesystem::absolute(path, no_current_folder);
    return no_current_folder ? path : absolute.lexically_normal().string();
}

std::vector<std::string> PosixFiles::files_in(const std::string& folder, const std::string& pattern) {
    return names_in(folder, pattern, false);
}

std::vector<std::string> PosixFiles::folders_in(const std::string& folder) {
    return names_in(folder, "*", true);
}

std::string PosixFiles::read(const std::string& path) {
    const auto failure = [&](int error) { return file_failure(error, "Impossibile leggere il file", path); };
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) throw failure(errno);
    std::string content;
    std::vector<char> buffer(std::size_t{64} << 10);
    for (;;) {
        const ssize_t got = ::read(*file, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw failure(errno);
        if (got == 0) return content;
        content.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

void PosixFiles::write(const std::string& path, const std::string& content) {
    NewFile file(path);
    file.write(content.data(), content.size());
    file.place();
}

void PosixFiles::make_folder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) throw file_failure(error.value(), "Impossibile creare la cartella", path);
}

bool PosixFiles::copy(const std::string& source, const std::string& destination,
                      const CopyProgress& progress) {
    const auto cannot_read = [&](int error) {
        return file_failure(error, "Impossibile leggere il file", source);
    };
    const Descriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (!from) throw cannot_read(errno);
    struct stat status {};
    if (::fstat(*from, &status) != 0) throw cannot_read(errno);
    if (!S_ISREG(status.st_mode)) throw cannot_read(S_ISDIR(status.st_mode) ? EISDIR : EPERM);
    std::error_code not_there;
    if (std::filesystem::equivalent(source, destination, not_there) && !not_there) {
        throw Failure(failure_number::file_access, "File",
                      "Impossibile copiare il file \"" + source + "\" su se stesso.");
    }

    NewFile to(destination);
    const auto total = static_cast<std::uint64_t>(status.st_size);
    // The room is taken first, so that a full disk is known at once and the file lies in one piece.
    if (total > 0 && ::fallocate(to.descriptor(), FALLOC_FL_KEEP_SIZE, 0, status.st_size) != 0 &&
        (errno == ENOSPC || errno == EFBIG || errno == EDQUOT)) {
        throw to.failure(errno);
    }
    std::vector<char> buffer;
    std::uint64_t done = 0;
    for (;;) {
        if (progress && !progress(done, total)) return false;
        const ssize_t copied = copy_piece(*from, to.descriptor(), buffer);
        if (copied < 0 && errno == EINTR) continue;
        if (copied < 0) throw to.failure(errno);
        if (copied == 0) break;
        done += static_cast<std::uint64_t>(copied);
    }
    // The copy shows when its content was last changed, not when it was copied.
    const timespec times[] = {status.st_atim, status.st_mtim};
    ::futimens(to.descriptor(), times);
    to.place();
    return true;
}

} // namespace tarvello
