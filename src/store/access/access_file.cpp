#include "store/access/access_file.h"

#include "store/access/bytes.h"
#include "store/access/header.h"

namespace tarvello::store::access {
namespace {

/// Spellings of table names that are remembered: more than the program has.
constexpr std::size_t most_tables = 100;

} // namespace

AccessFile::AccessFile(const std::string& path, const RegionalSettings& regional, FileWatch* watch)
    : regional_(regional) {
    // The header never changes, so it can be looked at before a journal is rolled back. What cannot be opened
    // is so left alone, its lock included.
    {
        const File file(path, File::Mode::read_only, watch);
        Page header{};
        const std::size_t size = file.read(0, header);
        check_header(Bytes(header).first(size), path);
    }
    store_ = std::make_unique<PageStore>(path, watch);
}

void AccessFile::start_statement() {
    if (store_->notice_others()) tables_.clear();
}

std::shared_ptr<const OpenTable> AccessFile::table(const std::string& name) {
    if (const auto known = tables_.find(name); known != tables_.end()) return known->second;
    const Catalogue catalogue(*store_);
    auto open = std::make_shared<OpenTable>();
    open->definition = catalogue.find(name);
    if (!open->definition) fail_for_missing_table(name);
    const TableDefinition& definition = *open->definition;
    open->table.name = definition.name;
    for (const ColumnDefinition& column : definition.columns) {
        const std::size_t width = column.type == StoredType::text ? column.length / sizeof(char16_t) : 0;
        open->table.columns.push_back({column.name, column.column_type(), width});
    }
    if (const IndexDefinition* key = definition.primary_key(); key != nullptr && key->columns.size() == 1) {
        open->table.key = key->columns[0].column;
    }
    open->why_not_writable = catalogue.why_not_writable(definition);
    if (tables_.size() >= most_tables) tables_.clear();
    tables_.emplace(name, open);
    return open;
}

} // namespace tarvello::store::access
