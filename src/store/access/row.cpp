#include "store/access/row.h"

#include "store/access/stored_text.h"
#include "store/table.h"
#include "text/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tarvello::store::access {
namespace {

using namespace format::row;

std::size_t mask_size(std::uint32_t columns) { return (columns + 7) / 8; }

double numeric_value(Bytes stored, std::uint8_t scale) {
    // A sign, then four words, the highest first.
    part(stored, 0, 17);
    double value = 0;
    for (std::size_t word = 0; word < 4; ++word)
        value = value * 4294967296.0 + load32(stored.data() + 1 + 4 * word);
    value /= std::pow(10.0, scale);
    return stored[0] == 0 ? value : -value;
}

ValueView date_value(double days) {
    // The fraction is the time of day, also of a day before the first one.
    const double whole = std::trunc(days);
    constexpr double first = -657434; // 1 January 100
    constexpr double last = 2958465;  // 31 December 9999
    if (!(whole >= first && whole <= last)) return std::monostate();
    return Date(first_day + std::chrono::days(static_cast<int>(whole)));
}

/// The number of the fewest digits that is stored as this one: 0,01 and not 0,00999999977648258.
double as_typed(float number) {
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number);
    double value = 0;
    if (std::from_chars(digits, end.ptr, value).ec != std::errc{}) return number;
    return value;
}

[[noreturn]] void fail_for_range(const ColumnDefinition& column) {
    throw Failure(failure_number::overflow, source,
                  "Il numero è troppo grande per la colonna " + column.name + ".");
}

std::vector<std::uint8_t> bytes_of(std::uint64_t value) {
    std::vector<std::uint8_t> bytes(sizeof value);
    store64(bytes.data(), value);
    return bytes;
}

std::vector<std::uint8_t> whole_number(std::int64_t value, const ColumnDefinition& column, std::size_t size) {
    const int bits = static_cast<int>(size) * 8 - 1;
    const std::int64_t low = column.type == StoredType::byte ? 0 : -(std::int64_t{1} << bits);
    const std::int64_t high = column.type == StoredType::byte ? 255 : (std::int64_t{1} << bits) - 1;
    if (value < low || value > high) fail_for_range(column);
    std::vector<std::uint8_t> bytes = bytes_of(static_cast<std::uint64_t>(value));
    bytes.resize(size);
    return bytes;
}

double number_of(const ValueView& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return static_cast<double>(*whole);
    return std::get<double>(value);
}

std::vector<std::uint8_t> double_bytes(double value) { return bytes_of(std::bit_cast<std::uint64_t>(value)); }

} // namespace

RowView::RowView(Bytes bytes, const TableDefinition& table) : bytes_(bytes), columns_(checked16(bytes, 0)) {
    const std::size_t mask = mask_size(columns_);
    if (columns_ == 0 || bytes.size() < fixed_at + mask) throw damaged("una riga è troppo corta");
    mask_at_ = bytes.size() - mask;
    fixed_end_ = mask_at_;
    // A row that is older than all columns of variable length has neither their number nor their places.
    if (columns_ <= table.first_variable) return;
    if (mask_at_ < fixed_at + word_size) throw damaged("una riga è troppo corta");
    count_at_ = mask_at_ - word_size;
    variable_count_ = load16(bytes.data() + count_at_);
    const std::size_t places = word_size * (std::size_t{variable_count_} + 1);
    if (count_at_ < fixed_at + places) throw damaged("una riga è troppo corta");
    fixed_end_ = count_at_ - places;
}

bool RowView::has_value(const ColumnDefinition& column) const {
    if (column.number >= columns_) return false;
    return ((bytes_[mask_at_ + column.number / 8] >> (column.number % 8)) & 1) != 0;
}

std::optional<Bytes> RowView::stored(const ColumnDefinition& column) const {
    if (column.type == StoredType::yes_no) return Bytes();
    if (!has_value(column)) return std::nullopt;
    if (column.fixed()) {
        const std::size_t at = fixed_at + std::size_t{column.fixed_place};
        if (at + column.length > fixed_end_) throw damaged("un valore esce dalla sua riga");
        return bytes_.subspan(at, column.length);
    }
    if (column.variable_place >= variable_count_) return std::nullopt;
    const std::uint8_t* starts = bytes_.data() + count_at_ - word_size;
    const std::size_t start = load16(starts - word_size * column.variable_place);
    const std::size_t end = load16(starts - word_size * (column.variable_place + 1));
    if (start > end || end > fixed_end_) throw damaged("un valore esce dalla sua riga");
    return bytes_.subspan(start, end - start);
}

