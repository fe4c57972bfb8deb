#include "store/database.h"

#include "failure.h"
#include "store/failure_source.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello {
namespace {

Failure lost_transaction() {
    return Failure(failure_number::database, store::source,
                   "Una delle operazioni da eseguire insieme non è riuscita: l'archivio resta com'era.");
}

} // namespace

// Connection

template <typename Act>
auto Connection::within_transaction(Act act) {
    if (transaction_ && transaction_->lost_) throw lost_transaction();
    try {
        return act();
    } catch (...) {
        // Neither engine can take back one statement of several: what is left is to take back all.
        if (transaction_) transaction_->lost_ = true;
        throw;
    }
}

void Connection::open(const std::string& path) {
    if (engine_) throw Failure(failure_number::object_open, store::source, "Un database è già aperto.");
    engine_ = store::open_engine(path, regional_);
    path_ = path;
}

void Connection::close() {
    engine();
    if (transaction_) transaction_->connection_ = nullptr;
    transaction_ = nullptr;
    needed_.clear();
    engine_.reset(); // takes a transaction under way back
}

store::Engine& Connection::engine() const {
    if (!engine_) throw Failure(failure_number::object_closed, store::source, "Nessun database è aperto.");
    return *engine_;
}

std::unique_ptr<store::RowSource> Connection::execute(std::string_view sql, const Parameters& parameters) {
    engine();
    return within_transaction([&] {
        store::Statement statement = store::parse_statement(sql);
        store::bind_parameters(statement, parameters);
        return engine_->run(statement);
    });
}

std::int64_t Connection::inserted_key() const {
    if (const auto key = engine().last_autonumber()) return *key;
    throw Failure(failure_number::no_such_element, store::source,
                  "L'ultima istruzione INSERT non ha dato alcun numero automatico.");
}

void Connection::need_table(const store::TableDeclaration& table) {
    engine();
    if (std::find(needed_.begin(), needed_.end(), table) != needed_.end()) return;
    within_transaction([&] {
        store::check_declaration(table);
        engine_->create_table(table);
    });
    needed_.push_back(table);
}

// Transaction

Transaction::Transaction(Connection& connection) : connection_(&connection) {
    if (connection.transaction_) {
        throw Failure(failure_number::object_open, store::source,
                      "Una transazione è già in corso: l'operazione va ripetuta quando è finita.");
    }
    connection.engine().begin();
    connection.transaction_ = this;
}

Transaction::~Transaction() {
    if (!connection_) return;
    connection_->transaction_ = nullptr;
    connection_->needed_.clear(); // they may have been made in it
    connection_->engine_->roll_back();
}

void Transaction::commit() {
    if (!connection_ || lost_) throw lost_transaction();
    connection_->engine_->commit();
    connection_->transaction_ = nullptr;
    connection_ = nullptr;
}

// Recordset

void Recordset::open(std::string_view sql, Connection& connection, Parameters parameters) {
    if (rows_)
        throw Failure(failure_number::object_open, store::source,
                      "L'operazione richiede un risultato chiuso.");
    auto rows = connection.execute(sql, parameters);
    const bool row = rows && rows->next(); // fails before anything here has changed
    rows_ = std::move(rows);
    connection_ = &connection;
    sql_ = sql;
    parameters_ = std::move(parameters);
    row_ = row;
    first_ = row;
}

void Recordset::close() {
    need_open();
    rows_.reset();
    row_ = false;
}

bool Recordset::eof() const {
    need_open();
    return !row_;
}

int Recordset::record_count() const {
    need_open();
    return -1;
}

void Recordset::move_next() {
    need_row();
    row_ = first_ = false; // no row is current if the move fails
    row_ = rows_->next();
}

void Recordset::move_first() {
    need_open();
    if (first_) return;
    row_ = false;
    rows_ = connection_->execute(sql_, parameters_);
    row_ = first_ = rows_->next();
    need_row();
}

std::size_t Recordset::column(std::string_view name) const {
    need_open();
    const auto& columns = rows_->columns();
    if (next_column_ >= columns.size()) next_column_ = 0;
    if (columns[next_column_].name == name) return next_column_++;
    const auto find = [&](auto same) {
        const auto found = std::find_if(columns.begin(), columns.end(), same);
        if (found == columns.end()) return false;
        next_column_ = static_cast<std::size_t>(found - columns.begin()) + 1;
        return true;
    };
    if (find([&](const store::Column& column) { return column.name == name; }) ||
        find([&](const store::Column& column) { return equal_ignoring_case(column.name, name); })) {
        return next_column_ - 1;
    }
    throw Failure(failure_number::no_such_element, store::source,
                  "La colonna \"" + std::string(name) + "\" non esiste.");
}

std::string Recordset::text(std::string_view name) const {
    const store::ValueView found = value(column(name));
    if (std::holds_alternative<std::monostate>(found)) {
        throw Failure(failure_number::invalid_use_of_null, store::source,
                      "La colonna \"" + std::string(name) + "\" non ha un valore.");
    }
    return store::value_text(found, regional());
}

std::string Recordset::text_or_empty(std::string_view name) const {
    const store::ValueView found = value(column(name));
    return std::holds_alternative<std::monostate>(found) ? std::string()
                                                         : store::value_text(found, regional());
}

bool Recordset::is_null(std::string_view name) const {
    return std::holds_alternative<std::monostate>(value(column(name)));
}

Date Recordset::date(std::string_view name) const {
    const store::ValueView found = value(column(name));
    if (const Date* date = std::get_if<Date>(&found)) return *date;
    if (!std::holds_alternative<std::monostate>(found)) {
        if (const auto read = read_date(store::value_text(found, regional()), regional())) return *read;
    }
    throw Failure(failure_number::type_mismatch, store::source,
                  "La colonna \"" + std::string(name) + "\" non contiene una data.");
}

template <typename Wanted>
Wanted Recordset::get(std::string_view name, const char* what) const {
    const store::ValueView found = value(column(name));
    if (const auto* wanted = std::get_if<Wanted>(&found)) return *wanted;
    throw Failure(failure_number::type_mismatch, store::source,
                  "La colonna \"" + std::string(name) + "\" non contiene " + what + ".");
}

Amount Recordset::amount(std::string_view name) const { return get<Amount>(name, "un importo"); }

std::int64_t Recordset::whole(std::string_view name) const {
    return get<std::int64_t>(name, "un numero intero");
}

bool Recordset::yes(std::string_view name) const { return get<bool>(name, "un sì o un no"); }

store::ValueView Recordset::value(std::size_t column) const {
    need_row();
    return rows_->value(column);
}

const RegionalSettings& Recordset::regional() const {
    need_open();
    return connection_->regional();
}

void Recordset::need_open() const {
    if (!rows_)
        throw Failure(failure_number::object_closed, store::source,
                      "L'operazione richiede un risultato aperto.");
}

void Recordset::need_row() const {
    need_open();
    if (!row_) throw store::no_current_row();
}

// Database

void Database::close_results() {
    for (Recordset* result : {&rsFatture, &rsClienti, &rsIntestazione, &rsRiserva}) {
        if (result->is_open()) result->close();
    }
}

} // namespace tarvello
