#include "store/access/journal.h"

#include "store/access/bytes.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

constexpr std::uint8_t magic[16] = {'T', 'a', 'r', 'v', 'e', 'l', 'l', 'o',
                                    ' ', 'u', 'n', 'd', 'o', ' ', '1', '\n'};

// count (4), 0 (4), then number (4), 0 (4), page for each, then the sum (8)
constexpr std::size_t segment_head = 8;
constexpr std::size_t record_size = 8 + page_size;

std::uint64_t sum(Bytes bytes) {
    std::uint64_t low = 0x9E3779B97F4A7C15U;
    std::uint64_t high = 0;
    for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
        low = (low ^ load64(bytes.data() + i)) * 0x100000001B3U;
        high += low ^ (low >> 29);
    }
    return low ^ high;
}

std::uint64_t first_page_sum(const File& database) {
    Page first{};
    if (database.read(0, first) != page_size) throw damaged("manca la prima pagina");
    return sum(first);
}

} // namespace

Journal::Journal(const File& database, PageNumber pages, FileWatch* watch)
    : path_(path_of(database.path())), watch_(watch),
      file_(std::make_unique<File>(path_, File::Mode::create, watch)) {
    file_->take_permissions_of(database);
    std::copy(std::begin(magic), std::end(magic), head_.begin());
    store32(head_.data() + 16, pages);
    store64(head_.data() + 24, first_page_sum(database));
    store64(head_.data() + 32, sum(Bytes(head_).first(32)));
    file_->write(0, head_);
    end_ = head_size;
}

void Journal::keep(const File& database, const std::vector<PageNumber>& pages) {
    // In pieces, so that a statement over the whole file needs no memory for it.
    constexpr std::size_t piece = 256;
    std::vector<std::uint8_t> bytes;
    for (std::size_t from = 0; from < pages.size() || from == 0; from += piece) {
        const std::size_t count = std::min(piece, pages.size() - from);
        bytes.assign(segment_head + count * record_size + 8, 0);
        store32(bytes.data(), static_cast<std::uint32_t>(count));
        for (std::size_t i = 0; i < count; ++i) {
            std::uint8_t* record = bytes.data() + segment_head + i * record_size;
            store32(record, pages[from + i]);
            const std::uint64_t offset = std::uint64_t{pages[from + i]} * page_size;
            if (database.read(offset, {record + 8, page_size}) != page_size)
                throw damaged("una pagina manca");
        }
        store64(bytes.data() + bytes.size() - 8, sum(Bytes(bytes).first(bytes.size() - 8)));
        file_->write(end_, bytes);
        end_ += bytes.size();
    }
    file_->sync();
    if (!folder_synced_) File::sync_folder_of(path_, watch_);
    folder_synced_ = true;
}

void Journal::finish() {
    const std::array<std::uint8_t, head_size> nothing{};
    try {
        file_->write(0, nothing);
        file_->sync();
    } catch (const Failure&) {
        file_->write(0, head_); // the statement has failed: the old pages are needed after all
        throw;
    }
    try {
        File::remove(path_, watch_);
    } catch (const Failure&) {
        // A journal without a head rolls nothing back: the next statement overwrites it.
    }
}

bool Journal::roll_back(File& database, FileWatch* watch) {
    const std::string path = path_of(database.path());
    if (!File::exists(path)) return false;
    bool changed = false;
    {
        File file(path, File::Mode::read_only, watch);
        std::uint8_t head[head_size] = {};
        const bool whole = file.read(0, head) == head_size &&
                           std::equal(std::begin(magic), std::end(magic), head) &&
                           load64(head + 32) == sum(Bytes(head, 32));
        if (whole) {
            const PageNumber pages = load32(head + 16);
            // A statement never makes a file shorter.
            if (load64(head + 24) != first_page_sum(database) ||
                database.size() < std::uint64_t{pages} * page_size) {
                throw Failure(access_failure::file, source,
                              "Accanto al file \"" + database.path() + "\" sta il diario \"" + path +
                                  "\" di un altro file: va spostato prima di aprire.");
            }
            std::uint64_t at = head_size;
            std::vector<std::uint8_t> segment;
            for (;;) {
                std::uint8_t count_bytes[segment_head] = {};
                if (file.read(at, count_bytes) != segment_head) break;
                const std::uint64_t size =
                    segment_head + std::uint64_t{load32(count_bytes)} * record_size + 8;
                if (size > file.size() - at) break;
                segment.resize(size);
                if (file.read(at, segment) != size) break;
                const Bytes summed = Bytes(segment).first(size - 8);
                if (load64(segment.data() + size - 8) != sum(summed)) break;
                for (std::size_t record = segment_head; record < summed.size(); record += record_size) {
                    const PageNumber number = load32(segment.data() + record);
                    database.write(std::uint64_t{number} * page_size, part(summed, record + 8, page_size));
                }
                changed = true;
                at += size;
            }
            if (changed) {
                if (database.size() > std::uint64_t{pages} * page_size) {
                    database.truncate(std::uint64_t{pages} * page_size);
                }
                database.sync();
            }
        }
    }
    File::remove(path, watch);
    File::sync_folder_of(path, watch);
    return changed;
}

} // namespace tarvello::store::access
