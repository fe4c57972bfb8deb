#include "customers/customer_list.h"

#include "failure.h"
#include "platform/lists.h"
#include "store/database.h"

#include <variant>
#include <vector>

namespace tarvello::customer_list {

void add_headers(ListView& list) {
    for (const Column& column : columns) list.add_column({column.header, column.key, false, column.width});
}

void fill(ListView& list, Recordset& rows, std::span<const Column> columns) {
    std::vector<std::size_t> places;
    for (const Column& column : columns) {
        skip_failures([&] { places.push_back(rows.column(column.source)); });
    }
    ListRows& cells = list.fill();
    for (; !rows.eof(); rows.move_next()) {
        cells.begin_row();
        for (const std::size_t place : places) {
            const store::ValueView value = rows.value(place);
            const bool null = std::holds_alternative<std::monostate>(value);
            cells.add_cell(null ? std::string() : store::value_text(value, rows.regional()));
        }
    }
    list.rows_added();
}

} // namespace tarvello::customer_list
