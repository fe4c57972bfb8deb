#include "customers/customer_list.h"

#include "failure.h"
#include "platform/lists.h"
#include "store/database.h"

#include <variant>
#include <vector>

namespace tarvello::customer_list {

void add_headers(ListView& list) {
    const int inch = 1440;
    struct Header {
        const char* text;
        const char* key;
    };
    for (const Header& header : {Header{"n° cliente", "numero"},
                                 {"Cognome / Rag. Sociale", "cognome"},
                                 {"Nome", "nome"},
                                 {"C.F.", "CF"},
                                 {"P.I.", "PI"},
                                 {"Indirizzo", ""},
                                 {"CAP", ""},
                                 {"Provincia", ""},
                                 {"Città", ""},
                                 {"Telefono", ""},
                                 {"Fax", ""},
                                 {"e-mail", ""},
                                 {"Note", ""}}) {
        list.add_column({header.text, header.key, false, inch});
    }
}

void fill(ListView& list, Recordset& rows, std::span<const char* const> columns) {
    std::vector<std::size_t> places;
    for (const char* name : columns) {
        skip_failures([&] { places.push_back(rows.column(name)); });
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
