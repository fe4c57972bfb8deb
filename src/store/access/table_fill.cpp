#include "store/access/table_fill.h"

namespace tarvello::store::access {

TableFill::TableFill(PageStore& store, std::shared_ptr<const TableDefinition> table,
                     std::vector<std::size_t> columns)
    : store_(store), table_(std::move(table)), columns_(std::move(columns)), writer_(store, *table_) {
    if (TableWalk(store, *table_).next()) return;
    for (const IndexDefinition& index : table_->indexes) fillings_.emplace_back(*table_, index);
}

void TableFill::add(std::span<const ValueView> values) {
    if (fillings_.empty()) {
        writer_.insert(columns_, values);
    } else {
        writer_.insert_gathering(columns_, values, fillings_);
    }
    store_.relieve();
}

void TableFill::finish() {
    PageAllocator allocator(store_);
    TableCounts counts(store_, *table_);
    for (std::size_t i = 0; i < fillings_.size(); ++i) {
        fillings_[i].sort();
        fillings_[i].write(store_, allocator);
        counts.set_distinct(i, fillings_[i].distinct());
        store_.relieve();
    }
    fillings_.clear();
}

} // namespace tarvello::store::access
