#include "store/access/access_engine.h"

#include "store/access/access_file.h"
#include "store/access/selection.h"
#include "store/access/table_writer.h"

#include <utility>

namespace tarvello::store {
namespace access {
namespace {

/// The result of a SELECT. The current row is a copy: what others write does not change it.
class AccessRows final : public RowSource {
public:
    AccessRows(std::shared_ptr<AccessFile> file, std::shared_ptr<const OpenTable> table,
               const Statement& statement)
        : file_(std::move(file)), table_(std::move(table)), selection_(file_, table_, statement),
          texts_(table_->table.columns.size()), values_(table_->table.columns.size()) {}

    const std::vector<Column>& columns() const override { return table_->table.columns; }

    bool next() override {
        need_open();
        auto found = selection_.next();
        row_.reset();
        if (!found) return false;
        bytes_.assign(found->row.bytes.begin(), found->row.bytes.end());
        row_.emplace(bytes_, *table_->definition);
        // What lies outside of the row is read now: later it may not be there any more.
        const auto& definitions = table_->definition->columns;
        for (std::size_t i = 0; i < values_.size(); ++i) {
            values_[i].reset();
            if (definitions[i].type == StoredType::memo) read(i);
        }
        return true;
    }

    ValueView value(std::size_t column) const override {
        need_open();
        if (!row_) throw Failure(failure_number::no_current_record, source, "Nessuna riga corrente.");
        if (!values_.at(column)) read(column);
        return *values_[column];
    }

private:
    void need_open() const {
        if (!file_->is_open())
            throw Failure(failure_number::object_closed, source, "Il database è stato chiuso.");
    }
    void read(std::size_t column) const {
        values_[column] =
            read_value(file_->store(), *row_, table_->definition->columns[column], texts_[column]);
    }

    std::shared_ptr<AccessFile> file_;
    std::shared_ptr<const OpenTable> table_;
    Selection selection_;
    std::vector<std::uint8_t> bytes_;
    std::optional<RowView> row_;
    mutable std::vector<std::string> texts_;
    mutable std::vector<std::optional<ValueView>> values_; // those that have been asked for
};

class AccessEngine final : public Engine {
public:
    AccessEngine(const std::string& path, const RegionalSettings& regional, FileWatch* watch)
        : file_(std::make_shared<AccessFile>(path, regional, watch)) {}
    ~AccessEngine() override { file_->close(); }
    AccessEngine(const AccessEngine&) = delete;
    AccessEngine& operator=(const AccessEngine&) = delete;

    std::unique_ptr<RowSource> run(const Statement& statement) override {
        file_->start_statement();
        auto table = file_->table(statement.table);
        if (statement.kind == StatementKind::select) {
            return std::make_unique<AccessRows>(file_, std::move(table), statement);
        }
        write(std::move(table), statement);
        return nullptr;
    }

    // Not for Access files yet.
    std::optional<std::int64_t> last_autonumber() const override { return std::nullopt; }
    void begin() override { fail_for_access(); }
    void commit() override { fail_for_access(); }
    void roll_back() noexcept override {}
    std::vector<StoredTable> tables() override { fail_for_access(); }
    void create_table(const TableDeclaration&) override { fail_for_access(); }
    std::unique_ptr<RowSink> fill(const std::string&, const std::vector<std::string>&) override {
        fail_for_access();
    }

private:
    [[noreturn]] static void fail_for_access() {
        throw not_writable("Questa operazione non è ancora possibile su un file Access.");
    }

    void write(std::shared_ptr<const OpenTable> table, const Statement& statement) {
        PageStore& store = file_->store();
        if (!table->why_not_writable.empty()) throw not_writable(table->why_not_writable);
        const Places places = find_places(statement, table->table);
        std::vector<Value> values;
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            values.push_back(convert_literal(statement.assignments[i].literal,
                                             table->table.columns[places.assignments[i]], file_->regional()));
        }
        std::vector<RowPointer>
            rows; // all of them before the first changes: a change may move a row in its index
        if (statement.kind != StatementKind::insert) {
            Selection selection(file_, table, statement);
            while (const auto found = selection.next()) rows.push_back(found->place);
        }
        store.begin();
        try {
            TableWriter writer(store, *table->definition);
            if (statement.kind == StatementKind::insert) writer.insert(places.assignments, values);
            for (const RowPointer row : rows) {
                if (statement.kind == StatementKind::update) {
                    writer.update(row, places.assignments, values);
                } else {
                    writer.erase(row);
                }
                store.relieve();
            }
            store.commit();
        } catch (...) {
            // Whatever it was, no half of a statement stays.
            store.roll_back();
            throw;
        }
    }

    std::shared_ptr<AccessFile> file_;
};

} // namespace
} // namespace access

std::unique_ptr<Engine> make_access_engine(const std::string&, const RegionalSettings&) {
    throw access::not_writable("Un nuovo archivio nel formato Access non si può ancora creare.");
}

std::unique_ptr<Engine> open_access_engine(const std::string& path, const RegionalSettings& regional,
                                           access::FileWatch* watch) {
    return std::make_unique<access::AccessEngine>(path, regional, watch);
}

} // namespace tarvello::store
