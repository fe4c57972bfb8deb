#include "store/table.h"

#include "failure.h"
#include "store/failure_source.h"
#include "text/ascii.h"
#include "text/letter_case.h"
#include "text/numbers.h"
#include "text/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tarvello::store {
namespace {

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
        if (!ascii::only_digits(group)) return std::nullopt;
        if (!alone && (first ? group.empty() || group.size() > 3 : group.size() != 3)) return std::nullopt;
        digits += group;
        if (end == std::string_view::npos) return digits;
        text.remove_prefix(end + separator.size());
    }
}

/// The plain decimal number that a text writes: plainly, with a point as decimal mark, or else as the
/// regional settings write amounts, with their separators, the currency symbol, a sign before or behind.
///
/// What comes here are texts of the program's own making: rates and numbers, which it reads with a point
/// ("12.5", and so "1.000" is 1), and amounts, which it has written as currency text and so always with the
/// decimal mark ("€ 1.000,00"). What a person types goes through text/currency.h, where "1.000" is a
/// thousand.
std::optional<std::string> decimal_in(std::string_view text, const RegionalSettings& regional) {
    text = without_blanks(text);
    bool negative = cut_front(text, "-") || cut_back(text, "-");
    text = without_blanks(text);
    if (cut_front(text, regional.currency_symbol) || cut_back(text, regional.currency_symbol)) {
        text = without_blanks(text);
        if (!negative) negative = cut_front(text, "-") || cut_back(text, "-");
        text = without_blanks(text);
    }

    const auto parse = [&](std::string_view mark, std::string_view separator) -> std::optional<std::string> {
        const std::size_t at = text.find(mark);
        const auto whole = ungrouped(text.substr(0, at), separator);
        const std::string_view fraction =
            at == std::string_view::npos ? std::string_view() : text.substr(at + mark.size());
        if (!whole || !ascii::only_digits(fraction) || whole->size() + fraction.size() == 0)
            return std::nullopt;
        return (negative ? "-" : "") + *whole + (fraction.empty() ? "" : "." + std::string(fraction));
    };
    if (auto plain = parse(".", "")) return plain;
    return parse(regional.decimal_separator, regional.thousands_separator);
}

/// The double nearest to a plain number, which may have an exponent.
double number_of(std::string_view text) {
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

[[noreturn]] void fail_for_type(std::string_view text, const Column& column, const char* what) {
    throw Failure(failure_number::type_mismatch, source,
                  "Il valore \"" + std::string(text) + "\" della colonna " + column.name + " non è " + what +
                      ".");
}

[[noreturn]] void fail_for_size(std::string_view number, const Column& column) {
    throw Failure(failure_number::overflow, source,
                  "Il numero " + std::string(number) + " è troppo grande per la colonna " + column.name +
                      ".");
}

/// The plain number of a literal that is none of the values given beside the text.
std::string decimal_of(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    if (!literal.quoted) return literal.text;
    const auto decimal = decimal_in(literal.text, regional);
    if (!decimal) fail_for_type(literal.text, column, "un numero");
    return *decimal;
}

std::int64_t whole_for(double number, std::string_view shown, const Column& column) {
    const double rounded = std::nearbyint(number); // half to even, as ever set
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max())) {
        fail_for_size(shown, column);
    }
    return static_cast<std::int64_t>(rounded);
}

/// Exactly what is written, but for digits behind the ten-thousandths.
Amount amount_for(const std::string& decimal, std::string_view shown, const Column& column) {
    const bool exponent = decimal.find_first_of("eE") != std::string::npos;
    const auto amount = exponent ? nearest_amount(number_of(decimal)) : decimal_amount(decimal);
    if (!amount) fail_for_size(shown, column);
    return *amount;
}

std::string text_for(std::string text, const Column& column) {
    if (column.width == 0 || utf8::utf16_length(text) <= column.width) return text;
    fail_for_width(column.name, column.width);
}

Date date_for(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    const auto date = literal.quoted ? read_date(literal.text, regional) : std::nullopt;
    if (!date) fail_for_type(literal.text, column, "una data");
    return *date;
}