ValueView fixed_value(Bytes stored, const ColumnDefinition& column) {
    if (!column.known_type) return std::monostate();
    switch (column.type) {
    case StoredType::byte:
        return std::int64_t{checked8(stored, 0)};
    case StoredType::integer16:
        return std::int64_t{static_cast<std::int16_t>(checked16(stored, 0))};
    case StoredType::integer32:
        return std::int64_t{static_cast<std::int32_t>(checked32(stored, 0))};
    case StoredType::currency:
        return Amount{static_cast<std::int64_t>(load64(part(stored, 0, 8).data()))};
    case StoredType::single_float:
        return as_typed(load_float(part(stored, 0, 4).data()));
    case StoredType::double_float:
        return load_double(part(stored, 0, 8).data());
    case StoredType::date:
        return date_value(load_double(part(stored, 0, 8).data()));
    case StoredType::numeric:
        return numeric_value(stored, column.scale);
    default:
        return std::monostate();
    }
}

std::string guid_text(Bytes stored) {
    constexpr std::size_t order[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    part(stored, 0, std::size(order));
    std::string text = "{";
    for (std::size_t i = 0; i < std::size(order); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        constexpr std::string_view digits = "0123456789ABCDEF";
        text += digits[stored[order[i]] >> 4];
        text += digits[stored[order[i]] & 0xF];
    }
    return text + "}";
}

std::vector<std::uint8_t> store_value(const ValueView& value, const ColumnDefinition& column) {
    switch (column.type) {
    case StoredType::yes_no:
        return {};
    case StoredType::byte:
        return whole_number(std::get<std::int64_t>(value), column, 1);
    case StoredType::integer16:
        return whole_number(std::get<std::int64_t>(value), column, 2);
    case StoredType::integer32:
        return whole_number(std::get<std::int64_t>(value), column, 4);
    case StoredType::currency:
        return bytes_of(static_cast<std::uint64_t>(std::get<Amount>(value).ten_thousandths));
    case StoredType::single_float: {
        const double number = number_of(value);
        if (!(std::abs(number) <= std::numeric_limits<float>::max())) fail_for_range(column);
        std::vector<std::uint8_t> bytes(4);
        store32(bytes.data(), std::bit_cast<std::uint32_t>(static_cast<float>(number)));
        return bytes;
    }
    case StoredType::double_float:
        return double_bytes(number_of(value));
    case StoredType::date: {
        const auto days = std::chrono::sys_days(std::get<Date>(value)) - first_day;
        return double_bytes(static_cast<double>(days.count()));
    }
    case StoredType::text: {
        const auto text = std::get<std::string_view>(value);
        const std::size_t width = column.length / sizeof(char16_t);
        if (utf8::utf16_length(text) > width) fail_for_width(column.name, width);
        return encode_text(text, column.may_be_compressed);
    }
    default:
        throw not_writable("La colonna " + column.name + " è di un tipo che qui si può soltanto leggere.");
    }
}

std::size_t least_row_size(const TableDefinition& table) {
    std::size_t size = fixed_at + table.fixed_size + mask_size(table.row_columns);
    if (table.row_columns > table.first_variable)
        size += word_size * (std::size_t{table.variable_columns} + 2);
    return size;
}

std::vector<std::uint8_t> build_row(const StoredValues& values, const TableDefinition& table,
                                    std::size_t least_size) {
    std::vector<std::uint8_t> row(fixed_at + table.fixed_size, 0);
    store16(row.data(), table.row_columns);
    std::vector<std::uint8_t> mask(mask_size(table.row_columns), 0);
    std::vector<std::size_t> by_place(table.variable_columns, table.columns.size());
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ColumnDefinition& column = table.columns[i];
        if (!column.fixed()) by_place[column.variable_place] = i;
        if (!values[i]) continue;
        mask[column.number / 8] |= static_cast<std::uint8_t>(1U << (column.number % 8));
        if (!column.fixed() || column.type == StoredType::yes_no) continue;
        std::copy(values[i]->begin(), values[i]->end(), row.begin() + fixed_at + column.fixed_place);
    }
    if (table.row_columns > table.first_variable) {
        std::vector<std::size_t> words; // the places as they stand behind the values
        for (const std::size_t column : by_place) {
            words.push_back(row.size());
            if (column < values.size() && values[column]) {
                row.insert(row.end(), values[column]->begin(), values[column]->end());
            }
        }
        words.push_back(row.size());
        std::ranges::reverse(words);
        words.push_back(by_place.size());
        const std::size_t tail = word_size * words.size() + mask.size();
        if (row.size() + tail < least_size) row.resize(least_size - tail, 0);
        for (const std::size_t word : words) {
            row.push_back(static_cast<std::uint8_t>(word));
            row.push_back(static_cast<std::uint8_t>(word >> 8));
        }
    }
    row.insert(row.end(), mask.begin(), mask.end());
    return row;
}

} // namespace tarvello::store::access
