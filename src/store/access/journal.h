#pragma once

#include "store/access/file.h"
#include "store/access/format.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// The rollback journal: the old pages of a statement under way, in a file beside the database. Whoever finds
/// it puts the old pages back. The format itself keeps none, and a stop between two page writes would ruin
/// the file.
///
/// The journal is a head and segments. The head holds a magic, the size of the database in pages before the
/// statement, and a sum of the database's first page, which never changes. A segment holds old pages, sums of
/// what pages become, and a sum over all of it; it is synced before the first of these pages is written to
/// the database, so a segment that is not whole has changed nothing.
///
/// A journal may come to lie beside a file that is not the one it was written for: a copy put in its place,
/// or the file itself after another program has written to it. So old pages are put back only if every page
/// is, sector by sector, its old self or one of those that the statement made of it.
namespace tarvello::store::access {

class Journal {
public:
    /// The place of the journal of a database: beside the file itself, also of one that a link leads to.
    static std::string path_of(const std::string& database) { return File::real_path(database) + "-undo"; }

    /// Starts the journal of a statement.
    /// @param pages  the size of the database
    Journal(const File& database, PageNumber pages, FileWatch* watch);

    using Pages = std::map<PageNumber, std::shared_ptr<Page>>;
    /// Adds pages as they stand in the database, and notes what pages will be; all of it is on disk when it
    /// returns.
    void keep(const File& database, const std::vector<PageNumber>& old, const Pages& becoming);

    /// Ends the statement: from here on the journal rolls nothing back. Then removes it.
    /// @throws OutcomeUnknown if the disk does not tell whether it has ended; Failure if it has not
    void finish();
    /// found: left by some process. own: of this one, so that nobody else has written to the file since.
    enum class Origin : std::uint8_t { found, own };
    /// Puts the old pages of the journal beside a database back, if there is one, and removes it. A found one
    /// that does not go with the file is put aside under another name.
    /// @return what the user is to know of that; else empty
    /// @throws Failure if the disk fails: the journal then stays
    static std::string roll_back(File& database, FileWatch* watch, Origin origin);

private:
    // magic (16), pages (4), 0 (4), sum of the database's first page (8), sum of the head so far (8)
    static constexpr std::size_t head_size = 40;
    friend class FoundJournal;

    std::array<std::uint8_t, head_size> head_{};
    std::string path_;
    FileWatch* watch_;
    std::unique_ptr<File> file_;
    std::uint64_t end_ = 0;
    bool folder_synced_ = false;
};

} // namespace tarvello::store::access
