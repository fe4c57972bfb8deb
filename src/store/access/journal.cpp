#include "store/access/journal.h"

#include "store/access/bytes.h"
#include "store/stale_journal.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

constexpr std::size_t magic_size = 16;
constexpr std::uint8_t magic[magic_size] = {'T', 'a', 'r', 'v', 'e', 'l', 'l', 'o',
                                            ' ', 'u', 'n', 'd', 'o', ' ', '2', '\n'};
/// Of journals that earlier versions left, which do not say what the pages become.
constexpr std::size_t version_at = 14;
constexpr std::uint8_t version_without_states = '1';
constexpr std::size_t pages_at = magic_size;
constexpr std::size_t first_page_sum_at = pages_at + 8;
constexpr std::size_t head_sum_at = first_page_sum_at + 8;

// How many old pages (4) and states (4), then number (4), 0 (4), page for each; number (4), 0 (4), a sum (8)
// of each sector for each; then the sum of the segment (8).
constexpr std::size_t segment_head = 8;
constexpr std::size_t record_head = 8;
constexpr std::size_t old_size = record_head + page_size;
constexpr std::size_t sum_size = 8;
/// What disks write as a whole: a page that was being written at a power cut may be half old, half new.
constexpr std::size_t sector_size = 512;
constexpr std::size_t sectors = page_size / sector_size;
constexpr std::size_t state_size = record_head + sectors * sum_size;
/// In pieces, so that a statement over the whole file needs no memory for it.
constexpr std::size_t pages_per_segment = 256;

std::uint64_t sum(Bytes bytes) {
    std::uint64_t low = 0x9E3779B97F4A7C15U;
    std::uint64_t high = 0;
    for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
        low = (low ^ load64(bytes.data() + i)) * 0x100000001B3U;
        high += low ^ (low >> 29);
    }
    return low ^ high;
}

using SectorSums = std::array<std::uint64_t, sectors>;

SectorSums sums_of(const std::uint8_t* page) {
    SectorSums sums{};
    for (std::size_t i = 0; i < sectors; ++i) sums[i] = sum({page + i * sector_size, sector_size});
    return sums;
}

std::uint64_t first_page_sum(const File& database) {
    Page first{};
    if (database.read(0, first) != page_size) throw damaged("manca la prima pagina");
    return sum(first);
}

std::uint64_t offset_of(PageNumber page) { return std::uint64_t{page} * page_size; }

} // namespace

Journal::Journal(const File& database, PageNumber pages, FileWatch* watch)
    : path_(path_of(database.path())), watch_(watch),
      file_(std::make_unique<File>(path_, File::Mode::create, watch, database.path())) {
    file_->take_permissions_of(database);
    std::copy(std::begin(magic), std::end(magic), head_.begin());
    store32(head_.data() + pages_at, pages);
    store64(head_.data() + first_page_sum_at, first_page_sum(database));
    store64(head_.data() + head_sum_at, sum(Bytes(head_).first(head_sum_at)));
    file_->write(0, head_);
    end_ = head_size;
}

void Journal::keep(const File& database, const std::vector<PageNumber>& old, const Pages& becoming) {
    std::vector<std::uint8_t> segment;
    auto state = becoming.begin();
    for (std::size_t old_from = 0, done = 0; done < becoming.size();) {
        const std::size_t olds = std::min(pages_per_segment, old.size() - old_from);
        const std::size_t states = std::min(pages_per_segment, becoming.size() - done);
        segment.assign(segment_head + olds * old_size + states * state_size + sum_size, 0);
        store32(segment.data(), static_cast<std::uint32_t>(olds));
        store32(segment.data() + 4, static_cast<std::uint32_t>(states));
        std::uint8_t* record = segment.data() + segment_head;
        for (std::size_t i = 0; i < olds; ++i, record += old_size) {
            const PageNumber page = old[old_from + i];
            store32(record, page);
            if (database.read(offset_of(page), {record + record_head, page_size}) != page_size)
                throw damaged("una pagina manca");
        }
        for (std::size_t i = 0; i < states; ++i, record += state_size, ++state) {
            store32(record, state->first);
            const SectorSums sums = sums_of(state->second->data());
            for (std::size_t sector = 0; sector < sectors; ++sector)
                store64(record + record_head + sector * sum_size, sums[sector]);
        }
        store64(record, sum(Bytes(segment).first(segment.size() - sum_size)));
        file_->write(end_, segment);
        end_ += segment.size();
        old_from += olds;
        done += states;
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
        // The statement has failed: the old pages are needed after all. As long as it is not certain that the
        // head is there again, none of them may be put back.
        try {
            file_->write(0, head_);
            file_->sync();
        } catch (const Failure&) {
            throw OutcomeUnknown();
        }
        throw;
    }
    try {
        File::remove(path_, watch_);
    } catch (const Failure&) {
        // A journal without a head rolls nothing back: the next statement overwrites it.
    }
}

