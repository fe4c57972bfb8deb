#pragma once

#include "store/declaration.h"
#include "store/statement.h"
#include "store/table.h"
#include "store/value.h"
#include "text/regional_settings.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
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
/// - A statement is all or nothing, and on disk when run() returns; between begin() and commit() it is on
///   disk when commit() returns.
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

/// A table that a file holds.
struct StoredTable {
    TableDeclaration declaration;           ///< as far as one can tell it
    std::vector<std::string> other_columns; ///< whose values are of no kind that the program knows
    std::int64_t rows = 0; ///< as the file counts them; Access lets the count of a table go at times
};

/// Rows on their way into a table, see Engine::fill.
class RowSink {
public:
    virtual ~RowSink() = default;

    /// @param values  one for each column, of the alternative that goes with the column's type, or null; they
    ///                need not live longer than the call
    /// @throws Failure, with which the whole transaction is lost
    virtual void add(std::span<const ValueView> values) = 0;
};

class Engine {
public:
    virtual ~Engine() = default;

    /// What the user must be told of the file as it was opened; empty for nothing.
    virtual std::string notice() const { return {}; }

    /// Looks at all that the file holds, indexes too. @throws Failure that says what is wrong with it
    virtual void check() = 0;

    /// Runs one statement. @return the rows of a SELECT, null for every other statement
    /// @throws Failure
    virtual std::unique_ptr<RowSource> run(const Statement& statement) = 0;
    /// The autonumber of the row that the last INSERT made. @return nothing if its table has none
    virtual std::optional<std::int64_t> last_autonumber() const = 0;

    /// From here to commit() or roll_back() all statements, new tables and filled rows are one change, which
    /// later statements see. After a Failure in between only roll_back() may follow. Never nested.
    /// @throws Failure if the file may not be written
    virtual void begin() = 0;
    /// @throws Failure, and nothing is changed
    virtual void commit() = 0;
    /// Results that were begun before go on, but for a Failure if a table was made in between.
    virtual void roll_back() noexcept = 0;

    /// The tables of the file, without those of the engine itself.
    virtual std::vector<StoredTable> tables() = 0;
    /// Makes a table; one that is there gets the columns and indexes that it lacks. Nothing is written, and
    /// so nothing refused, if it lacks nothing.
    /// @param table  as check_declaration wants it, but for names, which any engine has its own rules for
    /// @throws Failure if the file may not be written, and why; or if a table that is there lacks a column
    ///         that this engine cannot add to it
    virtual void create_table(const TableDeclaration& table) = 0;
    /// The way in for very many rows, keys included. Within a transaction; the sink ends before it does.
    /// @param columns  each of the table's at most once; the others become null
    virtual std::unique_ptr<RowSink> fill(const std::string& table,
                                          const std::vector<std::string>& columns) = 0;
};

/// Opens a database file, whatever its engine.
/// @param path  an existing file; nothing is ever created
/// @throws Failure if the file does not exist, cannot be read, or is no database
std::unique_ptr<Engine> open_engine(const std::string& path, const RegionalSettings& regional);

} // namespace tarvello::store
