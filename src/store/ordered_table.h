#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tarvello::store {

/// One table of a database file, open for reading and walked in the order of an index: texts without regard
/// to letter case, in all of Unicode.
class OrderedTable {
public:
    virtual ~OrderedTable() = default;

    /// Goes to the first row whose key is not below this one.
    /// @return false if there is none; then there is no current row
    /// @throws Failure if the file cannot be read
    virtual bool seek(std::string_view key) = 0;
    /// A column of the current row, null as the empty text; valid until the next seek.
    /// @throws Failure if there is no current row or no such column
    virtual std::string_view text(std::string_view column) const = 0;
};

/// Opens a table of a file read-only; the file is never created or changed.
/// @param index   the index that gives the order
/// @param column  the column that the index is on
/// @throws Failure if the file does not exist, is no database, or has no such table or index
std::unique_ptr<OrderedTable> open_ordered_table(const std::string& path, const std::string& table,
                                                 const std::string& index, const std::string& column);

} // namespace tarvello::store
