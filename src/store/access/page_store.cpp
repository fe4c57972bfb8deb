#include "store/access/page_store.h"

#include "store/access/bytes.h"

#include <algorithm>
#include <filesystem>

namespace tarvello::store::access {
namespace {

/// The lock file that Access keeps beside a file as long as somebody has it open; empty if there is none.
std::string access_lock(const std::string& path) {
    const std::filesystem::path file(File::real_path(path));
    for (const char* extension : {".ldb", ".LDB", ".Ldb"}) {
        std::filesystem::path lock = file;
        if (File::exists(lock.replace_extension(extension).string())) return lock.string();
    }
    return {};
}

} // namespace

PageStore::PageStore(const std::string& path, FileWatch* watch)
    : watch_(watch), read_only_file_(!File::writable(path)),
      file_(std::make_unique<File>(path, read_only_file_ ? File::Mode::read_only : File::Mode::read_write,
                                   watch)) {
    if (!file_->lock()) {
        throw Failure(access_failure::in_use, source,
                      "Il file \"" + path + "\" è già aperto in un altro programma.");
    }
    if (File::exists(Journal::path_of(path))) {
        const std::string reason = why_read_only();
        if (!reason.empty()) {
            throw Failure(access_failure::read_only, source,
                          "Una scrittura interrotta va prima annullata, ma non si può. " + reason);
        }
        notice_ = Journal::roll_back(*file_, watch_, Journal::Origin::found);
    }
    forget();
}

PageStore::PageStore(NewFile, const std::string& path, FileWatch* watch)
    : watch_(watch), journaling_(false), file_(std::make_unique<File>(path, File::Mode::create_new, watch)) {
    forget();
}

PageStore::~PageStore() {
    roll_back();
    mend();
}

bool PageStore::mend() {
    if (!broken_) return true;
    try {
        Journal::roll_back(*file_, watch_, Journal::Origin::own);
        forget();
    } catch (const Failure&) {
        return false; // the journal stays: the next statement tries again, or the next opening
    }
    broken_ = false;
    return true;
}

void PageStore::forget() {
    frames_.clear();
    std::fill(frame_of_page_.begin(), frame_of_page_.end(), std::uint16_t{0});
    clock_ = 0;
    const std::uint64_t size = file_->size();
    page_count_ = static_cast<PageNumber>(std::min<std::uint64_t>(size / page_size, max_pages));
    ragged_ = size % page_size != 0;
    stamp_ = file_->stamp();
    ++change_count_;
}

bool PageStore::notice_others() {
    if (!file_->in_place()) {
        throw Failure(access_failure::file, source,
                      "Il file \"" + file_->path() +
                          "\" è stato spostato, cancellato o sostituito: va riaperto.");
    }
    mend();
    need_known();
    if (changing_ || file_->stamp() == stamp_) return false;
    forget();
    return true;
}

void PageStore::need_known() const {
    if (unknown_) throw OutcomeUnknown();
    if (!broken_) return;
    throw Failure(access_failure::file, source,
                  "L'ultima scrittura nel file \"" + file_->path() +
                      "\" non è riuscita e non si è ancora potuta annullare.");
}

std::string PageStore::why_read_only() const {
    if (const std::string lock = access_lock(file_->path()); !lock.empty()) {
        const std::string subject = "Il file \"" + file_->path() + "\" ";
        if (File::is_held(lock))
            return subject + "è aperto in Access da un utente: per ora è possibile soltanto leggerlo.";
        return subject +
               "risulta aperto in Access, ma nessun programma di questo computer lo tiene aperto. Se "
               "nessuno lo sta usando nemmeno da un altro computer, basta cancellare il file \"" +
               lock + "\" che Access vi ha lasciato accanto; fino ad allora è possibile soltanto leggerlo.";
    }
    if (read_only_file_ || !File::writable(file_->path())) {
        return "Il file \"" + file_->path() + "\" è di sola lettura.";
    }
    return {};
}

PageRef PageStore::read(PageNumber number) {
    need_known();
    if (changing_) {
        if (const auto found = changed_.find(number); found != changed_.end()) return found->second;
    }
    if (number < frame_of_page_.size() && frame_of_page_[number] != 0) {
        Frame& frame = frames_[frame_of_page_[number] - 1U];
        frame.used = true;
        return frame.page;
    }
    if (number >= page_count_)
        throw damaged("un rimando porta alla pagina " + std::to_string(number) + ", che manca");
    auto page = std::make_shared<Page>();
    if (file_->read(std::uint64_t{number} * page_size, *page) != page_size) {
        throw damaged("la pagina " + std::to_string(number) + " manca");
    }
    put_in_cache(number, page);
    return page;
}

void PageStore::put_in_cache(PageNumber number, std::shared_ptr<Page> page) {
    if (frame_of_page_.size() <= number) frame_of_page_.resize(std::max(page_count_, number + 1), 0);
    std::size_t place = frame_of_page_[number];
    if (place != 0) {
        frames_[place - 1].page = std::move(page);
        return;
    }
    if (frames_.size() < cached_pages) {
        frames_.emplace_back();
        place = frames_.size();
    } else {
        while (frames_[clock_].used) {
            frames_[clock_].used = false;
            clock_ = (clock_ + 1) % cached_pages;
        }
        place = clock_ + 1;
        frame_of_page_[frames_[clock_].number] = 0;
        clock_ = (clock_ + 1) % cached_pages;
    }
    frames_[place - 1] = {number, true, std::move(page)};
    frame_of_page_[number] = static_cast<std::uint16_t>(place);
}

void PageStore::begin() {
    if (const std::string reason = why_read_only(); !reason.empty()) {
        throw Failure(access_failure::read_only, source, reason);
    }
    if (ragged_) throw damaged("la sua lunghezza non è un multiplo di una pagina");
    changing_ = true;
    count_before_ = page_count_;
    ++change_count_;
}

Page& PageStore::edit(PageNumber number) {
    if (const auto found = changed_.find(number); found != changed_.end()) return *found->second;
    auto copy = std::make_shared<Page>(*read(number));
    Page& page = *copy;
    changed_.emplace(number, std::move(copy));
    return page;
}

PageNumber PageStore::append() {
    if (page_count_ >= max_pages) {
        throw Failure(access_failure::too_large, source, "Il file ha raggiunto il limite di Access, 2 GB.");
    }
    const PageNumber number = page_count_++;
    changed_.emplace(number, std::make_shared<Page>());
    return number;
}

void PageStore::write_changed() {
    if (journaling_) {
        if (!journal_) {
            journal_ = std::make_unique<Journal>(*file_, count_before_, watch_);
            journaled_.assign(count_before_, false);
        }
        std::vector<PageNumber> old;
        for (const auto& [number, page] : changed_) {
            if (number < count_before_ && !journaled_[number]) old.push_back(number);
        }
        journal_->keep(*file_, old, changed_);
        for (const PageNumber number : old) journaled_[number] = true;
    }
    for (auto& [number, page] : changed_) {
        file_->write(std::uint64_t{number} * page_size, *page);
        put_in_cache(number, page);
    }
    changed_.clear();
}

void PageStore::relieve() {
    if (changed_.size() < changed_pages) return;
    write_changed();
}

void PageStore::commit() {
    if (changed_.empty() && !journal_ && journaling_) {
        changing_ = false;
        return;
    }
    try {
        write_changed();
        file_->sync();
        if (journal_) journal_->finish();
    } catch (const OutcomeUnknown&) {
        unknown_ = true;
        changing_ = false;
        changed_.clear();
        journal_.reset();
        throw;
    } catch (const Failure&) {
        roll_back();
        throw;
    }
    journal_.reset();
    changing_ = false;
    stamp_ = file_->stamp();
    ++change_count_;
}

void PageStore::roll_back() {
    if (!changing_) return;
    changing_ = false;
    changed_.clear();
    if (journal_) {
        journal_.reset();
        broken_ = true;
        mend();
    } else {
        page_count_ = count_before_;
    }
    ++change_count_;
}

} // namespace tarvello::store::access
