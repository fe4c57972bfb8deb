#pragma once

#include "store/access/access_file.h"
#include "store/access/conditions.h"
#include "store/access/index_cursor.h"
#include "store/access/table_rows.h"

#include <memory>
#include <optional>

namespace tarvello::store::access {

/// The rows that a statement is about, in its order, found one by one. Where an index serves the conditions
/// or the order it is walked; where none does, the table is.
class Selection {
public:
    /// @throws Failure if a literal does not convert
    Selection(std::shared_ptr<AccessFile> file, std::shared_ptr<const OpenTable> table,
              const Statement& statement);
    ~Selection();
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    struct Found {
        RowPointer place;
        RowBytes row; ///< valid until the next row is asked for, or something is written
    };
    /// @return nothing at the end
    std::optional<Found> next();

private:
    class Source;
    class TableSource;
    class IndexSource;
    class SortedSource;

    std::unique_ptr<Source> make_source(const Places& places, const Statement& statement);
    std::unique_ptr<Source> sorted(std::unique_ptr<Source> rows, std::optional<std::size_t> column,
                                   bool descending, std::optional<std::int64_t> most);
    std::unique_ptr<Source> natural_order();
    bool walkable(const IndexDefinition& index) const;

    std::shared_ptr<AccessFile> file_;
    std::shared_ptr<const OpenTable> table_;
    Conditions conditions_;
    std::optional<std::int64_t> left_; // of TOP
    std::unique_ptr<Source> source_;
};

} // namespace tarvello::store::access
