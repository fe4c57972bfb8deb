#include "store/engine.h"

#include "failure.h"
#include "store/access/access_engine.h"
#include "store/access/header.h"
#include "store/failure_source.h"
#include "store/sqlite/sqlite_engine.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace tarvello::store {
namespace {

constexpr std::string_view sqlite_mark{"SQLite format 3\0", 16};

[[noreturn]] void fail(int number, const std::string& path, const char* why) {
    throw Failure(number, source, "Impossibile aprire il database \"" + path + "\": " + why + ".");
}

/// The first bytes of a file, fewer if it has fewer.
std::string first_bytes(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        fail(failure_number::file_not_found, path, "il file non esiste");
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        fail(failure_number::file_not_found, path, "il file non esiste");
    if (error) fail(failure_number::database, path, "il file non è accessibile");
    // Not a folder, and no pipe either, whose reading would wait for ever.
    if (!std::filesystem::is_regular_file(status)) fail(failure_number::database, path, "non è un file");
    // No read permission for anybody is meant for the super-user too, whom the system would let in.
    using std::filesystem::perms;
    constexpr perms readable = perms::owner_read | perms::group_read | perms::others_read;
    std::ifstream file(path, std::ios::binary);
    if (!file || (status.permissions() & readable) == perms::none)
        fail(failure_number::database, path, "manca il permesso di leggerlo");
    std::array<char, 32> bytes{};
    file.read(bytes.data(), bytes.size());
    return {bytes.data(), static_cast<std::size_t>(file.gcount())};
}

} // namespace

std::unique_ptr<Engine> open_engine(const std::string& path, const RegionalSettings& regional) {
    const std::string mark = first_bytes(path);
    if (mark.starts_with(sqlite_mark)) return open_sqlite_engine(path, regional);
    if (access::is_access_file(mark)) return open_access_engine(path, regional);
    fail(failure_number::database, path, "il file non è un database");
}

} // namespace tarvello::store
