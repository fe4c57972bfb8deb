#include "store/access/access_engine.h"

#include "store/access/access_check.h"
#include "store/access/access_file.h"
#include "store/access/empty_file.h"
#include "store/access/selection.h"
#include "store/access/stored_tables.h"
#include "store/access/table_fill.h"
#include "store/access/table_maker.h"

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
        if (!row_) throw no_current_row();
        if (!values_.at(column)) read(column);
        return *values_[column];
    }

private:
    void need_open() const {
        if (!file_->is_open()) throw database_closed();
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

/// Hands rows on; the engine that ends the transaction finishes their table.
class AccessSink final : public RowSink {
public:
    explicit AccessSink(std::shared_ptr<TableFill> fill) : fill_(std::move(fill)) {}
    void add(std::span<const ValueView> values) override { fill_->add(values); }

private:
    std::shared_ptr<TableFill> fill_;
};

class AccessEngine final : public Engine {
public:
    explicit AccessEngine(std::shared_ptr<AccessFile> file) : file_(std::move(file)) {}
    ~AccessEngine() override {
        fills_.clear();
        file_->close();
    }
    AccessEngine(const AccessEngine&) = delete;
    AccessEngine& operator=(const AccessEngine&) = delete;

    std::unique_ptr<RowSource> run(const Statement& statement) override {
        start();
        auto table = file_->table(statement.table);
        if (statement.kind == StatementKind::select) {
            return std::make_unique<AccessRows>(file_, std::move(table), statement);
        }
        write(std::move(table), statement);
        return nullptr;
    }

    void check() override {
        start();
        check_tables(file_->store());
    }

    std::string notice() const override { return file_->store().notice(); }

    std::optional<std::int64_t> last_autonumber() const override { return last_autonumber_; }

    void begin() override {
        file_->start_statement();
        file_->store().begin();
    }

    void commit() override {
        try {
            finish_fills();
            file_->store().commit();
        } catch (...) {
            roll_back();
            throw;
        }
    }

    void roll_back() noexcept override {
        fills_.clear();
        file_->store().roll_back();
        file_->forget_tables(); // some may have been made in what is taken back
    }

    std::vector<StoredTable> tables() override {
        start();
        return stored_tables(file_->store());
    }

    void create_table(const TableDeclaration& wanted) override {
        start();
        PageStore& store = file_->store();
        const auto there = Catalogue(store).find(wanted.name);
        if (there && has_all(store, *there, wanted)) return;
        change([&] {
            TableMaker maker(store);
            if (there) {
                maker.complete(*there, wanted);
            } else {
                maker.make(wanted);
            }
        });
        file_->forget_tables();
    }

    std::unique_ptr<RowSink> fill(const std::string& name, const std::vector<std::string>& columns) override {
        start();
        const auto table = file_->table(name);
        if (!table->why_not_writable.empty()) throw not_writable(table->why_not_writable);
        std::vector<std::size_t> places;
        places.reserve(columns.size());
        for (const std::string& column : columns) places.push_back(table->table.place_of(column));
        fills_.push_back(std::make_shared<TableFill>(file_->store(), table->definition, std::move(places)));
        return std::make_unique<AccessSink>(fills_.back());
    }

private:
    void start() {
        file_->start_statement();
        finish_fills();
    }

    void finish_fills() {
        for (const auto& fill : fills_) fill->finish();
        fills_.clear();
    }

    /// Makes a change that lasts, or is part of the one under way.
    template <typename Act>
    void change(Act act) {
        PageStore& store = file_->store();
        if (store.is_changing()) {
            act();
            return;
        }
        store.begin();
        try {
            act();
            store.commit();
        } catch (...) {
            // Whatever it was, no half of it stays.
            store.roll_back();
            throw;
        }
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
        std::vector<ValueView> views;
        views.reserve(values.size());
        for (const Value& value : values) views.push_back(view_of(value));
        // All rows before the first changes: a change may move a row in its index.
        std::vector<RowPointer> rows;
        if (statement.kind != StatementKind::insert) {
            Selection selection(file_, table, statement);
            while (const auto found = selection.next()) rows.push_back(found->place);
        }
        change([&] {
            TableWriter writer(store, *table->definition);
            if (statement.kind == StatementKind::insert) {
                writer.insert(places.assignments, views);
                last_autonumber_ = writer.last_number();
            }
            for (const RowPointer row : rows) {
                if (statement.kind == StatementKind::update) {
                    writer.update(row, places.assignments, views);
                } else {
                    writer.erase(row);
                }
                store.relieve();
            }
        });
    }

    std::shared_ptr<AccessFile> file_;
    std::vector<std::shared_ptr<TableFill>> fills_; // under way
    std::optional<std::int64_t> last_autonumber_;
};

} // namespace
} // namespace access

std::unique_ptr<Engine> make_access_engine(const std::string& path, const RegionalSettings& regional) {
    using namespace access;
    auto store = std::make_unique<PageStore>(PageStore::NewFile(), path, nullptr);
    store->begin();
    fill_empty_file(*store);
    store->commit();
    return std::make_unique<AccessEngine>(std::make_shared<AccessFile>(std::move(store), regional));
}

std::unique_ptr<Engine> open_access_engine(const std::string& path, const RegionalSettings& regional,
                                           access::FileWatch* watch) {
    return std::make_unique<access::AccessEngine>(
        std::make_shared<access::AccessFile>(path, regional, watch));
}

} // namespace tarvello::store
