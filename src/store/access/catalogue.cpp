#include "store/access/catalogue.h"

#include "store/access/index_key.h"
#include "store/access/row.h"
#include "store/access/stored_text.h"
#include "store/access/table_rows.h"
#include "text/letter_case.h"

namespace tarvello::store::access {
namespace {

constexpr std::int64_t local_table = 1;
/// A relationship with this flag is only drawn, not enforced.
constexpr std::int64_t not_enforced = 2;

std::int64_t whole(const RowView& row, const ColumnDefinition& column) {
    const auto stored = row.stored(column);
    if (!stored) return 0;
    const ValueView value = fixed_value(*stored, column);
    const auto* number = std::get_if<std::int64_t>(&value);
    return number == nullptr ? 0 : *number;
}

std::string text(const RowView& row, const ColumnDefinition& column) {
    std::string value;
    if (const auto stored = row.stored(column)) decode_text(*stored, value);
    return value;
}

const ColumnDefinition& column(const TableDefinition& table, const char* name) {
    const auto place = table.find_column(name);
    if (!place) throw damaged("al catalogo manca una colonna");
    return table.columns[*place];
}

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

} // namespace

Catalogue::Catalogue(PageStore& store)
    : store_(store), objects_(read_table_definition(store, catalogue_page, "MSysObjects")) {}

std::shared_ptr<const TableDefinition> Catalogue::find(std::string_view name) const {
    const ColumnDefinition& id = column(objects_, "Id");
    const ColumnDefinition& type = column(objects_, "Type");
    const ColumnDefinition& object_name = column(objects_, "Name");
    TableWalk walk(store_, objects_);
    while (const auto place = walk.next()) {
        const auto bytes = find_row(store_, objects_, *place);
        if (!bytes) continue;
        const RowView row(bytes->bytes, objects_);
        if (whole(row, type) != local_table) continue;
        std::string found = text(row, object_name);
        if (!equal_ignoring_case(found, name)) continue;
        const auto page = static_cast<PageNumber>(whole(row, id) & 0xFFFFFF);
        return std::make_shared<const TableDefinition>(read_table_definition(store_, page, std::move(found)));
    }
    return nullptr;
}

bool Catalogue::in_relationship(const std::string& name) const {
    const auto relationships = find("MSysRelationships");
    if (!relationships) return false;
    TableWalk walk(store_, *relationships);
    while (const auto place = walk.next()) {
        const auto bytes = find_row(store_, *relationships, *place);
        if (!bytes) continue;
        const RowView row(bytes->bytes, *relationships);
        if ((whole(row, column(*relationships, "grbit")) & not_enforced) != 0) continue;
        if (equal_ignoring_case(text(row, column(*relationships, "szObject")), name) ||
            equal_ignoring_case(text(row, column(*relationships, "szReferencedObject")), name)) {
            return true;
        }
    }
    return false;
}

std::string Catalogue::why_not_writable(const TableDefinition& table) const {
    const std::string subject = "La tabella " + table.name + " del file Access si può soltanto leggere: ";
    if (table.variable_columns == 0) return subject + "le sue righe hanno una forma che qui non si scrive.";
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
            if (column.fixed || !column.long_pages || !column.long_free_pages) {
                return of + " non ha le mappe delle sue pagine.";
            }
            break;
        case StoredType::text:
            if (column.fixed) return of + " è un testo di lunghezza fissa.";
            break;
        default:
            if (column.fixed && column.type != StoredType::yes_no && column.length != size_of(column.type)) {
                return of + " ha una lunghezza che non si spiega.";
            }
            break;
        }
    }
    for (const IndexDefinition& index : table.indexes) {
        const std::string of = subject + "l'indice " + index.name;
        constexpr unsigned known_flags = 0x80 | 0x08 | 0x02 | 0x01;
        if (index.relationship)
            return subject + "è legata ad altre tabelle da una relazione (" + index.name + ").";
        if (index.columns.empty() || (index.flags & ~known_flags) != 0)
            return of + " è di un genere sconosciuto.";
        if (index.columns.size() > 1 && index.ignores_nulls())
            return of + " tralascia i valori nulli di più colonne.";
        for (const IndexColumn& part : index.columns) {
            if (!key_is_known(table.columns[part.column])) {
                return of + " ordina la colonna " + table.columns[part.column].name +
                       " in un modo sconosciuto.";
            }
        }
    }
    if (in_relationship(table.name)) return subject + "è legata ad altre tabelle da una relazione.";
    return {};
}

} // namespace tarvello::store::access
