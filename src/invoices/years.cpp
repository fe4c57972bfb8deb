#include "invoices/years.h"

#include "failure.h"
#include "platform/entries.h"
#include "program/program.h"
#include "text/numbers.h"

#include <algorithm>
#include <set>
#include <string>

namespace tarvello {
namespace {

constexpr int first_year = 2004;
constexpr int last_year = 2020;

} // namespace

void add_years(ComboBox& combo) {
    combo.set_tool_tip("Anno del quale si desiderano consulatare le fatture");
    for (int year = first_year; year <= last_year; ++year) combo.add_item(std::to_string(year));
}

void add_years_of_archive(Program& program, ComboBox& combo) {
    std::set<int> years;
    skip_failures([&] {
        Recordset later; // of its own: the shared ones may be in use
        later.open("SELECT * FROM Fatture WHERE Anno>" + std::to_string(last_year),
                   program.database().dbConnection);
        const std::size_t column = later.column("Anno");
        for (; !later.eof(); later.move_next()) {
            years.insert(leading_int16(store::value_text(later.value(column), program.regional())));
        }
    });
    for (const int year : years) {
        const std::string text = std::to_string(year);
        const auto& known = combo.items();
        if (std::find(known.begin(), known.end(), text) == known.end()) combo.add_item(text);
    }
}

} // namespace tarvello
