#include "store/access/catalogue.h"

#include "store/access/definition_reader.h"
#include "store/access/index_key.h"
#include "store/access/named_row.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::store::access {
namespace {

using namespace format::catalogue;

/// The bytes that a fixed value of a type takes, 0 for types of other lengths.
std::uint32_t size_of(StoredType type) {
    switch (type) {
    case StoredType::byte:
        return 1;
    case StoredType::integer16:
        return 2;
    case StoredType::integer32:
    case StoredType::single_float:
        return 4;
    case StoredType::currency:
    case StoredType::double_float:
    case StoredType::date:
        return 8;
    default:
        return 0;
    }
}

bool is_system_name(std::string_view name) { return equal_ignoring_case(name.substr(0, 4), "MSys"); }

PageNumber page_of(const NamedRow& row) { return static_cast<PageNumber>(row.whole("Id") & page_mask); }

} // namespace

Catalogue::Catalogue(PageStore& store)
    : store_(store), objects_(read_table_definition(store, format::catalogue_page, "MSysObjects")) {}

std::shared_ptr<const TableDefinition> Catalogue::find(std::string_view name) const {
    std::shared_ptr<const TableDefinition> found;
    for_each_row(store_, objects_, [&](const NamedRow& row) {
        if (row.whole("Type") != table_type) return true;
        std::string spelled = row.text("Name");
        if (!equal_ignoring_case(spelled, name)) return true;
        found = std::make_shared<const TableDefinition>(
            read_table_definition(store_, page_of(row), std::move(spelled)));
        return false;
    });
    return found;
}

std::vector<std::string> Catalogue::names() const {
    std::vector<std::string> names;
    for_each_row(store_, objects_, [&](const NamedRow& row) {
        const bool hidden = (static_cast<std::uint32_t>(row.whole("Flags")) & hidden_flags) != 0;
        std::string name = row.text("Name");
        if (row.whole("Type") == table_type && !hidden && !is_system_name(name))
            names.push_back(std::move(name));
        return true;
    });
    return names;
}

std::vector<std::string> Catalogue::related_tables(const std::string& name) const {
    std::vector<std::string> related;
    const auto relationships = find("MSysRelationships");
    if (!relationships) return related;
    for_each_row(store_, *relationships, [&](const NamedRow& row) {
        if ((row.whole("grbit") & not_enforced) != 0) return true;
        std::string one = row.text("szObject");
        std::string other = row.text("szReferencedObject");
        if (equal_ignoring_case(other, name)) std::swap(one, other);
        if (equal_ignoring_case(one, name) && std::ranges::find(related, other) == related.end())
            related.push_back(std::move(other));
        return true;
    });
    return related;
}

std::string Catalogue::why_not_writable(const TableDefinition& table) const {
    const std::string subject = "La tabella " + table.name + " del file Access si può soltanto leggere: ";
    if (table.system || is_system_name(table.name)) return subject + "è una tabella del sistema.";
    if (const auto related = related_tables(table.name); !related.empty()) {
        std::string names;
        for (const std::string& name : related) names += (names.empty() ? "" : ", ") + name;
        return subject + "una relazione la lega a " + names + ".";
    }
    for (const ColumnDefinition& column : table.columns) {
        const std::string of = subject + "la colonna " + column.name;
        if (!column.known_type) return of + " è di un tipo sconosciuto.";
        switch (column.type) {
        case StoredType::binary:
        case StoredType::ole:
        case StoredType::guid:
        case StoredType::numeric:
            return of + " è di un tipo che qui non si scrive.";
        case StoredType::memo:
            if (column.fixed() || !column.long_pages || !column.long_free_pages) {
                return of + " non ha le mappe delle sue pagine.";
            }
            break;
        case StoredType::text:
            if (column.fixed()) return of + " è un testo di lunghezza fissa.";
            break;
        default:
            if (column.fixed() && column.type != StoredType::yes_no &&
                column.length != size_of(column.type)) {
                return of + " ha una lunghezza che non si spiega.";
            }
            break;
        }
    }
    for (const IndexDefinition& index : table.indexes) {
        const std::string of = subject + "l'indice " + index.name;
        if (index.relationship) return subject + "una relazione la lega ad altre tabelle.";
        if (index.columns.empty() || (index.flags & ~format::index::known_flags) != 0)
            return of + " è di un genere sconosciuto.";
        for (const IndexColumn& part : index.columns) {
            const ColumnDefinition& column = table.columns[part.column];
            if (!is_proven(column, part.ascending)) {
                return of + " ordina la colonna " + column.name +
                       " in modo discendente, e nessun file scritto da Access mostra come farlo con un "
                       "testo.";
            }
            if (!key_is_known(column))
                return of + " ordina la colonna " + column.name + " in un modo sconosciuto.";
        }
    }
    return {};
}

} // namespace tarvello::store::access
