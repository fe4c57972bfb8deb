#include "store/sqlite/left_journal.h"

#include "failure.h"
#include "platform/posix/disk.h"
#include "platform/posix/error_words.h"
#include "store/failure_source.h"
#include "store/stale_journal.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace tarvello::store {
namespace {

// The formats of SQLite's files, see sqlite.org/fileformat.html. Numbers have their highest byte first.
constexpr std::array<std::uint8_t, 8> journal_magic{0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
constexpr std::size_t journal_head = 28;
constexpr std::size_t largest_page = 65536;
constexpr std::size_t database_head = 100;
constexpr std::size_t counter_at = 24;
constexpr std::size_t page_count_at = 28;
constexpr std::size_t schema_version_at = 40;
constexpr std::size_t counted_for_at = 92; ///< the counter with which the number of pages was written
constexpr std::size_t sector = 512;
/// The bytes that SQLite locks, of whoever writes and whoever reads.
constexpr off_t locks_at = 0x40000000;
constexpr off_t locks_size = 512;

using Bytes = std::vector<std::uint8_t>;

std::uint32_t number_at(const Bytes& bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
           std::uint32_t{bytes[at + 2]} << 8 | bytes[at + 3];
}

/// @return fewer bytes at the end of the file, none if it cannot be read
Bytes read(const Descriptor& file, std::uint64_t at, std::size_t size) {
    Bytes bytes(size);
    const ssize_t got =
        uninterrupted([&] { return ::pread(*file, bytes.data(), bytes.size(), static_cast<off_t>(at)); });
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return bytes;
}

/// Keeps every other program from the file until the end of the scope of its descriptor.
bool lock(const Descriptor& file) {
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = locks_at;
    range.l_len = locks_size;
    return ::fcntl(*file, F_OFD_SETLK, &range) == 0;
}

/// What SQLite would roll back.
class LeftJournal {
public:
    explicit LeftJournal(const std::string& path)
        : file_(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); })) {
        struct stat status {};
        if (!file_ || ::fstat(*file_, &status) != 0 || !S_ISREG(status.st_mode)) return;
        size_ = static_cast<std::uint64_t>(status.st_size);
        std::uint64_t at = 0;
        while (const std::uint64_t next = take_segment(at)) at = next;
    }

    /// False for one that is ended, or does not hold anything yet.
    bool is_to_be_rolled_back() const { return page_size_ != 0; }

    bool goes_with(const Descriptor& database) const {
        const Bytes now = read(database, 0, page_size_);
        if (now.size() < database_head) return false;
        if (!first_page_) {
            return number_at(now, counter_at) != number_at(now, counted_for_at) ||
                   number_at(now, page_count_at) == pages_;
        }
        const Bytes& before = *first_page_;
        if (now.size() != before.size()) return false;
        if (std::equal(now.begin(), now.begin() + sector, before.begin())) return true;
        if (number_at(now, counter_at) != number_at(before, counter_at) + 1) return false;
        // Behind the head stand the tables, which change with the schema alone.
        return number_at(now, schema_version_at) != number_at(before, schema_version_at) ||
               std::equal(now.begin() + database_head, now.end(), before.begin() + database_head);
    }

private:
    /// A head and the old pages that go with it. @return where the next one would be; 0 if there is none
    std::uint64_t take_segment(std::uint64_t at) {
        const Bytes head = read(file_, at, journal_head);
        if (head.size() != journal_head ||
            !std::equal(journal_magic.begin(), journal_magic.end(), head.begin()))
            return 0;
        std::uint64_t records = number_at(head, 8);
        const std::uint32_t sum_start = number_at(head, 12);
        if (at == 0) {
            pages_ = number_at(head, 16);
            sector_size_ = number_at(head, 20);
            const std::size_t page_size = number_at(head, 24);
            if (page_size < sector || page_size > largest_page || sector_size_ < journal_head) return 0;
            page_size_ = page_size;
        }
        std::uint64_t record = at + sector_size_;
        const std::uint64_t record_size = page_size_ + 8;
        constexpr std::uint64_t up_to_the_end = 0xFFFFFFFF;
        if (records == up_to_the_end) records = size_ > record ? (size_ - record) / record_size : 0;
        for (; records > 0; --records, record += record_size) {
            Bytes page = read(file_, record, record_size);
            if (page.size() != record_size) return 0;
            if (number_at(page, 0) != 1) continue;
            std::uint32_t sum = sum_start;
            for (std::size_t i = page_size_ - 200; i > 0 && i < page_size_; i -= 200) sum += page[4 + i];
            if (sum != number_at(page, 4 + page_size_)) return 0;
            if (!first_page_) first_page_ = Bytes(page.begin() + 4, page.end() - 4);
        }
        return (record + sector_size_ - 1) / sector_size_ * sector_size_;
    }

    Descriptor file_;
    std::uint64_t size_ = 0;
    std::uint64_t sector_size_ = 0;
    std::size_t page_size_ = 0;
    std::uint32_t pages_ = 0; ///< of the database before
    std::optional<Bytes> first_page_;
};

} // namespace

std::string put_stale_journal_aside(const std::string& database) {
    std::error_code missing;
    const std::string file = std::filesystem::canonical(database, missing).string();
    const std::string journal = file + "-journal";
    if (missing || !std::filesystem::exists(journal, missing)) return {};
    const Descriptor opened(
        uninterrupted([&] { return ::open(file.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK); }));
    // Nothing is rolled back into a file that may not be written; and a journal whose writer is at work is
    // nobody else's.
    if (!opened || !lock(opened)) return {};
    const LeftJournal left(journal);
    if (!left.is_to_be_rolled_back() || left.goes_with(opened)) return {};
    const std::string aside = name_put_aside(journal);
    int error = ::rename(journal.c_str(), aside.c_str()) != 0 ? errno : 0;
    if (error == 0) error = sync_folder(folder_of(journal));
    if (error == 0) return words_of_stale_journal(database, aside);
    throw Failure(failure_number::database, source,
                  "Accanto al file \"" + database + "\" si trova il diario di un altro, \"" + journal +
                      "\", che non si riesce a mettere da parte: " + error_words(error) +
                      ". Spostarlo in un'altra cartella e riaprire l'archivio.");
}

} // namespace tarvello::store