/// A value that is no text, as a plain number. @return nothing for a date
std::optional<std::string> decimal_of(const ValueView& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* number = std::get_if<double>(&value))
        return std::isfinite(*number) ? plain_number(*number) : std::string("1e999");
    if (const auto* amount = std::get_if<Amount>(&value)) return decimal_text(*amount);
    if (const auto* yes = std::get_if<bool>(&value)) return *yes ? "-1" : "0";
    return std::nullopt;
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
    if (literal.value) return convert_value(view_of(*literal.value), column, regional);
    if (column.type == ColumnType::text) return text_for(literal.text, column);
    if (column.type == ColumnType::date) return date_for(literal, column, regional);
    const std::string decimal = decimal_of(literal, column, regional);
    if (column.type == ColumnType::currency) return amount_for(decimal, literal.text, column);
    const double number = number_of(decimal);
    if (column.type == ColumnType::integer) return whole_for(number, literal.text, column);
    if (column.type == ColumnType::yes_no) return number != 0;
    if (!std::isfinite(number)) fail_for_size(literal.text, column);
    return number;
}

Value convert_value(const ValueView& value, const Column& column, const RegionalSettings& regional) {
    if (std::holds_alternative<std::monostate>(value))
        return column.type == ColumnType::yes_no ? Value(false) : Value();
    if (const auto* text = std::get_if<std::string_view>(&value))
        return convert_literal({std::string(*text), true}, column, regional);
    if (column.type == ColumnType::text) return text_for(value_text(value, regional), column);
    const Date* const date = std::get_if<Date>(&value);
    if (date != nullptr && column.type == ColumnType::date) return *date;
    const auto decimal = decimal_of(value);
    if (!decimal) fail_for_type(value_text(value, regional), column, "un numero");
    return convert_literal({*decimal, false}, column, regional);
}

Value convert_comparand(const Literal& literal, const Column& column, const RegionalSettings& regional) {
    if (literal.value && std::holds_alternative<std::monostate>(*literal.value)) return {};
    const bool number = column.type == ColumnType::integer || column.type == ColumnType::number ||
                        column.type == ColumnType::currency;
    if (!number) return convert_literal(literal, {column.name, column.type}, regional);
    std::string decimal;
    if (!literal.value) {
        decimal = decimal_of(literal, column, regional);
    } else if (const auto given = decimal_of(view_of(*literal.value))) {
        decimal = *given;
    } else {
        fail_for_type(value_text(view_of(*literal.value), regional), column, "un numero");
    }
    if (column.type == ColumnType::currency) {
        const auto amount = decimal_amount(decimal);
        if (amount && number_of(decimal_text(*amount)) == number_of(decimal)) return *amount;
        return number_of(decimal);
    }
    std::int64_t whole = 0;
    const char* const end = decimal.data() + decimal.size();
    const auto read = std::from_chars(decimal.data(), end, whole);
    if (read.ec == std::errc{} && read.ptr == end) return whole;
    return number_of(decimal);
}

std::string value_text(const ValueView& value, const RegionalSettings& regional) {
    if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* date = std::get_if<Date>(&value)) return short_date_text(*date, regional);
    const auto* number = std::get_if<double>(&value);
    const auto* amount = std::get_if<Amount>(&value);
    if (number != nullptr || amount != nullptr) {
        std::string text = number != nullptr ? plain_number(*number) : decimal_text(*amount);
        if (const auto point = text.find('.'); point != std::string::npos)
            text.replace(point, 1, regional.decimal_separator);
        return text;
    }
    if (const auto* yes = std::get_if<bool>(&value)) return *yes ? "-1" : "0";
    return {};
}

ColumnType type_of(ColumnKind kind) {
    switch (kind) {
    case ColumnKind::autonumber:
    case ColumnKind::whole:
        return ColumnType::integer;
    case ColumnKind::number:
        return ColumnType::number;
    case ColumnKind::currency:
        return ColumnType::currency;
    case ColumnKind::date:
        return ColumnType::date;
    case ColumnKind::yes_no:
        return ColumnType::yes_no;
    default:
        return ColumnType::text;
    }
}

void fail_for_width(std::string_view column, std::size_t width) {
    throw Failure(failure_number::overflow, source,
                  "Il testo è troppo lungo per la colonna " + std::string(column) +
                      ", che tiene al massimo " + std::to_string(width) + " caratteri.");
}

void fail_for_missing_table(std::string_view name) {
    throw Failure(failure_number::no_such_element, source,
                  "Il database non ha la tabella \"" + std::string(name) + "\".");
}

} // namespace tarvello::store
