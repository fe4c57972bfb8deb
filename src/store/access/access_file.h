#pragma once

#include "store/access/catalogue.h"
#include "store/access/page_store.h"
#include "store/engine.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace tarvello::store::access {

/// A table as the statements see it.
struct OpenTable {
    std::shared_ptr<const TableDefinition> definition;
    Table table;
    std::string why_not_writable; ///< empty if rows may be written
};

/// The open file that an engine and its results share.
class AccessFile {
public:
    /// @throws Failure if the file is not of a kind that can be opened
    AccessFile(const std::string& path, const RegionalSettings& regional, FileWatch* watch);
    /// A file that is open already.
    AccessFile(std::unique_ptr<PageStore> store, const RegionalSettings& regional)
        : regional_(regional), store_(std::move(store)) {}

    /// Lets the file go. Results that are still there fail from now on.
    void close() { store_.reset(); }
    bool is_open() const { return store_ != nullptr; }

    PageStore& store() { return *store_; }
    const RegionalSettings& regional() const { return regional_; }
    /// Looks after every statement's start: whether the file is still there, and still as it was.
    void start_statement();
    /// @throws Failure if there is no such table
    std::shared_ptr<const OpenTable> table(const std::string& name);
    /// What is known of the tables holds no more.
    void forget_tables() { tables_.clear(); }

private:
    const RegionalSettings& regional_;
    std::unique_ptr<PageStore> store_;
    std::unordered_map<std::string, std::shared_ptr<const OpenTable>> tables_; // by name as written
};

} // namespace tarvello::store::access
