#include "store/access/conditions.h"

#include "store/access/long_value.h"
#include "store/access/stored_text.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

bool fits(Comparison comparison, std::partial_ordering order) {
    switch (comparison) {
    case Comparison::equal:
        return order == 0;
    case Comparison::not_equal:
        return order != 0;
    case Comparison::less:
        return order < 0;
    case Comparison::greater:
        return order > 0;
    case Comparison::less_or_equal:
        return order <= 0;
    case Comparison::greater_or_equal:
        return order >= 0;
    case Comparison::like:
    case Comparison::in: // each value of the list by itself
        break;
    }
    return false;
}

template <typename Left>
std::partial_ordering compare_number(Left left, const Value& right) {
    if (const auto* whole = std::get_if<std::int64_t>(&right)) {
        if constexpr (std::is_same_v<Left, std::int64_t>) return left <=> *whole;
        return static_cast<double>(left) <=> static_cast<double>(*whole);
    }
    return static_cast<double>(left) <=> std::get<double>(right);
}

std::partial_ordering compare_amount(Amount left, const Value& right) {
    if (const auto* amount = std::get_if<Amount>(&right)) return left <=> *amount;
    return static_cast<double>(left.ten_thousandths) / format::ten_thousandths <=> std::get<double>(right);
}

} // namespace

ValueView read_value(PageStore& store, const RowView& row, const ColumnDefinition& column,
                     std::string& text) {
    if (!column.known_type) return std::monostate();
    if (column.type == StoredType::yes_no) return row.yes(column);
    const auto stored = row.stored(column);
    if (!stored) {
        // To the program a text without a value is an empty one, as it writes them itself.
        const bool text_like = column.type == StoredType::text || column.type == StoredType::memo;
        return text_like ? ValueView(std::string_view()) : ValueView(std::monostate());
    }
    switch (column.type) {
    case StoredType::text:
        decode_text(*stored, text);
        return std::string_view(text);
    case StoredType::memo:
        read_memo(store, *stored, text);
        return std::string_view(text);
    case StoredType::guid:
        text = guid_text(*stored);
        return std::string_view(text);
    default:
        return fixed_value(*stored, column);
    }
}

Conditions::Conditions(const Statement& statement, const Places& places, const Table& table,
                       const RegionalSettings& regional)
    : regional_(regional) {
    for (std::size_t i = 0; i < statement.conditions.size(); ++i) {
        const Condition& condition = statement.conditions[i];
        One one;
        one.column = places.conditions[i];
        one.comparison = condition.comparison;
        if (condition.comparison == Comparison::like) {
            one.pattern.emplace(condition.literal.text);
        } else if (condition.comparison == Comparison::in) {
            for (const Literal& literal : condition.list)
                one.list.push_back(convert_comparand(literal, table.columns[one.column], regional));
        } else {
            one.value = convert_comparand(condition.literal, table.columns[one.column], regional);
            // Texts are compared folded; equality looks at them as they are, which is quicker.
            if (auto* text = std::get_if<std::string>(&one.value);
                text && one.comparison != Comparison::equal && one.comparison != Comparison::not_equal) {
                *text = fold_case(*text);
            }
        }
        all_.push_back(std::move(one));
    }
}

bool Conditions::holds(const One& condition, const ValueView& value) const {
    if (condition.comparison == Comparison::in) {
        return std::any_of(condition.list.begin(), condition.list.end(), [&](const Value& wanted) {
            return holds(One{condition.column, Comparison::equal, wanted, {}, {}}, value);
        });
    }
    if (condition.pattern) {
        if (const auto* text = std::get_if<std::string_view>(&value))
            return condition.pattern->matches(*text);
        return condition.pattern->matches(value_text(value, regional_));
    }
    if (std::holds_alternative<std::monostate>(condition.value)) return false; // nothing compares with null
    if (const auto* text = std::get_if<std::string_view>(&value)) {
        const std::string& wanted = std::get<std::string>(condition.value);
        if (condition.comparison == Comparison::equal) return equal_ignoring_case(*text, wanted);
        if (condition.comparison == Comparison::not_equal) return !equal_ignoring_case(*text, wanted);
        return fits(condition.comparison, fold_case(*text) <=> wanted);
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return fits(condition.comparison, compare_number(*whole, condition.value));
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return fits(condition.comparison, compare_number(*number, condition.value));
    }
    if (const auto* amount = std::get_if<Amount>(&value))
        return fits(condition.comparison, compare_amount(*amount, condition.value));
    if (const auto* yes = std::get_if<bool>(&value))
        return fits(condition.comparison, *yes <=> std::get<bool>(condition.value));
    return fits(condition.comparison, std::get<Date>(value) <=> std::get<Date>(condition.value));
}

bool Conditions::match(PageStore& store, const RowView& row, const TableDefinition& table) {
    for (const One& condition : all_) {
        const ValueView value = read_value(store, row, table.columns[condition.column], text_);
        if (std::holds_alternative<std::monostate>(value) || !holds(condition, value)) return false;
    }
    return true;
}

} // namespace tarvello::store::access
