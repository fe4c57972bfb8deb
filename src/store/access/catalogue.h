#pragma once

#include "store/access/table_definition.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvello::store::access {

/// The tables of a file, by name.
class Catalogue {
public:
    explicit Catalogue(PageStore& store);

    /// A table, its name known without regard to letter case; null if the file has none of that name.
    /// @throws Failure if the file is damaged
    std::shared_ptr<const TableDefinition> find(std::string_view name) const;

    /// Why rows of a table may not be written: what is in it that is not understood well enough. Empty if
    /// they may.
    std::string why_not_writable(const TableDefinition& table) const;

private:
    bool in_relationship(const std::string& name) const;

    PageStore& store_;
    TableDefinition objects_;
};

} // namespace tarvello::store::access
