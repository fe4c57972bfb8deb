#include "e_invoice/customer_data_form.h"

#include "e_invoice/check_digits.h"
#include "e_invoice/code_choice.h"
#include "e_invoice/desk.h"
#include "e_invoice/entry_faults.h"
#include "program/program.h"
#include "text/letter_case.h"

namespace tarvello {

using namespace e_invoice;

frmDatiClienteElettronica::frmDatiClienteElettronica(Program& program)
    : Form(program, "frmDatiClienteElettronica"), program_(program) {
    set_caption("Dati del cliente per la fattura elettronica");
    chkPA.set_caption("Pubblica amministrazione");
    chkGruppo.set_caption("Membro di un gruppo IVA (scrive anche il suo codice fiscale)");
    txtCodice.set_tool_tip("Sette lettere o cifre; sei per un ufficio della pubblica amministrazione");
    txtPEC.set_tool_tip("Serve solo a chi non ha un codice destinatario");
    fill_countries(cboNazione, {});
    fill_countries(cboPaeseIVA, "come la nazione");
    cmdSalva.set_caption("&Salva");
    cmdChiudi.set_caption("&Chiudi");

    cboNazione.on_click = [this] { country_changed(); };
    txtCodice.on_lost_focus = [this] { lblAvviso.set_caption(recipient_fault()); };
    txtPEC.on_lost_focus = [this] { lblAvviso.set_caption(pec_fault(txtPEC.text())); };
    txtIVAEstera.on_lost_focus = [this] { lblAvviso.set_caption(text_fault(txtIVAEstera.text(), 28)); };
    for (TextBox* box : {&txtIndirizzo, &txtComune}) {
        box->on_lost_focus = [this, box] { lblAvviso.set_caption(text_fault(box->text(), 60)); };
    }
    cmdSalva.on_click = [this] { save(); };
    cmdChiudi.on_click = [this] { unload(); };
    choose_code(cboNazione, "IT");
    choose_code(cboPaeseIVA, "");
}

void frmDatiClienteElettronica::country_changed() {
    const bool abroad = chosen_code(cboNazione) != "IT";
    for (Control* control : {static_cast<Control*>(&cboPaeseIVA), static_cast<Control*>(&txtIVAEstera),
                             static_cast<Control*>(&txtIndirizzo), static_cast<Control*>(&txtComune)}) {
        control->set_enabled(abroad);
    }
}

void frmDatiClienteElettronica::edit(int number, const std::string& name) {
    number_ = number;
    lblCliente.set_caption(name);
    const Customer customer = Desk(program_).records().customer(number);
    chkPA.set_checked(customer.public_administration);
    txtCodice.set_text(customer.CodiceDestinatario);
    txtPEC.set_text(customer.PECDestinatario);
    choose_code(cboNazione, customer.Nazione.empty() ? "IT" : customer.Nazione);
    chkGruppo.set_checked(customer.vat_group);
    choose_code(cboPaeseIVA, customer.IdPaese);
    txtIVAEstera.set_text(customer.IdCodice);
    txtIndirizzo.set_text(customer.Indirizzo);
    txtComune.set_text(customer.Comune);
    country_changed();
}

void frmDatiClienteElettronica::lead_to(Field field) {
    Control& control = field == Field::pec                   ? static_cast<Control&>(txtPEC)
                       : field == Field::nazione             ? static_cast<Control&>(cboNazione)
                       : field == Field::customer_vat_abroad ? static_cast<Control&>(txtIVAEstera)
                                                             : static_cast<Control&>(txtCodice);
    control.set_focus();
}

Customer frmDatiClienteElettronica::entered() const {
    Customer customer;
    customer.public_administration = chkPA.checked();
    customer.CodiceDestinatario = plain_code(txtCodice.text());
    customer.PECDestinatario = trim(txtPEC.text());
    const std::string country = chosen_code(cboNazione);
    customer.Nazione = country == "IT" ? "" : country;
    customer.vat_group = chkGruppo.checked();
    if (customer.Nazione.empty()) return customer;
    customer.IdPaese = chosen_code(cboPaeseIVA);
    customer.IdCodice = trim(txtIVAEstera.text());
    customer.Indirizzo = trim(txtIndirizzo.text());
    customer.Comune = trim(txtComune.text());
    return customer;
}

std::string frmDatiClienteElettronica::recipient_fault() const {
    return e_invoice::recipient_fault(txtCodice.text(), chkPA.checked());
}

void frmDatiClienteElettronica::save() {
    const auto refuse = [this](const std::string& fault, TextBox& box) {
        program_.message(fault, BoxIcon::exclamation);
        box.set_focus();
    };
    if (const std::string fault = recipient_fault(); !fault.empty()) return refuse(fault, txtCodice);
    if (chkPA.checked() && trim(txtCodice.text()).empty()) {
        return refuse("Di una pubblica amministrazione serve il codice ufficio: si trova nell'indice IPA.",
                      txtCodice);
    }
    if (const std::string fault = pec_fault(txtPEC.text()); !fault.empty()) return refuse(fault, txtPEC);
    telling_failures(program_, [&] {
        Desk(program_).records().save_customer(number_, entered());
        unload();
    });
}

} // namespace tarvello
