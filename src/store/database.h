#pragma once

#include "store/engine.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello {

/// The values of the ? of a statement, in their order. A text goes as a quoted literal does: a date or a
/// number may be written as the regional settings write it.
using Parameters = std::vector<store::Value>;

class Transaction;

/// The connection to the one database file that is open.
class Connection {
public:
    explicit Connection(const RegionalSettings& regional) : regional_(regional) {}

    bool is_open() const { return engine_ != nullptr; }
    /// The file that is open, or was open last; empty before the first.
    const std::string& path() const { return path_; }
    /// @throws Failure if it is open already, or the file cannot be opened as a database; nothing is created
    void open(const std::string& path);
    /// @throws Failure if it is not open
    void close();

    /// Runs one statement. @return the rows of a SELECT, else null
    /// @throws Failure; a transaction is lost with it
    std::unique_ptr<store::RowSource> execute(std::string_view sql, const Parameters& parameters = {});
    /// The autonumber of the row that the last INSERT made. @throws Failure if it was given none
    std::int64_t inserted_key() const;
    /// Makes a table of the program's own if the file lacks it, or what columns it lacks.
    /// @throws Failure if the file may not be written, and why; the table is as it was
    void need_table(const store::TableDeclaration& table);

    /// The engine of the open file, for what goes beyond single statements. @throws Failure if none is open
    store::Engine& engine() const;
    const RegionalSettings& regional() const { return regional_; }

private:
    friend class Transaction;
    /// Runs `act`; the transaction under way is lost if it fails.
    template <typename Act>
    auto within_transaction(Act act);

    const RegionalSettings& regional_;
    std::unique_ptr<store::Engine> engine_;
    std::string path_;
    std::vector<store::TableDeclaration> needed_; // tables that are there for sure
    Transaction* transaction_ = nullptr;
};

/// Several statements as one: all of them are on disk when commit() returns, or none ever.
///
///     Transaction transaction(connection);
///     connection.execute("INSERT INTO ...", {...});
///     connection.execute("UPDATE ...", {...});
///     transaction.commit();
class Transaction {
public:
    /// @throws Failure if another transaction is under way, or the file may not be written
    explicit Transaction(Connection& connection);
    /// Takes everything back that was not committed.
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// @throws Failure if a statement has failed in between or the file could not be written; then nothing
    ///         has changed
    void commit();

private:
    friend class Connection;

    Connection* connection_; // null when it is over
    bool lost_ = false;      // a statement has failed
};

/// One of the shared results: forward-only and read-only. Every statement, a writing one too, is run by
/// opening a recordset; one that yields no rows leaves it closed. A statement run by one window moves the
/// current row under every other window that reads the same recordset.
class Recordset {
public:
    /// @throws Failure if it is open already, the connection is closed, or the statement fails
    void open(std::string_view sql, Connection& connection, Parameters parameters = {});
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
    /// @throws Failure as text(), and if the column holds none
    Amount amount(std::string_view name) const;
    /// @throws Failure as text(), and if the column holds none
    std::int64_t whole(std::string_view name) const;
    /// @throws Failure as text(), and if the column holds neither yes nor no
    bool yes(std::string_view name) const;
    /// The value of a column by its place; see column().
    store::ValueView value(std::size_t column) const;
    const RegionalSettings& regional() const;

private:
    void need_open() const;
    void need_row() const;
    template <typename Wanted>
    Wanted get(std::string_view name, const char* what) const;

    std::unique_ptr<store::RowSource> rows_;
    Connection* connection_ = nullptr;
    std::string sql_;
    Parameters parameters_;
    bool row_ = false;                    // a current row
    bool first_ = false;                  // and it is the first one
    mutable std::size_t next_column_ = 0; // behind the one last looked up: forms mostly read them in order
};

/// The letterhead: one row, or none.
inline constexpr const char* select_letterhead = "SELECT * FROM DatiIntestazione";

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
