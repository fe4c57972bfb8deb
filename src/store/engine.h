#pragma once

#include "store/statement.h"
#include "store/value.h"
#include "text/regional_settings.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What the store asks of a database engine. The engine is chosen by the first bytes of the file when it is
/// opened.
///
/// Rules that hold for every engine:
/// - A literal becomes a value of the declared type of the column that it is compared with or written to: a
/// date
///   column takes the short form of the regional settings, a number column refuses a text that is no number.
///   See convert_literal.
/// - Texts compare without regard to letter case, in all of Unicode; LIKE knows %, _ and [lists], see
/// LikePattern.
/// - A SELECT without ORDER BY yields the order of the primary key, or of entry where a table has none.
/// - Rows come lazily: the first row of a large result costs one row.
/// - A statement is all or nothing, and on disk when run() returns.
namespace tarvello::store {

struct Column {
    std::string name;
    ColumnType type = ColumnType::text;
};

/// A result, walked forward. Standing before its first row when it is made.
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

/// The value of a literal for a column of that type.
/// @throws Failure (type mismatch) if the text does not convert
Value convert_literal(const Literal& literal, const Column& column, const RegionalSettings& regional);

/// A value as the text that the forms see: numbers plain, dates in the short form.
std::string value_text(const ValueView& value, const RegionalSettings& regional);

/// A pattern of LIKE: % any characters, _ one, [abc], [a-z] and [!a-z] one of a list. Regardless of letter
/// case.
class LikePattern {
public:
    explicit LikePattern(std::string_view pattern);
    bool matches(std::string_view text) const;

private:
    struct Item;
    std::vector<Item> items_;
    std::string plain_; // "%plain%" without wildcards inside, case folded: the usual case
    bool contains_only_ = false;

public:
    ~LikePattern();
    LikePattern(LikePattern&&) noexcept;
    LikePattern& operator=(LikePattern&&) noexcept;
};

} // namespace tarvello::store
