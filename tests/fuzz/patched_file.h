#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>

/// A sample of which an input changes some bytes: the input is a row of patches, each a page (2 bytes), a
/// place on it (2), a count (1) and so many bytes. Undone when it goes.
class PatchedFile {
public:
    PatchedFile(const std::string& sample, const std::uint8_t* data, std::size_t size) {
        static std::map<std::string, std::string> originals;
        std::string& original = originals[sample];
        if (original.empty()) original = read(sample);
        const std::size_t pages = original.size() / page;
        bytes_ = original;
        while (size >= 5) {
            const std::size_t number = (data[0] | data[1] << 8) % pages;
            const std::size_t at = (data[2] | data[3] << 8) % page;
            std::size_t count = data[4];
            data += 5;
            size -= 5;
            count = std::min({count, size, page - at});
            bytes_.replace(number * page + at, count, reinterpret_cast<const char*>(data), count);
            data += count;
            size -= count;
        }
        path_ = "/dev/shm/tarvello-fuzz-" + std::to_string(getpid()) + ".mdb";
        std::ofstream(path_, std::ios::binary) << bytes_;
    }
    ~PatchedFile() {
        unlink(path_.c_str());
        unlink((path_ + "-undo").c_str());
    }
    PatchedFile(const PatchedFile&) = delete;
    PatchedFile& operator=(const PatchedFile&) = delete;

    const std::string& path() const { return path_; }

private:
    static constexpr std::size_t page = 4096;

    static std::string read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        std::stringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

    std::string bytes_;
    std::string path_;
};
