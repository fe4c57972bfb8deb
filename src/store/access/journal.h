#pragma once

#include "store/access/file.h"
#include "store/access/format.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The rollback journal: the old pages of a statement under way, in a file beside the database. Whoever finds
/// it puts the old pages back. The format itself keeps none, and a stop between two page writes would ruin
/// the file.
///
/// The journal is a head and segments. The head holds a magic, the size of the database in pages before the
/// statement, and a sum of the database's first page, which never changes: a journal that lies beside another
/// file is not its own. A segment is a count and so many pages with their numbers, and a sum over all of it;
/// it is synced before the first of its pages is changed in the database, so a segment that is not whole has
/// changed nothing.
namespace tarvello::store::access {

class Journal {
public:
    /// The place of the journal of a database: beside the file itself, also of one that a link leads to.
    static std::string path_of(const std::string& database) { return File::real_path(database) + "-undo"; }

    /// Starts the journal of a statement.
    /// @param pages  the size of the database
    Journal(const File& database, PageNumber pages, FileWatch* watch);

    /// Adds the pages as they stand in the database, and has them on disk when it returns.
    void keep(const File& database, const std::vector<PageNumber>& pages);

    /// Ends the statement: from here on the journal rolls nothing back. Then removes it.
    void finish();
    /// Puts the old pages of the journal beside a database back, if there is one, and removes it.
    /// @return true if pages were put back
    /// @throws Failure if it belongs to another file, or the disk fails: the journal then stays
    static bool roll_back(File& database, FileWatch* watch);

private:
    // magic (16), pages (4), 0 (4), sum of the database's first page (8), sum of the head so far (8)
    static constexpr std::size_t head_size = 40;

    std::array<std::uint8_t, head_size> head_{};
    std::string path_;
    FileWatch* watch_;
    std::unique_ptr<File> file_;
    std::uint64_t end_ = 0;
    bool folder_synced_ = false;
};

} // namespace tarvello::store::access
