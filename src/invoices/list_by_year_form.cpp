#include "invoices/list_by_year_form.h"

#include "failure.h"
#include "invoices/invoice_list.h"
#include "invoices/invoice_results.h"
#include "invoices/shared_results.h"
#include "invoices/years.h"
#include "program/program.h"
#include "text/numbers.h"

#include <algorithm>
#include <limits>

namespace tarvello {
namespace {

const char* const nothing = "Annulla";
const char* const all_invoices = "Elenca tutte le fatture";
const char* const current_year = "Elenca fatture anno corrente";

/// This list leaves the withholding's percentage out of every row: this guard is the name of no column.
constexpr PercentageGuards guards{"Importo_rivalsa", "Importo Ritenuta"};

} // namespace

frmSelectYear::frmSelectYear(Program& program) : Form(program, "frmSelectYear"), program_(program) {
    set_caption("Selezionare Anno Fatturazione");
    Label1.set_caption("Selezionare l'anno del quale si desidera visualizzare l'elenco fatture.");
    Command1.set_caption("OK");
    Command1.on_click = [this] { unload(); };
    set_keys(&Command1, nullptr);
}

void frmSelectYear::on_load() {
    for (const char* item : {nothing, all_invoices, current_year}) Combo1.add_item(item);
    add_years(Combo1);
    add_years_of_archive(program_, Combo1);
}

void frmSelectYear::on_unload(UnloadReason reason) {
    if (reason != UnloadReason::code && reason != UnloadReason::user) return;
    const std::string& choice = Combo1.text();
    if (choice.empty() || choice == nothing) return;
    program_.platform().windows.close(*this); // off the screen before the list comes
    if (choice == all_invoices) {
        show_list({"Tabella Fatture", "Elenco Fatture", newest_first, std::nullopt, false});
        return;
    }
    std::int16_t year = 0; // what is no 16-bit number lists the year 0, so nothing
    if (choice == current_year) {
        skip_failures([&] { year = leading_int16(view_ ? view_->current_year() : std::string()); });
        Listing listing = listing_of(year);
        listing.sql = "SELECT * FROM Fatture WHERE Anno=" + std::to_string(year) + " ORDER BY ID DESC";
        show_list(listing);
    } else {
        skip_failures([&] { year = leading_int16(choice); });
        Listing listing = listing_of(year);
        listing.sql = newest_first;
        listing.only_year = year;
        show_list(listing);
    }
}

frmSelectYear::Listing frmSelectYear::listing_of(std::int16_t year) {
    Listing listing;
    listing.caption = "Tabella Fatture (anno " + std::to_string(year) + ")";
    listing.heading = "Elenco Fatture dell'anno " + std::to_string(year);
    listing.counted = true;
    return listing;
}

std::string frmSelectYear::total_of(std::size_t invoices) {
    constexpr std::size_t highest = std::numeric_limits<std::int16_t>::max();
    std::string count = " - Totale Fatture: " + std::to_string(std::min(invoices, highest));
    if (invoices <= highest) return count;
    return count + " (il conteggio si ferma qui: le righe in elenco sono " + std::to_string(invoices) + ")";
}

void frmSelectYear::show_list(const Listing& listing) {
    auto& window = program_.form<frmRisultatiRicercaFatture>();
    window.return_to(view_);
    window.set_caption(listing.caption);
    window.Label1.set_caption(listing.heading);

    Recordset& rsFatture = program_.database().rsFatture;
    const auto fill = [&] {
        const std::size_t year_column = listing.only_year ? rsFatture.column("Anno") : 0;
        // A file of another make may lack a column: its rows show what can be read.
        const InvoiceRowWriter writer(rsFatture, guards, MissingColumns::left_empty);
        for (; !rsFatture.eof(); rsFatture.move_next()) {
            if (listing.only_year && !number_equals(rsFatture.value(year_column), *listing.only_year))
                continue;
            writer.add(window.ListView1.fill());
        }
    };
    skip_failures([&] { rsFatture.close(); },
                  [&] { rsFatture.open(listing.sql, program_.database().dbConnection); }, fill);
    window.ListView1.rows_added();
    if (listing.counted) {
        window.Label1.set_caption(listing.heading + total_of(window.ListView1.rows().size()));
    }
    skip_failures([&] { window.show_modal(); }, [&] { rsFatture.close(); });
}

} // namespace tarvello
