#include "store/table.h"

#include "failure.h"
#include "text/letter_case.h"
#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tarvello::store {
namespace {

const char* const source = "Archivio";

bool only_digits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Cuts `text` at its start or end and says whether it was there.
bool cut_front(std::string_view& text, std::string_view part) {
    if (part.empty() || !text.starts_with(part)) return false;
    text.remove_prefix(part.size());
    return true;
}
bool cut_back(std::string_view& text, std::string_view part) {
    if (part.empty() || !text.ends_with(part)) return false;
    text.remove_suffix(part.size());
    return true;
}

std::string_view without_blanks(std::string_view text) {
    while (cut_front(text, " ")) {
    }
    while (cut_back(text, " ")) {
    }
    return text;
}

/// The integer part of a number with its thousands separators taken out.
/// @return nothing if they do not stand before groups of three digits
std::optional<std::string> ungrouped(std::string_view text, std::string_view separator) {
    std::string digits;
    for (bool first = true;; first = false) {
        const std::size_t end = separator.empty() ? std::string_view::npos : text.find(separator);
        const std::string_view group = text.substr(0, end);
        const bool alone = first && end == std::string_view::npos;
        if (!only_digits(group)) return std::nullopt;
        if (!alone && (first ? group.empty() || group.size() > 3 : group.size() != 3)) return std::nullopt;
        digits += group;
        if (end == std::string_view::npos) return digits;
        text.remove_prefix(end + separator.size());
    }
}

/// A number that is written plainly, with a point as decimal mark, or else as the regional settings write
/// amounts: with their separators, the currency symbol, a sign before or behind.
std::optional<double> number_in(std::string_view text, const RegionalSettings& regional) {
    text = without_blanks(text);
    bool negative = cut_front(text, "-") || cut_back(text, "-");
    text = without_blanks(text);
    if (cut_front(text, regional.currency_symbol) || cut_back(text, regional.currency_symbol)) {
        text = without_blanks(text);
        if (!negative) negative = cut_front(text, "-") || cut_back(text, "-");
        text = without_blanks(text);
    }

    const auto parse = [&](std::string_view mark, std::string_view separator) -> std::optional<double> {
        const std::size_t at = text.find(mark);
        const auto whole = ungrouped(text.substr(0, at), separator);
        const std::string_view fraction =
            at == std::string_view::npos ? std::string_view() : text.substr(at + mark.size());
        if (!whole || !only_digits(fraction) || whole->size() + fraction.size() == 0) return std::nullopt;
        const std::string digits = *whole + "." + std::string(fraction);
        double number = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (read.ec == std::errc::result_out_of_range) number = std::numeric_limits<double>::infinity();
        return negative ? -number : number;
    };
    if (const auto plain = parse(".", "")) return plain;
    return parse(regional.decimal_separator, regional.thousands_separator);
}

/// An unquoted number, which the parser has read.
double number_of(const Literal& literal) {
    std::string_view text = literal.text;
    cut_front(text, "+");
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec == std::errc::result_out_of_range) {
        // Too big, or too near to zero: only the first has digits that matter before the exponent's sign.
        number = text.find("e-") == std::string_view::npos && text.find("E-") == std::string_view::npos
                     ? std::numeric_limits<double>::infinity()
                     : 0;
        if (text.starts_with('-')) number = -number;
    }
    return number;
}

[[noreturn]] void fail_for_type(const Literal& literal, const Column& column, const char* what) {
    throw Failure(failure_number::type_mismatch, source,
                  "Il valore \"" + literal.text + "\" della colonna " + column.name + " non è " + what + ".");
}

double number_for(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    if (!literal.quoted) return number_of(literal);
    const auto number = number_in(literal.text, regional);
    if (!number) fail_for_type(literal, column, "un numero");
    return *number;
}

Date date_for(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    const auto date = literal.quoted ? read_date(literal.text, regional) : std::nullopt;
    if (!date) fail_for_type(literal, column, "una data");
    return *date;
}

} // namespace

std::size_t Table::place_of(std::string_view column) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name == column) return i;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (equal_ignoring_case(columns[i].name, column)) return i;
    }
    throw Failure(failure_number::no_such_element, source,
                  "La tabella " + name + " non ha la colonna \"" + std::string(column) + "\".");
}

Places find_places(const Statement& statement, const Table& table) {
    Places places;
    for (const Assignment& assignment : statement.assignments) {
        const std::size_t place = table.place_of(assignment.column);
        if (std::find(places.assignments.begin(), places.assignments.end(), place) !=
            places.assignments.end()) {
            throw Failure(failure_number::statement, source,
                          "La colonna " + table.columns[place].name +
                              " riceve due valori nella stessa istruzione SQL.");
        }
        places.assignments.push_back(place);
    }
    for (const Condition& condition : statement.conditions)
        places.conditions.push_back(table.place_of(condition.column));
    if (!statement.order_by.empty()) places.order_by = table.place_of(statement.order_by);
    return places;
}

Value convert_literal(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    switch (column.type) {
    case ColumnType::text:
        return literal.text;
    case ColumnType::date:
        return date_for(literal, column, regional);
    case ColumnType::number: {
        const double number = number_for(literal, column, regional);
        if (!std::isfinite(number)) {
            throw Failure(failure_number::overflow, source,
                          "Il numero " + literal.text + " è troppo grande per la colonna " + column.name +
                              ".");
        }
        return number;
    }
    case ColumnType::integer:
        break;
    }
    const double rounded = std::nearbyint(number_for(literal, column, regional)); // half to even, as ever set
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max())) {
        throw Failure(failure_number::overflow, source,
                      "Il numero " + literal.text + " è troppo grande per la colonna " + column.name + ".");
    }
    return static_cast<std::int64_t>(rounded);
}

Value convert_comparand(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    if (column.type != ColumnType::integer && column.type != ColumnType::number)
        return convert_literal(literal, column, regional);
    std::int64_t whole = 0;
    const char* const end = literal.text.data() + literal.text.size();
    const auto read = std::from_chars(literal.text.data(), end, whole);
    if (read.ec == std::errc{} && read.ptr == end) return whole;
    return number_for(literal, column, regional);
}

std::string value_text(const ValueView& value, const RegionalSettings& regional) {
    if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* date = std::get_if<Date>(&value)) return short_date_text(*date, regional);
    if (const auto* number = std::get_if<double>(&value)) {
        std::string text = plain_number(*number);
        if (const auto point = text.find('.'); point != std::string::npos)
            text.replace(point, 1, regional.decimal_separator);
        return text;
    }
    return {};
}

void fail_for_missing_table(std::string_view name) {
    throw Failure(failure_number::no_such_element, source,
                  "Il database non ha la tabella \"" + std::string(name) + "\".");
}

} // namespace tarvello::store
