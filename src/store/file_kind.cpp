#include "store/file_kind.h"

#include "platform/posix/disk.h"
#include "platform/posix/error_words.h"
#include "store/access/header.h"
#include "store/failure_source.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace tarvello::store {
namespace {

constexpr std::string_view sqlite_mark{"SQLite format 3\0", 16};

const char* const rollback_journal = "-journal";
const char* const write_ahead_log = "-wal";
const char* const its_index = "-shm";
const char* const old_pages = "-undo";

/// Engines keep their files beside the database itself, also where a link leads to it.
std::string without_links(const std::string& path) {
    std::error_code missing;
    const auto real = std::filesystem::canonical(path, missing);
    return missing ? path : real.string();
}

std::string first_bytes(const std::string& path) {
    std::array<char, 32> bytes{};
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    return {bytes.data(), static_cast<std::size_t>(file.gcount())};
}

} // namespace

Failure cannot_open(int number, const std::string& path, const std::string& why) {
    return {number, source, "Impossibile aprire il database \"" + path + "\": " + why + "."};
}

FileKind kind_of_file(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        throw cannot_open(failure_number::file_not_found, path, error_words(ENOENT));
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw cannot_open(failure_number::file_not_found, path, error_words(ENOENT));
    if (error) throw cannot_open(failure_number::database, path, error_words(error.value()));
    // Not a folder, and no pipe either, whose reading would wait for ever.
    if (!std::filesystem::is_regular_file(status))
        throw cannot_open(failure_number::database, path, "non è un file");
    if (const int obstacle = read_obstacle(path))
        throw cannot_open(failure_number::database, path, error_words(obstacle));
    const std::string mark = first_bytes(path);
    if (mark.starts_with(sqlite_mark)) return FileKind::sqlite;
    return access::is_access_file(mark) ? FileKind::access : FileKind::other;
}

std::string left_beside(const std::string& database) {
    const std::string file = without_links(database);
    const auto holds_something = [&](const char* companion) {
        const std::string bytes = first_bytes(file + companion);
        // A journal is ended by emptying it, or by blanking its head.
        return !bytes.empty() && bytes.find_first_not_of('\0') != std::string::npos;
    };
    switch (kind_of_file(database)) {
    case FileKind::sqlite:
        if (holds_something(rollback_journal)) return file + rollback_journal;
        if (holds_something(write_ahead_log)) return file + write_ahead_log;
        break;
    case FileKind::access:
        if (holds_something(old_pages)) return file + old_pages;
        break;
    case FileKind::other:
        break;
    }
    return {};
}

std::vector<std::string> companions_of(const std::string& database) {
    const std::string file = without_links(database);
    return {file + rollback_journal, file + write_ahead_log, file + its_index, file + old_pages};
}

} // namespace tarvello::store
