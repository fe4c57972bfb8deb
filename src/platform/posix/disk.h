#pragma once

#include <string>
#include <utility>

#include <cerrno>
#include <sys/types.h>
#include <unistd.h>

/// Small things about files that every writer of them needs.
namespace tarvello {

/// Repeats a call of the system that a signal has interrupted.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// An open file, closed at the end.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    int operator*() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_ = -1;
};

/// Why this user may not read or write what stands at a path. What its owner has closed to everybody is
/// closed to the superuser too, whom the system would let in: it is meant so.
/// @return an error number, 0 if the user may
int read_obstacle(const std::string& path);
int write_obstacle(const std::string& path);

/// The folder that holds what a path leads to.
std::string folder_of(const std::string& path);

/// Makes a folder, and those above it that are missing, with these rights. @throws Failure
void make_folders(const std::string& path, mode_t rights);

/// Makes the names in a folder durable. Disks that cannot, as some network folders, keep them by themselves.
/// @return an error number, 0 if it is done
int sync_folder(const std::string& folder);

/// Writes all of it at the place where the file stands. @return an error number, 0 if it is done
int write_all(int file, const char* data, std::size_t size);

} // namespace tarvello