/// The journal that a stopped program has left.
class FoundJournal {
public:
    FoundJournal(const std::string& path, FileWatch* watch) : file_(path, File::Mode::read_only, watch) {
        if (file_.read(0, head_) != head_.size() ||
            load64(head_.data() + head_sum_at) != sum(Bytes(head_).first(head_sum_at))) {
            return;
        }
        has_states_ = head_[version_at] != version_without_states;
        head_[version_at] = magic[version_at];
        if (!std::equal(std::begin(magic), std::end(magic), head_.begin())) return;
        pages_ = load32(head_.data() + pages_at);
        end_ = pages_;
        for (std::uint64_t at = Journal::head_size; take_segment(at);) has_segments_ = true;
    }

    /// False for a journal that has changed nothing, or whose statement has ended.
    bool is_to_be_put_back() const { return has_segments_; }

    /// True if each page is its old self, or what the statement made of it.
    bool goes_with(const File& database) const {
        if (load64(head_.data() + first_page_sum_at) != first_page_sum(database)) return false;
        if (database.size() < offset_of(pages_)) return false;
        if (!has_states_) return true;
        if (database.size() > offset_of(end_)) return false;
        for (auto state = states_.begin(); state != states_.end(); state = states_.upper_bound(state->first))
            if (!is_known(database, state->first)) return false;
        return true;
    }

    void put_back(File& database) const {
        Page page{};
        for (const auto& [number, at] : old_) {
            if (file_.read(at, page) != page_size) throw damaged("il suo diario non si legge");
            database.write(offset_of(number), page);
        }
        if (database.size() > offset_of(pages_)) database.truncate(offset_of(pages_));
        database.sync();
    }

private:
    /// `at` goes behind it. @return false at the end of what is whole
    bool take_segment(std::uint64_t& at) {
        std::array<std::uint8_t, segment_head> counts{};
        if (file_.read(at, counts) != segment_head) return false;
        const std::uint64_t olds = load32(counts.data());
        const std::uint64_t states = load32(counts.data() + 4);
        const std::uint64_t size = segment_head + olds * old_size + states * state_size + sum_size;
        if (olds > pages_per_segment || states > pages_per_segment || size > file_.size() - at) return false;
        segment_.resize(size);
        if (file_.read(at, segment_) != size) return false;
        const Bytes summed = Bytes(segment_).first(size - sum_size);
        if (load64(segment_.data() + summed.size()) != sum(summed)) return false;
        const std::uint8_t* record = segment_.data() + segment_head;
        for (std::uint64_t i = 0; i < olds; ++i, record += old_size) {
            old_.emplace(load32(record),
                         at + static_cast<std::uint64_t>(record - segment_.data()) + record_head);
        }
        for (std::uint64_t i = 0; i < states; ++i, record += state_size) {
            SectorSums sums{};
            for (std::size_t sector = 0; sector < sectors; ++sector)
                sums[sector] = load64(record + record_head + sector * sum_size);
            states_.emplace(load32(record), sums);
            end_ = std::max(end_, load32(record) + 1);
        }
        at += size;
        return true;
    }

    bool is_known(const File& database, PageNumber number) const {
        Page page{};
        const std::size_t there = database.read(offset_of(number), page) / sector_size;
        const SectorSums now = sums_of(page.data());
        Page before{}; // a page behind the former end grew out of zeros
        if (const auto old = old_.find(number); old != old_.end()) file_.read(old->second, before);
        const SectorSums was = sums_of(before.data());
        const auto [first, last] = states_.equal_range(number);
        for (std::size_t i = 0; i < there; ++i) {
            if (now[i] != was[i] &&
                std::none_of(first, last, [&](const auto& state) { return state.second[i] == now[i]; })) {
                return false;
            }
        }
        return true;
    }

    File file_;
    std::array<std::uint8_t, Journal::head_size> head_{};
    bool has_segments_ = false;
    bool has_states_ = true;
    PageNumber pages_ = 0;                    // of the database before
    PageNumber end_ = 0;                      // and at its longest
    std::map<PageNumber, std::uint64_t> old_; // places in the journal
    std::multimap<PageNumber, SectorSums> states_;
    std::vector<std::uint8_t> segment_;
};

namespace {

/// Renames a journal so that nobody takes it for one. @return the new name
std::string put_aside(const std::string& path, FileWatch* watch) {
    const std::string name = name_put_aside(path);
    File::rename(path, name, watch);
    File::sync_folder_of(path, watch);
    return name;
}

} // namespace

std::string Journal::roll_back(File& database, FileWatch* watch, Origin origin) {
    const std::string path = path_of(database.path());
    if (!File::exists(path)) return {};
    {
        const FoundJournal journal(path, watch);
        if (journal.is_to_be_put_back()) {
            if (origin == Origin::found && !journal.goes_with(database)) {
                return words_of_stale_journal(database.path(), put_aside(path, watch));
            }
            journal.put_back(database);
        }
    }
    File::remove(path, watch);
    File::sync_folder_of(path, watch);
    return {};
}

} // namespace tarvello::store::access
