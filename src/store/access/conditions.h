#pragma once

#include "store/access/page_store.h"
#include "store/access/row.h"
#include "store/like_pattern.h"
#include "store/table.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvello::store::access {

/// The value of a column of a row, of a text or memo without a value the empty text. Texts are read into
/// `text`, which the view then shows.
ValueView read_value(PageStore& store, const RowView& row, const ColumnDefinition& column, std::string& text);

/// The conditions of a statement, ready to be put to rows.
class Conditions {
public:
    /// @throws Failure if a literal does not convert
    Conditions(const Statement& statement, const Places& places, const Table& table,
               const RegionalSettings& regional);

    bool match(PageStore& store, const RowView& row, const TableDefinition& table);

    struct One {
        std::size_t column = 0;
        Comparison comparison = Comparison::equal;
        Value value;
        std::optional<LikePattern> pattern;
        std::vector<Value> list; // of IN
    };
    const std::vector<One>& all() const { return all_; }

private:
    bool holds(const One& condition, const ValueView& value) const;

    const RegionalSettings& regional_;
    std::vector<One> all_;
    std::string text_;
};

} // namespace tarvello::store::access
