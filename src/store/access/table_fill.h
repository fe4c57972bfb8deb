#pragma once

#include "store/access/table_writer.h"

#include <memory>
#include <span>
#include <vector>

namespace tarvello::store::access {

/// Very many rows for one table. The indexes of a table that has no row yet are made at the end, in one go.
/// Within a change of the store.
class TableFill {
public:
    /// @param columns  the places of the columns that the values are for
    TableFill(PageStore& store, std::shared_ptr<const TableDefinition> table,
              std::vector<std::size_t> columns);

    void add(std::span<const ValueView> values);
    /// @throws Failure if a unique index would have a key twice
    void finish();

private:
    PageStore& store_;
    std::shared_ptr<const TableDefinition> table_;
    std::vector<std::size_t> columns_;
    TableWriter writer_;
    std::vector<IndexFilling> fillings_; // none if there were rows before
};

} // namespace tarvello::store::access
