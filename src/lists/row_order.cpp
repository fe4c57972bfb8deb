#include "lists/row_order.h"

#include "lists/cell_value.h"
#include "lists/letters.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <type_traits>

namespace tarvello::lists {
namespace {

/// What a cell is sorted by. Most rows are told apart by the number at the head, without a look at the
/// characters.
struct Key {
    std::uint64_t head = 0;
    std::uint32_t row = 0;
    std::uint32_t tail_size = 0;
    std::size_t tail = 0; ///< where the rest of a text's key begins
};

/// A number as one that is ordered as the number is.
std::uint64_t ordered(double number) {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0); // of the two zeros the positive one
    return bits & sign ? ~bits : bits | sign;
}

class Keys {
public:
    Keys(const Table& table, std::size_t column, const RegionalSettings& regional)
        : of_texts_(table.columns[column].kind == ColumnKind::text) {
        keys_.reserve(table.rows);
        for (std::size_t row = 0; row < table.rows; ++row) {
            const std::string_view text = table.text(row, column);
            const CellValue value = cell_value(text, table.columns[column].kind, regional);
            std::visit([&](const auto& known) { add(row, known); }, value);
        }
    }

    std::vector<std::size_t> sorted(bool descending) {
        const auto less = [&](const Key& left, const Key& right) { return is_less(left, right); };
        if (descending) {
            std::stable_sort(keys_.begin(), keys_.end(),
                             [&](const Key& left, const Key& right) { return is_less(right, left); });
        } else {
            std::stable_sort(keys_.begin(), keys_.end(), less);
        }
        std::vector<std::size_t> rows;
        rows.reserve(keys_.size() + empty_.size());
        for (const Key& key : keys_) rows.push_back(key.row);
        rows.insert(rows.end(), empty_.begin(), empty_.end());
        return rows;
    }

private:
    void add(std::size_t row, std::monostate) { empty_.push_back(row); }
    void add(std::size_t row, double number) {
        keys_.push_back({ordered(number), static_cast<std::uint32_t>(row), 0, 0});
    }
    void add(std::size_t row, const Date& date) {
        add(row, static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count()));
    }
    void add(std::size_t row, std::string_view text) {
        Key key{0, static_cast<std::uint32_t>(row), 0, characters_.size()};
        append_order_key(characters_, text);
        for (std::size_t i = 0; i < sizeof key.head; ++i) {
            const std::size_t at = key.tail + i;
            key.head =
                key.head << 8 | (at < characters_.size() ? static_cast<unsigned char>(characters_[at]) : 0U);
        }
        if (!of_texts_) key.head = std::numeric_limits<std::uint64_t>::max(); // behind all values
        key.tail_size = static_cast<std::uint32_t>(characters_.size() - key.tail);
        keys_.push_back(key);
    }

    bool is_less(const Key& left, const Key& right) const {
        if (left.head != right.head) return left.head < right.head;
        const std::string_view all = characters_;
        return all.substr(left.tail, left.tail_size) < all.substr(right.tail, right.tail_size);
    }

    bool of_texts_;
    std::vector<Key> keys_;
    std::string characters_;
    std::vector<std::size_t> empty_;
};

} // namespace

void SortOrder::click(std::size_t header) {
    if (column != header) {
        *this = {header, false};
    } else if (!descending) {
        descending = true;
    } else {
        *this = {};
    }
}

std::vector<std::size_t> sorted_rows(const Table& table, const SortOrder& order,
                                     const RegionalSettings& regional) {
    if (!order.column) {
        std::vector<std::size_t> rows(table.rows);
        std::iota(rows.begin(), rows.end(), std::size_t{0});
        return rows;
    }
    return Keys(table, *order.column, regional).sorted(order.descending);
}

} // namespace tarvello::lists
