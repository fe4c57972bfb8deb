#include "customers/customer_results.h"

#include "customers/customer_list.h"
#include "failure.h"
#include "program/program.h"
#include "text/numbers.h"

namespace tarvello {

frmRisultatiRicercaClienti::frmRisultatiRicercaClienti(Program& program)
    : Form(program, "frmRisultatiRicercaClienti"), program_(program) {
    set_caption("Risultati Ricerca Clienti");
    set_size(13500, 7200);
    customer_list::add_headers(ListView1);
    ListView1.on_double_click = [this] { unload(); };
    cmdVisualizza.set_caption("Visualizza");
    cmdVisualizza.on_click = [this] { unload(); };
}

void frmRisultatiRicercaClienti::on_unload(UnloadReason reason) {
    if (reason == UnloadReason::user || reason == UnloadReason::code) return_selected_row();
}

void frmRisultatiRicercaClienti::return_selected_row() {
    if (!view_ || !ListView1.selected()) return;
    const std::size_t selected = *ListView1.selected();
    const double number = leading_number(ListView1.rows().cell(selected, customer_list::number));
    const std::string_view surname = ListView1.rows().cell(selected, customer_list::surname);
    const std::string_view name = ListView1.rows().cell(selected, customer_list::name);

    // The window keeps no identifier: the customer is looked up again by these three.
    Recordset& customers = program_.database().rsClienti;
    const auto is_selected_row = [&] {
        bool same = false;
        skip_failures([&] { // a row with a null in them is nobody's
            same = customers.text("Cognome_Ragione_Sociale") == surname && customers.text("Nome") == name &&
                   leading_number(customers.text("Numero_Cliente")) == number;
        });
        return same;
    };
    skip_failures([&] { customers.open("SELECT * FROM Clienti", program_.database().dbConnection); },
                  [&] { customers.move_first(); },
                  [&] {
                      while (!customers.eof() && !is_selected_row()) customers.move_next();
                      if (!customers.eof()) view_->CaricaCliente();
                  },
                  [&] { customers.close(); });
}

} // namespace tarvello
