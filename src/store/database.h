#pragma once

#include "store/engine.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvello {

/// The connection to the one database file that is open.
class Connection {
public:
    explicit Connection(const RegionalSettings& regional) : regional_(regional) {}

    bool is_open() const { return engine_ != nullptr; }
    /// @throws Failure if it is open already, or the file cannot be opened as a database; nothing is created
    void open(const std::string& path);
    /// @throws Failure if it is not open
    void close();

    /// Runs one statement. @return the rows of a SELECT, else null
    std::unique_ptr<store::RowSource> execute(std::string_view sql);
    const RegionalSettings& regional() const { return regional_; }

private:
    const RegionalSettings& regional_;
    std::unique_ptr<store::Engine> engine_;
};

/// One of the shared results: forward-only and read-only. Every statement, a writing one too, is run by
/// opening a recordset; one that yields no rows leaves it closed. A statement run by one window moves the
/// current row under every other window that reads the same recordset.
class Recordset {
public:
    /// @throws Failure if it is open already, the connection is closed, or the statement fails
    void open(std::string_view sql, Connection& connection);
    bool is_open() const { return rows_ != nullptr; }
    /// @throws Failure if it is not open
    void close();

    /// True behind the last row, and at once for an empty result.
    /// @throws Failure if it is not open
    bool eof() const;
    /// Unknown for a forward-only result: always -1, also for an empty one.
    /// @throws Failure if it is not open
    int record_count() const;
    /// @throws Failure at the end of the result
    void move_next();
    /// Back to the first row: runs the statement again if the walk has left it.
    void move_first();

    /// The place of a column, without regard to case. @throws Failure if the result has no such column
    std::size_t column(std::string_view name) const;

    /// The value of a column as text.
    /// @throws Failure if it is null, there is no current row, or no such column
    std::string text(std::string_view name) const;
    /// The same with null as the empty text.
    std::string text_or_empty(std::string_view name) const;
    bool is_null(std::string_view name) const;
    /// @throws Failure as text(), and if the column holds no date
    Date date(std::string_view name) const;
    /// The value of a column by its place; see column().
    store::ValueView value(std::size_t column) const;
    const RegionalSettings& regional() const;

private:
    void need_open() const;
    void need_row() const;

    std::unique_ptr<store::RowSource> rows_;
    Connection* connection_ = nullptr;
    std::string sql_;
    bool row_ = false;                    // a current row
    bool first_ = false;                  // and it is the first one
    mutable std::size_t next_column_ = 0; // behind the one last looked up: forms mostly read them in order
};

/// The connection and the shared recordsets of the session.
struct Database {
    explicit Database(const RegionalSettings& regional) : dbConnection(regional) {}

    Connection dbConnection;
    Recordset rsFatture;      ///< statements on Fatture; its current row is the invoice on view
    Recordset rsClienti;      ///< statements on Clienti
    Recordset rsIntestazione; ///< statements on DatiIntestazione
    Recordset rsRiserva;      ///< serves nothing, is only ever closed
    Recordset rsReport;       ///< the rows behind a print report

    /// Closes the shared results but for rsReport; one that is not open is no fault.
    void close_results();
};

} // namespace tarvello
