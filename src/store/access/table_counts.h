#pragma once

#include "store/access/page_store.h"
#include "store/access/table_definition.h"

namespace tarvello::store::access {

/// The counts that a definition keeps, read and written where they lie.
class TableCounts {
public:
    TableCounts(PageStore& store, const TableDefinition& table) : store_(store), page_(table.page) {}

    std::uint32_t rows() const { return get(format::definition::rows_at); }
    void add_rows(int difference) { change(format::definition::rows_at, difference); }
    std::uint32_t last_autonumber() const { return get(format::definition::last_autonumber_at); }
    void set_last_autonumber(std::uint32_t number);
    /// The number of distinct entries of an index.
    void add_distinct(std::size_t index, int difference) {
        using namespace format::definition;
        change(counts_at + count_size * index + count_distinct_at, difference);
    }

    void set_distinct(std::size_t index, std::size_t number);

private:
    std::uint32_t get(std::size_t at) const;
    void change(std::size_t at, int difference);

    PageStore& store_;
    PageNumber page_;
};

} // namespace tarvello::store::access
