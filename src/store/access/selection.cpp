#include "store/access/selection.h"

#include "text/letter_case.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace tarvello::store::access {
namespace {

/// Above every entry of a key, and below those of the next key.
Key above(Key key) {
    key.append(format::index_page::row_size + 1, 0xFF);
    return key;
}

/// The part of an index that a walk goes through: from `low` on, below `high`.
struct Range {
    Key low;
    std::optional<Key> high;
};

/// A double as a whole number of the same order.
std::int64_t ordered(double number) {
    const auto bits = std::bit_cast<std::int64_t>(number == 0 ? 0.0 : number);
    return bits < 0 ? std::numeric_limits<std::int64_t>::min() - bits : bits;
}

} // namespace

/// Where the places of rows come from, before the conditions are put to them.
class Selection::Source {
public:
    virtual ~Source() = default;
    virtual std::optional<RowPointer> next() = 0;
};

class Selection::TableSource final : public Source {
public:
    TableSource(PageStore& store, const TableDefinition& table) : walk_(store, table) {}
    std::optional<RowPointer> next() override { return walk_.next(); }

private:
    TableWalk walk_;
};

class Selection::IndexSource final : public Source {
public:
    IndexSource(PageStore& store, const IndexDefinition& index, Range range, bool backward)
        : cursor_(store, index), range_(std::move(range)), backward_(backward) {}

    std::optional<RowPointer> next() override {
        if (done_) return std::nullopt;
        const bool found = started_ ? (backward_ ? cursor_.previous() : cursor_.next()) : start();
        started_ = true;
        done_ = !found ||
                (backward_ ? cursor_.entry() < range_.low : range_.high && cursor_.entry() >= *range_.high);
        if (done_) return std::nullopt;
        return cursor_.row();
    }

private:
    bool start() {
        if (backward_) return range_.high ? cursor_.last_below(*range_.high) : cursor_.last();
        return range_.low.empty() ? cursor_.first() : cursor_.first_not_below(range_.low);
    }

    IndexCursor cursor_;
    Range range_;
    bool backward_;
    bool started_ = false;
    bool done_ = false;
};

/// Places that were sorted beforehand.
class Selection::SortedSource final : public Source {
public:
    struct Item {
        std::int64_t number = 0;
        std::uint32_t place = 0;
        std::uint32_t entry = 0; // the order in which it came
    };

    std::vector<Item> items;
    std::vector<std::string> texts; // by entry, if a text gives the order

    void sort(bool descending, std::optional<std::int64_t> most) {
        const auto before = [this, descending](const Item& left, const Item& right) {
            if (texts.empty()) {
                if (left.number != right.number) return (left.number < right.number) != descending;
            } else if (const auto order = texts[left.entry].compare(texts[right.entry]); order != 0) {
                return (order < 0) != descending;
            }
            return left.entry < right.entry;
        };
        const auto wanted = most ? std::min(static_cast<std::size_t>(*most), items.size()) : items.size();
        if (wanted == items.size()) {
            std::sort(items.begin(), items.end(), before);
        } else {
            std::partial_sort(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(wanted), items.end(),
                              before);
        }
        // The conditions have been put to the rows already: the others are not asked for.
        items.resize(wanted);
        texts = {};
    }

    std::optional<RowPointer> next() override {
        if (at_ == items.size()) return std::nullopt;
        return RowPointer::from_word(items[at_++].place);
    }

private:
    std::size_t at_ = 0;
};

Selection::Selection(std::shared_ptr<AccessFile> file, std::shared_ptr<const OpenTable> table,
                     const Statement& statement)
    : file_(std::move(file)), table_(std::move(table)),
      conditions_(statement, find_places(statement, table_->table), table_->table, file_->regional()),
      left_(statement.top) {
    source_ = make_source(find_places(statement, table_->table), statement);
}

Selection::~Selection() = default;

bool Selection::walkable(const IndexDefinition& index) const {
    if (index.columns.size() != 1 || !index.columns[0].ascending || index.ignores_nulls()) return false;
    const ColumnDefinition& column = table_->definition->columns[index.columns[0].column];
    // Texts sort in another order than the program's, and yes comes before no.
    return column.type != StoredType::text && column.type != StoredType::yes_no && key_is_known(column);
}

std::unique_ptr<Selection::Source> Selection::natural_order() {
    const TableDefinition& definition = *table_->definition;
    if (const IndexDefinition* key = definition.primary_key(); key != nullptr && !key->ignores_nulls()) {
        return std::make_unique<IndexSource>(file_->store(), *key, Range{}, false);
    }
    return std::make_unique<TableSource>(file_->store(), definition);
}

