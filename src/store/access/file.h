#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tarvello::store::access {

/// The calls that reach the disk.
enum class FileCall : std::uint8_t { open, read, write, sync, truncate, rename, remove, lock };

/// Asked before every call that reaches the disk: a test makes one fail, or stops the process there.
class FileWatch {
public:
    virtual ~FileWatch() = default;
    /// @return false to make the call fail without being done
    virtual bool allow(FileCall call) = 0;
};

/// One open file. All that the engine asks of the disk goes through here. Every failure is a Failure that
/// names the file.
class File {
public:
    /// create: empties a file that is there. create_new: one that is there must be empty.
    enum class Mode : std::uint8_t { read_only, read_write, create, create_new };

    /// @param watch     may be null
    /// @param known_as  the file that failures name: the one that the user knows, if this is only its
    /// companion
    /// @throws Failure if it cannot be opened, or is no regular file
    File(std::string path, Mode mode, FileWatch* watch, std::string known_as = {});
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::string& path() const { return path_; }
    std::uint64_t size() const;
    /// Something that changes whenever another program writes to the file.
    std::uint64_t stamp() const;
    /// True while the path still leads to this very file.
    bool in_place() const;

    /// @return the bytes read, fewer than asked for only at the end of the file
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) const;
    void write(std::uint64_t offset, std::span<const std::uint8_t> bytes);
    void sync();
    void truncate(std::uint64_t size);
    /// Takes the file for this process alone. @return false if another one has it
    bool lock();
    /// Lets those read and write it who may do so with another file, and nobody else.
    void take_permissions_of(const File& other);

    static bool exists(const std::string& path);
    /// The path without links, which all programs agree on.
    static std::string real_path(const std::string& path);
    /// True if the user may write there: a file that nobody may write is read-only for everybody.
    static bool writable(const std::string& path);
    /// True if some program has a lock on the file or a part of it, or it cannot be told.
    static bool is_held(const std::string& path);
    static void rename(const std::string& from, const std::string& to, FileWatch* watch);
    static void remove(const std::string& path, FileWatch* watch);
    /// Makes the names of the folder that holds `path` durable.
    static void sync_folder_of(const std::string& path, FileWatch* watch);

private:
    bool allow(FileCall call) const { return watch_ == nullptr || watch_->allow(call); }
    [[noreturn]] void fail(const char* what, int error) const;

    std::string path_;
    std::string known_as_;
    FileWatch* watch_;
    int handle_ = -1;
    bool can_write_ = false;
};

} // namespace tarvello::store::access
