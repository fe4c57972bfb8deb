#include "store/sqlite/sqlite_engine.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/sqlite/sqlite_file.h"
#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <charconv>
#include <unordered_map>
#include <utility>

namespace tarvello::store {
namespace {

/// Plans kept: more than the program has shapes of statements.
constexpr std::size_t most_plans = 100;

/// What all statements of one shape have in common, which is all but their literals.
struct Plan {
    explicit Plan(std::shared_ptr<SqliteFile> file) : file(std::move(file)) {}
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    ~Plan() {
        if (!file->is_open()) return; // a closed file has ended its statements
        for (sqlite3_stmt* statement : idle) sqlite3_finalize(statement);
    }

    std::shared_ptr<SqliteFile> file;
    std::shared_ptr<const Table> table;
    Places places;
    std::string sql;
    std::vector<sqlite3_stmt*> idle; ///< prepared and run by no result now
};

/// Two statements that differ only in their literals have the same shape.
void append_shape(std::string& shape, const Statement& statement) {
    shape += static_cast<char>('0' + static_cast<int>(statement.kind));
    shape += statement.top ? 'T' : '-';
    shape += statement.table;
    for (const Assignment& assignment : statement.assignments) {
        shape += '=';
        shape += assignment.column;
    }
    for (const Condition& condition : statement.conditions) {
        shape += '?';
        shape += condition.column;
        shape += static_cast<char>('0' + static_cast<int>(condition.comparison));
        if (!condition.list.empty()) shape += std::to_string(condition.list.size());
    }
    shape += statement.descending ? '>' : '<';
    shape += statement.order_by;
}

const char* operator_text(Comparison comparison) {
    switch (comparison) {
    case Comparison::not_equal:
        return "<>";
    case Comparison::less:
        return "<";
    case Comparison::greater:
        return ">";
    case Comparison::less_or_equal:
        return "<=";
    case Comparison::greater_or_equal:
        return ">=";
    default:
        return "=";
    }
}

std::string parameter(int& count) { return "?" + std::to_string(++count); }

std::string condition_sql(const Table& table, std::size_t place, const Condition& condition,
                          int& parameters) {
    const Column& column = table.columns[place];
    const std::string name = quoted_name(column.name);
    const Comparison comparison = condition.comparison;
    if (comparison == Comparison::in) {
        std::string list;
        for (std::size_t i = 0; i < condition.list.size(); ++i)
            list += (i == 0 ? "" : ",") + parameter(parameters);
        return name + (column.type == ColumnType::text ? " COLLATE ignoring_case" : "") + " IN (" + list +
               ")";
    }
    const std::string value = parameter(parameters);
    if (comparison == Comparison::like) return "matches(" + name + "," + value + ")";
    if (column.type != ColumnType::text) return name + operator_text(comparison) + value;
    const std::string holds = name + operator_text(comparison) + value + " COLLATE ignoring_case";
    if (comparison != Comparison::equal || !table.key) return holds;
    // A column that is looked up has two indexes, see data/schema.sql. Each answers one half of the list;
    // what holds is decided afterwards on the few rows of it.
    const std::string key = quoted_name(table.columns[*table.key].name);
    const std::string keys = "SELECT " + key + " FROM " + quoted_name(table.name) + " WHERE " + name;
    return key + " IN (" + keys + "=" + value + " COLLATE NOCASE UNION ALL " + keys +
           " GLOB '*[^ -~]*') AND " + holds;
}

std::string where_sql(const Statement& statement, const Plan& plan, int& parameters) {
    std::string sql;
    for (std::size_t i = 0; i < statement.conditions.size(); ++i) {
        sql += i == 0 ? " WHERE " : " AND ";
        sql += condition_sql(*plan.table, plan.places.conditions[i], statement.conditions[i], parameters);
    }
    return sql;
}

std::string select_sql(const Statement& statement, const Plan& plan) {
    const Table& table = *plan.table;
    std::string sql = "SELECT ";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0) sql += ",";
        sql += quoted_name(table.columns[i].name);
    }
    int parameters = 0;
    sql += " FROM " + quoted_name(table.name) + where_sql(statement, plan, parameters);
    if (plan.places.order_by) {
        const Column& column = table.columns[*plan.places.order_by];
        sql += " ORDER BY " + quoted_name(column.name);
        if (column.type == ColumnType::text) sql += " COLLATE ignoring_case";
        if (statement.descending) sql += " DESC";
    } else if (table.key) {
        sql += " ORDER BY " + quoted_name(table.columns[*table.key].name);
    }
    if (statement.top) sql += " LIMIT " + parameter(parameters);
    return sql;
}

