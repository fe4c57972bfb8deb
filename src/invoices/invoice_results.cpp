#include "invoices/invoice_results.h"

#include "failure.h"
#include "invoices/invoice_list.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "text/numbers.h"

#include <string>

namespace tarvello {

frmRisultatiRicercaFatture::frmRisultatiRicercaFatture(Program& program)
    : Form(program, "frmRisultatiRicercaFatture"), program_(program) {
    set_caption("Risultati Ricerca Fatture");
    set_size(15000, 7800);
    Label1.set_caption("La ricerca ha prodotto più di un risultato. Selezionare quello desiderato e premere "
                       "'Visualizza'");
    for (const InvoiceListColumn& column : invoice_list) {
        ListView1.add_column(
            {std::string(column.header), std::string(column.source), column.right_aligned, column.width});
    }
    txtAnnoDiRicerca.set_visible(false);
    cmdVisualizza.set_caption("Visualizza");

    ListView1.on_item_click = [this] {
        // A year that is no 16-bit number leaves the box as it was.
        skip_failures([this] {
            const auto year = ListView1.rows().cell(*ListView1.selected(), invoice_list_column::year);
            txtAnnoDiRicerca.set_text(std::to_string(leading_int16(year)));
        });
    };
    ListView1.on_double_click = [this] { unload(); };
    cmdVisualizza.on_click = [this] { unload(); };
}

void frmRisultatiRicercaFatture::on_load() {
    const std::string& surcharge = program_.session().txtProfessione.text();
    ListView1.set_header(invoice_list_column::rivalsa_percentage, "% " + surcharge);
    ListView1.set_header(invoice_list_column::rivalsa, surcharge);
}

void frmRisultatiRicercaFatture::on_unload(UnloadReason reason) {
    // Closed along with the main window it puts nothing on view.
    if (reason != UnloadReason::code && reason != UnloadReason::user) return;
    skip_failures([this] { show_selected_invoice(); });
}

void frmRisultatiRicercaFatture::show_selected_invoice() {
    std::string number_text; // stays empty without a selected row
    if (const auto row = ListView1.selected())
        number_text = ListView1.rows().cell(*row, invoice_list_column::number);
    const double number = leading_number(number_text);
    const double year = leading_number(txtAnnoDiRicerca.text());

    Database& database = program_.database();
    Recordset& invoices = database.rsFatture;
    // What the list was filled from may still be open.
    skip_failures([&] { invoices.close(); });
    invoices.open("SELECT * FROM Fatture", database.dbConnection);
    const std::size_t year_column = invoices.column("Anno");
    const std::size_t number_column = invoices.column("Numero_Fattura");
    while (!invoices.eof() && !(number_equals(invoices.value(year_column), year) &&
                                number_equals(invoices.value(number_column), number))) {
        invoices.move_next();
    }
    if (!invoices.eof() && view_) view_->MostraFattura();
    skip_failures([&] { invoices.close(); });
}

} // namespace tarvello
