#include "store/sqlite/sqlite_engine.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/sqlite/query.h"
#include "store/sqlite/run.h"
#include "store/sqlite/schema.h"

#include <sqlite3.h>

#include <unordered_map>
#include <utility>

namespace tarvello::store {
namespace {

/// Plans kept: more than the program has shapes of statements.
constexpr std::size_t most_plans = 100;

class SqliteRows final : public RowSource {
public:
    explicit SqliteRows(Run run) : run_(std::move(run)) {}

    const std::vector<Column>& columns() const override { return run_.plan().table->columns; }

    bool next() override {
        need_open();
        if (!done_) done_ = !run_.step();
        return !done_;
    }

    ValueView value(std::size_t column) const override {
        need_open();
        return read_value(run_.statement(), static_cast<int>(column), columns()[column].type);
    }

private:
    void need_open() const {
        if (!run_.file().is_open()) throw database_closed();
    }

    Run run_;
    bool done_ = false;
};

class SqliteSink final : public RowSink {
public:
    SqliteSink(std::shared_ptr<SqliteFile> file, const std::string& table,
               const std::vector<std::string>& columns)
        : file_(std::move(file)) {
        std::string names;
        std::string values;
        for (const std::string& column : columns) {
            names += (names.empty() ? "" : ",") + quoted_name(column);
            values += values.empty() ? "?" : ",?";
        }
        statement_ =
            file_->prepare("INSERT INTO " + quoted_name(table) + " (" + names + ") VALUES (" + values + ")");
    }
    ~SqliteSink() override {
        if (file_->is_open()) sqlite3_finalize(statement_);
    }
    SqliteSink(const SqliteSink&) = delete;
    SqliteSink& operator=(const SqliteSink&) = delete;

    void add(std::span<const ValueView> values) override {
        int index = 0;
        for (const ValueView& value : values) {
            if (const int code = bind_value(statement_, ++index, value); code != SQLITE_OK) file_->fail(code);
        }
        const int code = sqlite3_step(statement_);
        sqlite3_reset(statement_);
        if (code != SQLITE_DONE) file_->fail(code);
    }

private:
    std::shared_ptr<SqliteFile> file_;
    sqlite3_stmt* statement_ = nullptr;
};

class SqliteEngine final : public Engine {
public:
    SqliteEngine(std::shared_ptr<SqliteFile> file, const RegionalSettings& regional)
        : regional_(regional), file_(std::move(file)) {}
    ~SqliteEngine() override { file_->close(); }

    std::string notice() const override { return file_->notice(); }

    void check() override {
        Query look(*file_, "PRAGMA integrity_check(1)");
        if (!look.next() || look.text(0) != "ok") file_->fail(SQLITE_CORRUPT);
    }

    std::unique_ptr<RowSource> run(const Statement& statement) override {
        if (file_->forget_what_is_in_doubt()) plans_.clear();
        file_->need_in_place();
        const bool reads = statement.kind == StatementKind::select;
        if (!reads) file_->need_writable();
        Run run(plan_of(statement));
        run.bind_literals(statement, regional_);
        if (reads) return std::make_unique<SqliteRows>(std::move(run));
        run.step();
        if (statement.kind == StatementKind::insert) {
            last_autonumber_.reset();
            if (run.plan().table->gives_key) last_autonumber_ = sqlite3_last_insert_rowid(file_->handle());
        }
        return nullptr;
    }

    std::optional<std::int64_t> last_autonumber() const override { return last_autonumber_; }

    void begin() override {
        file_->need_in_place();
        file_->need_writable();
        Query(*file_, "BEGIN IMMEDIATE").run();
    }

    void commit() override { Query(*file_, "COMMIT").run(); }

    void roll_back() noexcept override {
        // A failure may have rolled it back already. What is left then is none of it either way.
        sqlite3_exec(file_->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        forget_tables();
    }

    std::vector<StoredTable> tables() override {
        file_->need_in_place();
        return read_tables(*file_);
    }

    void create_table(const TableDeclaration& table) override {
        file_->need_in_place();
        const std::vector<std::string> parts = missing_parts(*file_, table);
        if (parts.empty()) return;
        file_->need_writable();
        forget_tables();
        // All of it or nothing, whether a transaction is under way or not.
        Query(*file_, "SAVEPOINT new_table").run();
        try {
            for (const std::string& part : parts) Query(*file_, part).run();
            Query(*file_, "RELEASE new_table").run();
        } catch (...) {
            sqlite3_exec(file_->handle(), "ROLLBACK TO new_table; RELEASE new_table", nullptr, nullptr,
                         nullptr);
            throw;
        }
    }

    std::unique_ptr<RowSink> fill(const std::string& table,
                                  const std::vector<std::string>& columns) override {
        return std::make_unique<SqliteSink>(file_, table, columns);
    }

private:
    std::shared_ptr<Plan> plan_of(const Statement& statement) {
        shape_.clear();
        append_shape(shape_, statement);
        if (const auto known = plans_.find(shape_); known != plans_.end()) return known->second;

        auto plan = std::make_shared<Plan>(file_, statement);
        if (plans_.size() >= most_plans) plans_.clear();
        plans_.emplace(shape_, plan);
        return plan;
    }

    void forget_tables() {
        file_->forget_tables();
        plans_.clear();
    }

    const RegionalSettings& regional_;
    std::shared_ptr<SqliteFile> file_;
    std::unordered_map<std::string, std::shared_ptr<Plan>> plans_;
    std::string shape_; ///< kept, so that looking a plan up allocates nothing
    std::optional<std::int64_t> last_autonumber_;
};

} // namespace

std::unique_ptr<Engine> open_sqlite_engine(const std::string& path, const RegionalSettings& regional) {
    return std::make_unique<SqliteEngine>(std::make_shared<SqliteFile>(path), regional);
}

std::unique_ptr<Engine> make_sqlite_engine(const std::string& path, const RegionalSettings& regional) {
    auto file = std::make_shared<SqliteFile>(path, SqliteFile::Use::fresh);
    file->run_script(schema_script);
    return std::make_unique<SqliteEngine>(std::move(file), regional);
}

std::vector<TableDeclaration> schema_tables() {
    SqliteFile file("", SqliteFile::Use::in_memory);
    file.run_script(schema_script);
    std::vector<TableDeclaration> declarations;
    for (StoredTable& table : read_tables(file)) declarations.push_back(std::move(table.declaration));
    return declarations;
}

} // namespace tarvello::store
