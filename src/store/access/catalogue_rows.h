#pragma once

#include "store/access/catalogue.h"
#include "store/access/table_writer.h"

#include <cstdint>
#include <string>

/// The rows that a new object gets in the tables of the catalogue, MSysObjects and MSysACEs. Within a change
/// of the store.
namespace tarvello::store::access {

struct CatalogueObject {
    std::uint32_t id = 0;
    std::uint32_t parent = 0;
    std::string name;
    std::int64_t type = format::catalogue::table_type;
    std::uint32_t flags = 0;
};

using Sid = std::vector<std::uint8_t>;

class CatalogueRows {
public:
    /// @throws Failure if the catalogue is of a form that is not known
    CatalogueRows(PageStore& store, const Catalogue& catalogue);
    /// Of a file whose catalogue does not list itself yet.
    CatalogueRows(PageStore& store, std::shared_ptr<const TableDefinition> objects,
                  std::shared_ptr<const TableDefinition> rights)
        : store_(store), objects_(std::move(objects)), rights_(std::move(rights)) {}

    /// True if the name is taken, be it by a query.
    bool has_object(std::uint32_t parent, const std::string& name) const;
    /// Adds a table, with the rights that the file gives to tables.
    void add_table(PageNumber page, const std::string& name);

    void add_object(const CatalogueObject& object, const Sid& owner);
    void add_right(std::uint32_t object, const Sid& sid, std::uint32_t mask, bool inheritable);

private:
    struct Right {
        Sid sid;
        std::uint32_t mask = 0;
    };
    Sid owner_of(std::uint32_t object) const;
    std::vector<Right> rights_of_new_table(const Sid& owner) const;

    PageStore& store_;
    std::shared_ptr<const TableDefinition> objects_;
    std::shared_ptr<const TableDefinition> rights_;
};

/// Those whom rights are about: hidden by something that is the file's own, so that they follow from the
/// engine's, which owns the row of all tables.
inline constexpr std::uint16_t admin_mark = 0x0201;
inline constexpr std::uint16_t users_mark = 0x0200;
inline constexpr std::uint16_t creator_mark = 0x0700;
Sid related_sid(const Sid& engine, std::uint16_t mark);

/// Now, local time to the millisecond, as dates are stored.
double catalogue_time();

} // namespace tarvello::store::access
