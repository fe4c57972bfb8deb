#include "store/access/access_check.h"

#include "store/access/catalogue.h"
#include "store/access/conditions.h"
#include "store/access/index_cursor.h"
#include "store/access/row.h"
#include "store/access/table_rows.h"

#include <cstdint>
#include <unordered_set>

namespace tarvello::store::access {
namespace {

using Places = std::unordered_set<std::uint32_t>;

Places read_rows(PageStore& store, const TableDefinition& table) {
    Places places;
    std::string text;
    TableWalk walk(store, table);
    while (const auto place = walk.next()) {
        const auto found = find_row(store, table, *place);
        if (!found) throw damaged("una riga della tabella " + table.name + " manca");
        const RowView row(found->bytes, table);
        for (const ColumnDefinition& column : table.columns)
            if (column.known_type) read_value(store, row, column, text);
        places.insert(place->word());
    }
    return places;
}

void check_index(PageStore& store, const IndexDefinition& index, const Places& rows) {
    const auto wrong = [&](const char* what) { return damaged("l'indice " + index.name + what); };
    std::size_t entries = 0;
    IndexCursor cursor(store, index);
    for (bool found = cursor.first(); found; found = cursor.next(), ++entries)
        if (!rows.contains(cursor.row().word())) throw wrong(" porta a una riga che manca");
    if (entries != rows.size() && !index.ignores_nulls()) throw wrong(" non porta a tutte le righe");
}

} // namespace

void check_tables(PageStore& store) {
    const Catalogue catalogue(store);
    for (const std::string& name : catalogue.names()) {
        const auto table = catalogue.find(name);
        if (!table) continue;
        const Places rows = read_rows(store, *table);
        for (const IndexDefinition& index : table->indexes) check_index(store, index, rows);
    }
}

} // namespace tarvello::store::access
