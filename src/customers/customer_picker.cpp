#include "customers/customer_picker.h"

#include "customers/customer_list.h"
#include "failure.h"
#include "invoices/invoice_form.h"
#include "program/program.h"

#include <algorithm>

namespace tarvello {
namespace {

/// The columns as the picker asks for them. "e-mail" is none of the table's: the picker shows no mail
/// address, and the notes stand in its place.
constexpr auto picker_columns = [] {
    auto columns = customer_list::columns;
    columns[11] = "e-mail";
    return columns;
}();

} // namespace

frmCercaCliente::frmCercaCliente(Program& program) : Form(program, "frmCercaCliente"), program_(program) {
    set_caption("Cerca Cliente");
    Label1.set_caption(
        "Selezionare un cliente dall'elenco oppure premere il tasto \"Nuovo Cliente\" per inserire "
        "un nuovo cliente non presente in elenco");
    set_size(13500, 7200);
    customer_list::add_headers(ListView1);
    ListView1.on_double_click = [this] { select(); };
    cmdSelect.set_caption("OK");
    cmdSelect.on_click = [this] { select(); };
    cmdNuovoCliente.set_caption("Nuovo Cliente");
    cmdNuovoCliente.on_click = [this] { announce_new_customer(); };
}

void frmCercaCliente::on_load() { CaricaElencoClienti(); }

void frmCercaCliente::CaricaElencoClienti() {
    Recordset& customers = program_.database().rsClienti;
    skip_failures([&] { customers.open("SELECT * FROM Clienti", program_.database().dbConnection); },
                  [&] { customer_list::fill(ListView1, customers, picker_columns); },
                  [&] { customers.close(); });
}

void frmCercaCliente::select() {
    skip_failures(
        [&] { // with no row selected the number stays empty, and finds no customer
            if (const auto row = ListView1.selected()) {
                NumeroClienteScelto = std::string(ListView1.rows().cell(*row, 0));
            }
        },
        [&] { program_.form<frmTarvello>().txtNuovoInserimento.clear(); }, [&] { CompilaClienteFattura(); },
        [&] { unload(); });
}

void frmCercaCliente::CompilaClienteFattura() {
    Recordset& customer = program_.database().rsClienti;
    auto& invoice = program_.form<frmTarvello>();
    customer.open("SELECT * FROM Clienti WHERE Numero_Cliente=" + NumeroClienteScelto,
                  program_.database().dbConnection);
    invoice.txtNuovoInserimento.clear();
    invoice.ComboNumeroCliente.set_text(customer.text("Numero_Cliente"));
    invoice.txtAnagrafica[0].set_text(customer.text("Codice_Fiscale"));
    invoice.txtAnagrafica[1].set_text(customer.text("Indirizzo"));
    invoice.txtAnagrafica[2].set_text(customer.text("CAP"));
    invoice.txtAnagrafica[3].set_text(customer.text("Provincia"));
    invoice.txtAnagrafica[4].set_text(customer.text("Città"));
    invoice.txtAnagrafica[5].set_text(customer.text("Cognome_Ragione_Sociale"));
    invoice.txtNome.set_text(customer.text("Nome"));
    invoice.txtAnagrafica[6].set_text(customer.text("Partita_IVA"));
    customer.close();
}

void frmCercaCliente::announce_new_customer() {
    auto& invoice = program_.form<frmTarvello>();
    invoice.ComboNumeroCliente.set_back_color(colors::button_face);
    invoice.ComboNumeroCliente.set_enabled(false);
    invoice.txtNuovoInserimento.set_text("NEW");
    for (TextBox& box : invoice.txtAnagrafica) {
        box.clear();
        box.set_locked(false);
    }
    invoice.txtNome.clear();
    invoice.txtNome.set_locked(false);
    unload();
}

} // namespace tarvello
