#include "store/access/index_filling.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

std::string names_of(const IndexDefinition& index, const TableDefinition& table) {
    std::string names;
    for (const IndexColumn& column : index.columns) {
        if (!names.empty()) names += ", ";
        names += table.columns[column.column].name;
    }
    return names;
}

KeyView key_of(const Key& entry) {
    return KeyView(entry).substr(0, entry.size() - format::index_page::row_size);
}

} // namespace

bool belongs_to(const IndexDefinition& index, const RowKey& key) {
    return !(index.ignores_nulls() && key.all_null);
}

void need_values(const IndexDefinition& index, const RowKey& key, const TableDefinition& table) {
    if (!index.required() || !key.any_null) return;
    throw Failure(access_failure::value_missing, source,
                  "La colonna " + names_of(index, table) + " vuole un valore.");
}

void fail_for_repeated_key(const IndexDefinition& index, const RowKey& key, const TableDefinition& table) {
    if (key.any_null) {
        throw not_writable(
            "L'indice " + index.name +
            " del file Access ha già questo valore, e vuole un valore in tutte le sue colonne.");
    }
    throw Failure(access_failure::duplicate, source,
                  "La tabella " + table.name + " ha già una riga con questo valore di " +
                      names_of(index, table) + ", che non può ripetersi.");
}

void IndexFilling::add(const RowView& row, RowPointer place) {
    const RowKey key = row_key(row, index_, table_);
    need_values(index_, key, table_);
    if (belongs_to(index_, key)) entries_.push_back(IndexWriter::entry_of(key.bytes, place));
}

void IndexFilling::sort() {
    if (!std::ranges::is_sorted(entries_)) std::ranges::sort(entries_);
    Key all_null;
    for (const IndexColumn& column : index_.columns)
        append_key(all_null, std::nullopt, false, table_.columns[column.column], column.ascending);
    distinct_ = entries_.empty() ? 0 : 1;
    for (std::size_t i = 1; i < entries_.size(); ++i) {
        if (key_of(entries_[i]) != key_of(entries_[i - 1])) {
            ++distinct_;
        } else if (index_.unique() && key_of(entries_[i]) != KeyView(all_null)) {
            fail_for_repeated_key(index_, {}, table_);
        }
    }
}

void IndexFilling::write(PageStore& store, PageAllocator& allocator) {
    IndexWriter(store, allocator, index_).fill(entries_);
    entries_ = {};
}

} // namespace tarvello::store::access
