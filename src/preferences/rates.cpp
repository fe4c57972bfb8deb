#include "preferences/rates.h"

#include "failure.h"
#include "platform/entries.h"
#include "program/program.h"

#include <algorithm>

namespace tarvello {
namespace {

void add_rate(ComboBox& combo, const std::string& rate) {
    // Older invoices have rates with a sign and words behind them, which are only ever shown.
    if (rate.empty() || rate.find('%') != rate.npos) return;
    const auto& known = combo.items();
    if (std::find(known.begin(), known.end(), rate) == known.end()) combo.add_item(rate);
}

} // namespace

void add_rates_in_use(Program& program, std::initializer_list<RateList> lists) {
    for (const RateList& list : lists) add_rate(list.combo, list.default_rate.text());
    skip_failures([&] {
        Recordset newest; // of its own: the shared ones may be in use
        newest.open("SELECT TOP 50 * FROM Fatture ORDER BY ID DESC", program.database().dbConnection);
        for (; !newest.eof(); newest.move_next()) {
            for (const RateList& list : lists) {
                skip_failures([&] { add_rate(list.combo, newest.text_or_empty(list.column)); });
            }
        }
    });
}

} // namespace tarvello
