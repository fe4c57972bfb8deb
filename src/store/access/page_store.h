#pragma once

#include "store/access/file.h"
#include "store/access/format.h"
#include "store/access/journal.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvello::store::access {

using PageRef = std::shared_ptr<const Page>;

/// The pages of one file: a cache of bounded size, and one change at a time that is kept whole or not at all.
///
/// Between begin() and commit() changed pages live in memory. A statement over the whole file writes them as
/// it goes, see relieve(), their old state in the journal first.
class PageStore {
public:
    /// Opens the file, locks it, and rolls a journal back that a stopped program has left.
    /// @param watch  may be null
    /// @throws Failure if it cannot be opened or another program has it
    PageStore(const std::string& path, FileWatch* watch);
    struct NewFile {};
    /// Makes a file without pages, whose changes go without a journal: nobody reads it before it is whole.
    /// @throws Failure if there is such a file, or it cannot be made
    PageStore(NewFile, const std::string& path, FileWatch* watch);
    ~PageStore();
    PageStore(const PageStore&) = delete;
    PageStore& operator=(const PageStore&) = delete;

    /// What the user must be told of the file as it was opened; empty for nothing.
    const std::string& notice() const { return notice_; }

    PageNumber page_count() const { return page_count_; }
    /// A page as it stands, changes under way included.
    /// @throws Failure if the file has no such page
    PageRef read(PageNumber number);

    /// Starts a change. @throws Failure if the file may only be read, and why
    void begin();
    /// The page to be changed. Only between begin() and commit(); a PageRef got earlier may change with it.
    Page& edit(PageNumber number);
    /// A page behind the last one, all zeros. @return its number
    PageNumber append();
    /// Writes the changed pages if they have become many. No page got from edit() is valid after it.
    void relieve();
    /// Makes the change last. @throws Failure, with the old state restored; OutcomeUnknown, after which
    /// nothing is done any more: only opening the file anew finds out
    void commit();
    /// Back to the state at begin().
    void roll_back();
    bool is_changing() const { return changing_; }

    /// Forgets what it knows if another program has written to the file. @return true if so
    /// @throws Failure if the path does not lead to the file any more, or a write that failed cannot be
    /// undone
    bool notice_others();
    /// Counts the changes to the pages, so that a walk notices that the ground has moved.
    std::uint64_t change_count() const { return change_count_; }

    /// The limits of memory, in pages.
    static constexpr std::size_t cached_pages = 2048;
    static constexpr std::size_t changed_pages = 1024;

private:
    struct Frame {
        PageNumber number = 0;
        bool used = false; // lately: the clock passes it by once
        std::shared_ptr<Page> page;
    };

    void put_in_cache(PageNumber number, std::shared_ptr<Page> page);
    void forget();
    void write_changed();
    std::string why_read_only() const;
    void need_known() const;
    /// Restores the old state if a write has failed and its undoing too. @return false if it fails again
    bool mend();

    FileWatch* watch_;
    bool read_only_file_ = false;
    bool journaling_ = true;
    std::unique_ptr<File> file_;
    std::string notice_;
    PageNumber page_count_ = 0;
    std::uint64_t stamp_ = 0;
    bool ragged_ = false;  // the size is no multiple of a page
    bool broken_ = false;  // the old state has not been restored yet, see mend()
    bool unknown_ = false; // whether the last change is on the disk

    std::vector<Frame> frames_;
    std::vector<std::uint16_t> frame_of_page_; // by page number, 0 = none, else the frame + 1
    std::size_t clock_ = 0;

    bool changing_ = false;
    PageNumber count_before_ = 0;
    Journal::Pages changed_;
    std::vector<bool> journaled_; // by page number
    std::unique_ptr<Journal> journal_;
    std::uint64_t change_count_ = 0;
};

} // namespace tarvello::store::access
