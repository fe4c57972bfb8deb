#include "platform/posix/disk.h"

#include "platform/posix/error_words.h"

#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace tarvello {
namespace {

/// @param bits  of the mode, one of which must be set  @param access  what the system is asked for: whether
/// this process may
int obstacle(const std::string& path, mode_t bits, int access) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) != 0)
        return errno;
    return (status.st_mode & bits) == 0 ? EACCES : 0;
}

} // namespace

int read_obstacle(const std::string& path) { return obstacle(path, S_IRUSR | S_IRGRP | S_IROTH, R_OK); }

int write_obstacle(const std::string& path) { return obstacle(path, S_IWUSR | S_IWGRP | S_IWOTH, W_OK); }

std::string folder_of(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

void make_folders(const std::string& path, mode_t rights) {
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) return;
    const std::string above = folder_of(path);
    if (above != path && !std::filesystem::exists(above, unknown)) make_folders(above, rights);
    int error = ::mkdir(path.c_str(), rights) == 0 ? sync_folder(above) : errno;
    if (error == EEXIST) error = std::filesystem::is_directory(path, unknown) ? 0 : ENOTDIR;
    if (error != 0) throw file_failure(error, "Impossibile creare la cartella", path);
}

int sync_folder(const std::string& folder) {
    const Descriptor opened(
        uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!opened) return errno;
    if (uninterrupted([&] { return ::fsync(*opened); }) == 0) return 0;
    return errno == EINVAL || errno == ENOTSUP || errno == ENOSYS ? 0 : errno;
}

int write_all(int file, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = uninterrupted([&] { return ::write(file, data, size); });
        if (written < 0) return errno;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return 0;
}

} // namespace tarvello
