#include "customers/customer_picker.h"

#include "customers/customer_list.h"
#include "failure.h"
#include "program/program.h"

#include <algorithm>

namespace tarvello {
namespace {

/// The columns as the picker asks for them. "e-mail" is none of the table's: the picker shows no mail
/// address, and the notes stand in its place.
constexpr auto picker_columns = [] {
    auto columns = customer_list::columns;
    columns[customer_list::mail].source = "e-mail";
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
    set_keys(&cmdSelect, nullptr);
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
                NumeroClienteScelto = std::string(ListView1.rows().cell(*row, customer_list::number));
            }
        },
        [&] { CompilaClienteFattura(); }, [&] { unload(); });
}

void frmCercaCliente::CompilaClienteFattura() {
    if (!target_) return;
    // Without a choice a customer who was announced as new stays announced.
    if (!NumeroClienteScelto.empty()) target_->expect_known_customer();
    Recordset& customer = program_.database().rsClienti;
    customer.open("SELECT * FROM Clienti WHERE Numero_Cliente=" + NumeroClienteScelto,
                  program_.database().dbConnection);
    target_->take_customer(customer);
    customer.close();
}

void frmCercaCliente::announce_new_customer() {
    if (target_) target_->announce_new_customer();
    unload();
}

} // namespace tarvello
