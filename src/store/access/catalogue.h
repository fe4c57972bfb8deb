#pragma once

#include "store/access/page_store.h"
#include "store/access/table_definition.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello::store::access {

/// The tables of a file, by name.
class Catalogue {
public:
    explicit Catalogue(PageStore& store);

    /// A table, its name known without regard to letter case; null if the file has none of that name.
    /// @throws Failure if the file is damaged
    std::shared_ptr<const TableDefinition> find(std::string_view name) const;

    /// The tables of the user, without those that Access keeps for itself.
    std::vector<std::string> names() const;

    /// Why rows of a table may not be written: what is in it that is not understood well enough. Empty if
    /// they may.
    std::string why_not_writable(const TableDefinition& table) const;

private:
    std::vector<std::string> related_tables(const std::string& name) const;

    PageStore& store_;
    TableDefinition objects_;
};

} // namespace tarvello::store::access
