#include "shell/main_window.h"

#include "customers/customer_picker.h"
#include "documents/letterhead_form.h"
#include "e_invoice/customer_data_form.h"
#include "e_invoice/e_invoice_form.h"
#include "e_invoice/issuer_data_form.h"
#include "failure.h"
#include "fiscal_code/calculator_form.h"
#include "fiscal_code/municipalities.h"
#include "invoices/invoice_form.h"
#include "program/messages.h"
#include "program/program.h"
#include "shell/help_form.h"
#include "shell/issuer_name_form.h"
#include "text/letter_case.h"

/// The windows that the rooms below open in each other.
namespace tarvello {

void MDIForm1::calculate_fiscal_code(const std::string& caller, const std::string& surname,
                                     const std::string& name, std::shared_ptr<TextBox> code) {
    auto& calculator = program_.form<frmCalcolaCF>();
    calculator.txtCognome.set_text(surname);
    calculator.txtNome.set_text(name);
    calculator.hand_over_to(caller, std::move(code));
    calculator.show_modal();
}

void MDIForm1::calculate_fiscal_code(std::function<void(const std::string&)> taker) {
    auto& calculator = program_.form<frmCalcolaCF>();
    calculator.copy_to(std::move(taker));
    calculator.show_modal();
}

void MDIForm1::pick_customer(std::shared_ptr<CustomerTarget> target) {
    auto& picker = program_.form<frmCercaCliente>();
    picker.pick_for(std::move(target));
    picker.show_modal();
}

void MDIForm1::ask_issuer_name() { program_.form<frmRegister>().show_modal(); }

void MDIForm1::show_guide() { tarvello::show_guide(program_); }

void MDIForm1::show_help(const std::string& title, const std::string& text) {
    tarvello::show_help(program_, title, text);
}

bool MDIForm1::database_is_open() {
    if (program_.database().dbConnection.is_open()) return true;
    program_.message(messages::no_database, BoxIcon::information);
    return false;
}

void MDIForm1::edit_e_invoice_issuer(const e_invoice::Field* field) {
    if (!database_is_open()) return;
    auto& window = program_.form<frmDatiFatturaElettronica>();
    if (field) window.lead_to(*field);
    window.show_modal();
}

void MDIForm1::edit_e_invoice_customer(int number, const std::string& name, const e_invoice::Field* field) {
    if (!database_is_open()) return;
    auto& window = program_.form<frmDatiClienteElettronica>();
    window.edit(number, name);
    if (field) window.lead_to(*field);
    window.show_modal();
}

void MDIForm1::open_e_invoice(int invoice) {
    if (!database_is_open()) return;
    auto& window = program_.form<frmFatturaElettronica>();
    const auto alive = window.shared_from_this(); // what it leads to comes after its end
    if (window.open(invoice)) {
        window.show_modal();
        window.go_on();
        return;
    }
    window.unload();
    program_.message("La fattura non è più in archivio.", BoxIcon::exclamation);
}

void MDIForm1::show_letterhead(e_invoice::Field field) {
    auto& window = program_.form<frmIntestazioneFatture>();
    window.show();
    window.SSTab1.set_tab(0);
    window.control_of(field).set_focus();
}

void MDIForm1::show_invoice(int invoice, const e_invoice::Field* field, int line) {
    auto& window = program_.form<frmTarvello>();
    window.show();
    window.show_stored(invoice);
    if (field) window.control_of(*field, line).set_focus();
}

std::string MDIForm1::province_of(const std::string& municipality) {
    std::string province;
    // Without the list of municipalities nothing is proposed.
    skip_failures([&] {
        const auto place = Municipalities(program_.in_program_directory("Comuni.mdb")).seek(municipality);
        if (place && lower_case(place->name) == lower_case(municipality)) province = place->province;
    });
    return province;
}

} // namespace tarvello