std::string sql_of(const Statement& statement, const Plan& plan) {
    const Table& table = *plan.table;
    int parameters = 0;
    std::string sql;
    switch (statement.kind) {
    case StatementKind::select:
        return select_sql(statement, plan);
    case StatementKind::insert: {
        std::string values;
        sql = "INSERT INTO " + quoted_name(table.name) + " (";
        for (std::size_t i = 0; i < plan.places.assignments.size(); ++i) {
            if (i > 0) sql += ",";
            if (i > 0) values += ",";
            sql += quoted_name(table.columns[plan.places.assignments[i]].name);
            values += parameter(parameters);
        }
        return sql + ") VALUES (" + values + ")";
    }
    case StatementKind::update:
        sql = "UPDATE " + quoted_name(table.name) + " SET ";
        for (std::size_t i = 0; i < plan.places.assignments.size(); ++i) {
            if (i > 0) sql += ",";
            sql += quoted_name(table.columns[plan.places.assignments[i]].name) + "=" + parameter(parameters);
        }
        return sql + where_sql(statement, plan, parameters);
    case StatementKind::remove:
        break;
    }
    return "DELETE FROM " + quoted_name(table.name) + where_sql(statement, plan, parameters);
}

/// year-month-day as DATE columns hold it.
std::string iso_text(const Date& date) {
    std::string text = "0000-00-00";
    const auto put = [&](std::size_t end, unsigned number) {
        for (; number > 0; number /= 10) text[--end] = static_cast<char>('0' + number % 10);
    };
    put(4, static_cast<unsigned>(year_of(date)));
    put(7, month_of(date));
    put(10, day_of(date));
    return text;
}

/// @return nothing if the text does not start with a year-month-day
std::optional<Date> iso_date(std::string_view text) {
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
    const auto number = [&](std::size_t at, std::size_t size) {
        unsigned value = 0;
        const auto read = std::from_chars(text.data() + at, text.data() + at + size, value);
        return read.ptr == text.data() + at + size ? value : 0;
    };
    const Date date = make_date(static_cast<int>(number(0, 4)), number(5, 2), number(8, 2));
    return date.ok() ? std::optional(date) : std::nullopt;
}

/// A statement taken from its plan, and given back when its work is over.
class Run {
public:
    explicit Run(std::shared_ptr<Plan> plan) : plan_(std::move(plan)) {
        if (plan_->idle.empty()) {
            statement_ = file().prepare(plan_->sql);
        } else {
            statement_ = plan_->idle.back();
            plan_->idle.pop_back();
        }
    }
    Run(Run&& other) noexcept
        : plan_(std::move(other.plan_)), statement_(std::exchange(other.statement_, nullptr)) {}
    Run& operator=(Run&&) = delete;
    ~Run() {
        if (!statement_ || !file().is_open()) return;
        sqlite3_reset(statement_);
        plan_->idle.push_back(statement_);
    }

    sqlite3_stmt* statement() const { return statement_; }
    const Plan& plan() const { return *plan_; }
    const SqliteFile& file() const { return *plan_->file; }

    void bind(int index, const Value& value) const {
        int code = SQLITE_OK;
        if (const auto* text = std::get_if<std::string>(&value)) {
            code = sqlite3_bind_text64(statement_, index, text->data(), text->size(), SQLITE_TRANSIENT,
                                       SQLITE_UTF8);
        } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
            code = sqlite3_bind_int64(statement_, index, *whole);
        } else if (const auto* number = std::get_if<double>(&value)) {
            code = sqlite3_bind_double(statement_, index, *number);
        } else if (const auto* amount = std::get_if<Amount>(&value)) {
            code = sqlite3_bind_int64(statement_, index, amount->ten_thousandths);
        } else if (const auto* yes = std::get_if<bool>(&value)) {
            code = sqlite3_bind_int(statement_, index, *yes ? 1 : 0);
        } else if (const auto* date = std::get_if<Date>(&value)) {
            const std::string iso = iso_text(*date);
            code =
                sqlite3_bind_text64(statement_, index, iso.data(), iso.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        } else {
            code = sqlite3_bind_null(statement_, index);
        }
        if (code != SQLITE_OK) file().fail(code);
    }

