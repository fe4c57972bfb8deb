#pragma once

#include "store/statement.h"
#include "store/table.h"
#include "store/value.h"
#include "text/regional_settings.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// What the store asks of a database engine. The engine is chosen by the first bytes of the file when it is
/// opened.
///
/// Rules that hold for every engine:
/// - A literal becomes a value of the declared type of the column that it is compared with or written to: a
///   date column takes the short form of the regional settings, a number column refuses a text that is no
///   number. See convert_literal and convert_comparand.
/// - Texts compare without regard to letter case, in all of Unicode; LIKE knows %, _ and [lists], see
///   LikePattern.
/// - A SELECT without ORDER BY yields the order of the primary key, or of entry where a table has none.
/// - Rows come lazily: the first row of a large result costs one row.
/// - A statement is all or nothing, and on disk when run() returns.
/// - Several results may be walked at the same time, and statements may write meanwhile.
namespace tarvello::store {

/// A result, walked forward. Standing before its first row when it is made. It may outlive its engine:
/// what it is asked for then is a Failure.
class RowSource {
public:
    virtual ~RowSource() = default;

    virtual const std::vector<Column>& columns() const = 0;
    /// Moves on to the next row. @return false past the last one
    virtual bool next() = 0;
    /// The value of a column of the current row, valid until the next move.
    virtual ValueView value(std::size_t column) const = 0;
};

class Engine {
public:
    virtual ~Engine() = default;

    /// Runs one statement. @return the rows of a SELECT, null for every other statement
    /// @throws Failure
    virtual std::unique_ptr<RowSource> run(const Statement& statement) = 0;
};

/// Opens a database file, whatever its engine.
/// @param path  an existing file; nothing is ever created
/// @throws Failure if the file does not exist, cannot be read, or is no database
std::unique_ptr<Engine> open_engine(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
