#include "platform/posix/posix_files.h"

#include "platform/posix/error_words.h"
#include "platform/posix/new_file.h"
#include "platform/posix/source_file.h"
#include "text/letter_case.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace tarvello {
namespace {

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

/// What a document of the user's gets, before his umask.
constexpr mode_t usual_file = 0666;

class PosixPendingCopy final : public PendingCopy {
public:
    PosixPendingCopy(const std::string& destination, mode_t rights) : file(destination, rights) {}
    const std::string& path() const override { return file.path(); }
    const std::string& destination() const override { return file.destination(); }
    void place() override { file.place(); }

    NewFile file;
};

void write_whole(const std::string& path, mode_t rights, const std::string& content) {
    NewFile file(path, rights);
    file.write(content);
    file.finish();
    file.place();
}

void need_two_files(const std::string& source, const std::string& destination) {
    std::error_code not_there;
    if (!std::filesystem::equivalent(source, destination, not_there) || not_there) return;
    throw Failure(failure_number::file_access, "File",
                  "Impossibile copiare il file \"" + source + "\" su se stesso.");
}

/// The copy shows when its content was last changed, not when it was copied.
void take_times(int file, const struct stat& of) {
    const timespec times[] = {of.st_atim, of.st_mtim};
    ::futimens(file, times);
}

std::unique_ptr<PendingCopy> copy_beside(const SourceFile& from, const std::string& source,
                                         const std::string& destination, mode_t rights,
                                         const CopyProgress& progress) {
    need_two_files(source, destination);
    auto copy = std::make_unique<PosixPendingCopy>(destination, rights);
    NewFile& to = copy->file;
    // The room is taken first, so that a full disk is known at once and the file lies in one piece.
    if (from.size() > 0 && ::fallocate(to.descriptor(), FALLOC_FL_KEEP_SIZE, 0, from.status().st_size) != 0 &&
        (errno == ENOSPC || errno == EFBIG || errno == EDQUOT)) {
        throw to.failure(errno);
    }
    if (!from.copy_to(to.descriptor(), to.destination(), progress)) return nullptr;
    take_times(to.descriptor(), from.status());
    to.finish();
    return copy;
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
    facts.read_only = write_obstacle(path) != 0;
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
    const SourceFile file(path);
    std::string content;
    std::vector<char> buffer(std::size_t{64} << 10);
    while (const std::size_t got = file.read(buffer)) content.append(buffer.data(), got);
    return content;
}

void PosixFiles::write(const std::string& path, const std::string& content) {
    write_whole(path, usual_file, content);
}

void PosixFiles::write_private(const std::string& path, const std::string& content) {
    write_whole(path, private_file, content);
}

void PosixFiles::make_folder(const std::string& path) { make_folders(path, private_folder); }

bool PosixFiles::copy(const std::string& source, const std::string& destination,
                      const CopyProgress& progress) {
    const SourceFile from(source);
    // What nobody else may read stays so; and the user may write a copy of what he may only read.
    const mode_t rights = (from.status().st_mode & 0777) | private_file;
    const auto copy = copy_beside(from, source, destination, rights, progress);
    if (copy) copy->place();
    return copy != nullptr;
}

std::unique_ptr<PendingCopy> PosixFiles::prepare_copy(const std::string& source,
                                                      const std::string& destination,
                                                      const CopyProgress& progress) {
    return copy_beside(SourceFile(source), source, destination, private_file, progress);
}

void PosixFiles::overwrite(const std::string& source, const std::string& destination,
                           const CopyProgress& progress) {
    const auto failure = [&](int error) { return file_failure(error, cannot_write, destination); };
    const SourceFile from(source);
    need_two_files(source, destination);
    if (const int error = write_obstacle(destination)) throw failure(error);
    const Descriptor to(
        uninterrupted([&] { return ::open(destination.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!to || ::fstat(*to, &status) != 0) throw failure(errno);
    if (!S_ISREG(status.st_mode)) throw failure(EINVAL);
    // Nothing is gained by giving up half-way.
    const CopyProgress watch = [&](std::uint64_t done, std::uint64_t total) {
        if (progress) progress(done, total);
        return true;
    };
    from.copy_to(*to, destination, watch);
    if (uninterrupted([&] { return ::ftruncate(*to, from.status().st_size); }) != 0) throw failure(errno);
    take_times(*to, from.status());
    if (uninterrupted([&] { return ::fsync(*to); }) != 0) throw failure(errno);
}

std::uint64_t PosixFiles::free_bytes(const std::string& path) {
    struct statvfs disk {};
    if (::statvfs(folder_of(path).c_str(), &disk) != 0) return 0;
    return std::uint64_t{disk.f_bavail} * disk.f_frsize;
}

bool PosixFiles::keep_as(const std::string& path, const std::string& name) {
    const char* const cannot = "Impossibile mettere da parte il file";
    if (::link(path.c_str(), name.c_str()) != 0) {
        if (errno == EEXIST) return false;
        // Sticks and some network folders know one name for a file.
        if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) != 0) {
            if (errno == EEXIST) return false;
            const bool unknown = errno == EINVAL || errno == ENOSYS;
            if (unknown && exists(name)) return false;
            if (!unknown || ::rename(path.c_str(), name.c_str()) != 0)
                throw file_failure(errno, cannot, path);
        }
    }
    if (const int error = sync_folder(folder_of(name))) throw file_failure(error, cannot, path);
    return true;
}

void PosixFiles::remove(const std::vector<std::string>& paths) {
    const char* const cannot = "Impossibile togliere il file";
    for (const std::string& path : paths) {
        if (::unlink(path.c_str()) == 0) continue;
        const bool not_there = errno == ENOENT || errno == ENAMETOOLONG;
        if (!not_there) throw file_failure(errno, cannot, path);
    }
    if (paths.empty()) return;
    if (const int error = sync_folder(folder_of(paths[0]))) throw file_failure(error, cannot, paths[0]);
}

} // namespace tarvello