std::unique_ptr<Selection::Source> Selection::make_source(const Places& places, const Statement& statement) {
    const TableDefinition& definition = *table_->definition;
    // The part of the index on a column that the conditions leave.
    const auto range_on = [&](std::size_t column) {
        Range range;
        for (const Conditions::One& condition : conditions_.all()) {
            const auto* number = std::get_if<std::int64_t>(&condition.value);
            if (condition.column != column || number == nullptr) continue;
            const auto key = number_key(*number, definition.columns[column], true);
            if (!key) continue;
            const Comparison how = condition.comparison;
            Key low{format::key::above_null}; // which no condition holds for
            if (how == Comparison::equal || how == Comparison::greater_or_equal) low = *key;
            if (how == Comparison::greater) low = above(*key);
            range.low = std::max(range.low, low);
            std::optional<Key> high;
            if (how == Comparison::equal || how == Comparison::less_or_equal) high = above(*key);
            if (how == Comparison::less) high = *key;
            if (high && (!range.high || *high < *range.high)) range.high = high;
        }
        return range;
    };

    const std::optional<std::size_t> order = places.order_by ? places.order_by : table_->table.key;
    const bool descending = places.order_by && statement.descending;
    const IndexDefinition* order_index = order ? definition.index_on(*order) : nullptr;
    if (order_index != nullptr && !walkable(*order_index)) order_index = nullptr;

    for (const Conditions::One& condition : conditions_.all()) {
        const auto* number = std::get_if<std::int64_t>(&condition.value);
        if (condition.comparison != Comparison::equal || number == nullptr) continue;
        const IndexDefinition* index = definition.index_on(condition.column);
        if (index == nullptr || !walkable(*index) ||
            !number_key(*number, definition.columns[condition.column], true)) {
            continue;
        }
        auto rows = std::make_unique<IndexSource>(file_->store(), *index, range_on(condition.column),
                                                  order == condition.column && descending);
        // Entries of one key are in the order of their places, which is the order of entry.
        if (order == condition.column || (!order && !definition.primary_key())) return rows;
        return sorted(std::move(rows), order, descending, statement.top);
    }
    if (order_index != nullptr) {
        return std::make_unique<IndexSource>(file_->store(), *order_index, range_on(*order), descending);
    }
    auto rows = natural_order();
    return places.order_by ? sorted(std::move(rows), order, descending, statement.top) : std::move(rows);
}

std::unique_ptr<Selection::Source> Selection::sorted(std::unique_ptr<Source> rows,
                                                     std::optional<std::size_t> column, bool descending,
                                                     std::optional<std::int64_t> most) {
    auto result = std::make_unique<SortedSource>();
    std::string text;
    std::uint32_t entry = 0;
    while (const auto place = rows->next()) {
        const auto found = find_row(file_->store(), *table_->definition, *place);
        if (!found) continue;
        const RowView row(found->bytes, *table_->definition);
        if (!conditions_.match(file_->store(), row, *table_->definition)) continue;
        SortedSource::Item item{std::numeric_limits<std::int64_t>::min(), place->word(), entry++};
        if (column) {
            const ColumnDefinition& by = table_->definition->columns[*column];
            const ValueView value = read_value(file_->store(), row, by, text);
            if (by.column_type() == ColumnType::text) result->texts.push_back(fold_case(text));
            if (const auto* whole = std::get_if<std::int64_t>(&value)) item.number = *whole;
            if (const auto* number = std::get_if<double>(&value)) item.number = ordered(*number);
            if (const auto* amount = std::get_if<Amount>(&value)) item.number = amount->ten_thousandths;
            if (const auto* yes = std::get_if<bool>(&value)) item.number = *yes ? 1 : 0;
            if (const auto* date = std::get_if<Date>(&value)) {
                item.number = std::chrono::sys_days(*date).time_since_epoch().count();
            }
            if (std::holds_alternative<std::monostate>(value) && !result->texts.empty())
                result->texts.back().clear();
        }
        result->items.push_back(item);
    }
    result->sort(descending, most);
    return result;
}

std::optional<Selection::Found> Selection::next() {
    if (left_ && *left_ <= 0) return std::nullopt;
    while (const auto place = source_->next()) {
        auto row = find_row(file_->store(), *table_->definition, *place);
        if (!row) continue;
        if (!conditions_.match(file_->store(), RowView(row->bytes, *table_->definition), *table_->definition))
            continue;
        if (left_) --*left_;
        return Found{*place, std::move(*row)};
    }
    return std::nullopt;
}

} // namespace tarvello::store::access
