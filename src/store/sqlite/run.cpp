#include "store/sqlite/run.h"

#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace tarvello::store {
namespace {

constexpr double ten_thousandths = 10000;

/// year-month-day as DATE columns hold it.
std::array<char, 10> iso_text(const Date& date) {
    std::array<char, 10> text{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0'};
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

} // namespace

int bind_value(sqlite3_stmt* statement, int index, const ValueView& value) {
    const auto bind_text = [&](std::string_view text, sqlite3_destructor_type how) {
        return sqlite3_bind_text64(statement, index, text.data() ? text.data() : "", text.size(), how,
                                   SQLITE_UTF8);
    };
    if (const auto* text = std::get_if<std::string_view>(&value)) return bind_text(*text, SQLITE_STATIC);
    if (const auto* whole = std::get_if<std::int64_t>(&value))
        return sqlite3_bind_int64(statement, index, *whole);
    if (const auto* number = std::get_if<double>(&value))
        return sqlite3_bind_double(statement, index, *number);
    if (const auto* amount = std::get_if<Amount>(&value))
        return sqlite3_bind_int64(statement, index, amount->ten_thousandths);
    if (const auto* yes = std::get_if<bool>(&value)) return sqlite3_bind_int(statement, index, *yes ? 1 : 0);
    if (const auto* date = std::get_if<Date>(&value)) {
        const auto iso = iso_text(*date);
        return bind_text({iso.data(), iso.size()}, SQLITE_TRANSIENT);
    }
    return sqlite3_bind_null(statement, index);
}

ValueView read_value(sqlite3_stmt* statement, int column, ColumnType type) {
    // One look at the column for all that is asked of it. Such a value is not guarded against other
    // threads, of which there are none.
    sqlite3_value* const found = sqlite3_column_value(statement, column);
    switch (sqlite3_value_type(found)) {
    case SQLITE_INTEGER: {
        const auto whole = static_cast<std::int64_t>(sqlite3_value_int64(found));
        if (type == ColumnType::currency) return Amount{whole};
        if (type == ColumnType::yes_no) return whole != 0;
        return whole;
    }
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
    if (type == ColumnType::date) {
        if (const auto date = iso_date(text)) return *date;
    }
    return text;
}

Run::Run(std::shared_ptr<Plan> plan) : plan_(std::move(plan)) {
    if (plan_->idle.empty()) {
        statement_ = file().prepare(plan_->sql);
    } else {
        statement_ = plan_->idle.back();
        plan_->idle.pop_back();
    }
}

Run::Run(Run&& other) noexcept
    : plan_(std::move(other.plan_)), statement_(std::exchange(other.statement_, nullptr)) {}

Run::~Run() {
    if (!statement_ || !file().is_open()) return;
    sqlite3_reset(statement_);
    plan_->idle.push_back(statement_);
}

void Run::bind(int index, const Value& value) const {
    int code = SQLITE_OK;
    if (const auto* text = std::get_if<std::string>(&value)) {
        // A result keeps its statement, and the literal is gone by then.
        code =
            sqlite3_bind_text64(statement_, index, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else {
        code = bind_value(statement_, index, view_of(value));
    }
    if (code != SQLITE_OK) file().fail(code);
}

void Run::bind_comparand(int index, const Literal& literal, const Column& column,
                         const RegionalSettings& regional) const {
    Value value = convert_comparand(literal, column, regional);
    // Folded, so that the index on the letters of ASCII finds what other letters fold into, such as k for K.
    if (auto* text = std::get_if<std::string>(&value)) *text = fold_case(*text);
    auto* number = std::get_if<double>(&value);
    if (number && column.type == ColumnType::currency) *number *= ten_thousandths;
    bind(index, value);
}

void Run::bind_literals(const Statement& statement, const RegionalSettings& regional) const {
    int index = 0;
    const auto& columns = plan_->table->columns;
    for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
        const Column& column = columns[plan_->places.assignments[i]];
        bind(++index, convert_literal(statement.assignments[i].literal, column, regional));
    }
    for (std::size_t i = 0; i < statement.conditions.size(); ++i) {
        const Condition& condition = statement.conditions[i];
        const Column& column = columns[plan_->places.conditions[i]];
        if (condition.comparison == Comparison::like) {
            bind_pattern(statement_, ++index, LikePattern(condition.literal.text));
        } else if (condition.comparison == Comparison::in) {
            for (const Literal& literal : condition.list) bind_comparand(++index, literal, column, regional);
        } else {
            bind_comparand(++index, condition.literal, column, regional);
        }
    }
    if (statement.top) bind(++index, *statement.top);
}

bool Run::step() const {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    file().fail(code);
}

} // namespace tarvello::store
