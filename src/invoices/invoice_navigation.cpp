#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "program/messages.h"
#include "program/session_fields.h"
#include "text/numbers.h"

#include <cstdint>

namespace tarvello {

void frmTarvello::navigate(std::size_t index) {
    const std::int16_t current_id = leading_int16(txtCurrent_ID.text());
    const int year = year_of(DTPicker1.date());
    if (!program_.session().mnuChiudiDatabase.enabled()) {
        program_.message(messages::no_database, BoxIcon::information);
        unload();
        return;
    }
    if (current_id == 0) return; // no invoice on view

    const std::string id_text = std::to_string(current_id);
    const std::string year_text = std::to_string(year);
    Recordset& rsFatture = program_.database().rsFatture;
    const auto open = [&](const std::string& sql) { rsFatture.open(sql, program_.database().dbConnection); };
    // The walk goes by key, and only the row next to this one counts: one that is dated in another year stops
    // it, also in the midst of a year.
    const auto within_year = [&] {
        return !rsFatture.eof() && !rsFatture.is_null("Data_Fattura") &&
               year_of(rsFatture.date("Data_Fattura")) == year;
    };

    switch (index) {
    case invoice_move::first:
        open("SELECT TOP 1 * FROM Fatture WHERE Anno=" + year_text + " ORDER BY ID ASC");
        break;
    case invoice_move::previous:
        ChiudiRecordset(program_.database());
        open("SELECT * FROM Fatture WHERE ID <" + id_text + " ORDER BY ID DESC");
        break;
    case invoice_move::next:
        ChiudiRecordset(program_.database());
        open("SELECT * FROM Fatture WHERE ID >" + id_text + " ORDER BY ID ASC");
        break;
    case invoice_move::last:
        open("SELECT TOP 1 * FROM Fatture WHERE Anno=" + year_text + " ORDER BY ID DESC");
        break;
    case invoice_move::previous_year:
        open("SELECT TOP 1 * FROM Fatture WHERE Anno<" + year_text + " ORDER BY ID DESC");
        break;
    case invoice_move::next_year:
        open("SELECT TOP 1 * FROM Fatture WHERE Anno>" + year_text + " ORDER BY ID ASC");
        break;
    default:
        return;
    }
    const bool taken =
        index == invoice_move::previous || index == invoice_move::next ? within_year() : !rsFatture.eof();
    if (taken) MostraFattura();
    rsFatture.close();
}

} // namespace tarvello