    void bind_literals(const Statement& statement, const RegionalSettings& regional) const {
        int index = 0;
        const auto& columns = plan_->table->columns;
        for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
            bind(++index, convert_literal(statement.assignments[i].literal,
                                          columns[plan_->places.assignments[i]], regional));
        }
        for (std::size_t i = 0; i < statement.conditions.size(); ++i) {
            const Condition& condition = statement.conditions[i];
            const Column& column = columns[plan_->places.conditions[i]];
            if (condition.comparison == Comparison::like) {
                bind_pattern(statement_, ++index, LikePattern(condition.literal.text));
            } else if (condition.comparison == Comparison::in) {
                for (const Literal& literal : condition.list)
                    bind_comparand(++index, literal, column, regional);
            } else {
                bind_comparand(++index, condition.literal, column, regional);
            }
        }
        if (statement.top) bind(++index, *statement.top);
    }

    void bind_comparand(int index, const Literal& literal, const Column& column,
                        const RegionalSettings& regional) const {
        Value value = convert_comparand(literal, column, regional);
        // Folded, so that the index on ASCII letters finds what other letters fold into, such as k for K.
        if (auto* text = std::get_if<std::string>(&value)) *text = fold_case(*text);
        // What is no whole number of ten-thousandths is compared with them all the same.
        if (auto* number = std::get_if<double>(&value); number && column.type == ColumnType::currency)
            *number *= 10000;
        bind(index, value);
    }

    /// @return true at a row, false when the statement is done
    bool step() const {
        const int code = sqlite3_step(statement_);
        if (code == SQLITE_ROW) return true;
        if (code == SQLITE_DONE) return false;
        file().fail(code);
    }

private:
    std::shared_ptr<Plan> plan_;
    sqlite3_stmt* statement_ = nullptr;
};

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
        // One look at the column for all that is asked of it. Such a value is not guarded against other
        // threads, of which there are none.
        sqlite3_value* const found = sqlite3_column_value(run_.statement(), static_cast<int>(column));
        switch (sqlite3_value_type(found)) {
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_value_int64(found));
        case SQLITE_FLOAT:
            return sqlite3_value_double(found);
        case SQLITE_NULL:
            return std::monostate();
        default:
            break;
        }
        const bool is_text = sqlite3_value_type(found) == SQLITE_TEXT; // else bytes, which nobody converts
        const void* bytes = is_text ? sqlite3_value_text(found) : sqlite3_value_blob(found);
        const std::string_view text(bytes ? static_cast<const char*>(bytes) : "",
                                    static_cast<std::size_t>(sqlite3_value_bytes(found)));
        if (columns()[column].type == ColumnType::date) {
            if (const auto date = iso_date(text)) return *date;
        }
        return text;
    }

private:
    void need_open() const {
        if (!run_.file().is_open())
            throw Failure(failure_number::object_closed, source, "Il database è stato chiuso.");
    }

    Run run_;
    bool done_ = false;
};

class SqliteEngine final : public Engine {
public:
    SqliteEngine(const std::string& path, const RegionalSettings& regional)
        : regional_(regional), file_(std::make_shared<SqliteFile>(path)) {}
    ~SqliteEngine() override { file_->close(); }

    std::unique_ptr<RowSource> run(const Statement& statement) override {
        if (file_->forget_what_is_in_doubt()) plans_.clear();
        file_->need_in_place();
        const bool reads = statement.kind == StatementKind::select;
        if (!reads) file_->need_writable();
        Run run(plan_of(statement));
        run.bind_literals(statement, regional_);
        if (reads) return std::make_unique<SqliteRows>(std::move(run));
        run.step();
        return nullptr;
    }

    // Not done yet.
    std::optional<std::int64_t> last_autonumber() const override { return std::nullopt; }
    void begin() override { file_->fail(SQLITE_ERROR); }
    void commit() override { file_->fail(SQLITE_ERROR); }
    void roll_back() noexcept override {}
    std::vector<StoredTable> tables() override { file_->fail(SQLITE_ERROR); }
    void create_table(const TableDeclaration&) override { file_->fail(SQLITE_ERROR); }
    std::unique_ptr<RowSink> fill(const std::string&, const std::vector<std::string>&) override {
        file_->fail(SQLITE_ERROR);
    }

private:
    std::shared_ptr<Plan> plan_of(const Statement& statement) {
        shape_.clear();
        append_shape(shape_, statement);
        if (const auto known = plans_.find(shape_); known != plans_.end()) return known->second;

        auto plan = std::make_shared<Plan>(file_);
        plan->table = file_->table(statement.table);
        plan->places = find_places(statement, *plan->table);
        plan->sql = sql_of(statement, *plan);
        if (plans_.size() >= most_plans) plans_.clear();
        plans_.emplace(shape_, plan);
        return plan;
    }

    const RegionalSettings& regional_;
    std::shared_ptr<SqliteFile> file_;
    std::unordered_map<std::string, std::shared_ptr<Plan>> plans_;
    std::string shape_; ///< kept, so that looking a plan up allocates nothing
};

} // namespace

std::unique_ptr<Engine> open_sqlite_engine(const std::string& path, const RegionalSettings& regional) {
    return std::make_unique<SqliteEngine>(path, regional);
}

} // namespace tarvello::store
