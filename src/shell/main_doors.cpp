#include "shell/main_window.h"

#include "customers/customer_picker.h"
#include "fiscal_code/calculator_form.h"
#include "program/program.h"
#include "shell/help_form.h"
#include "shell/issuer_name_form.h"

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

} // namespace tarvello
