#pragma once

#include "e_invoice/findings.h"
#include "e_invoice/source.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <string>

namespace tarvello {

class Program;

/// "Dati del cliente per la fattura elettronica": where its invoices go, and what the register of customers
/// does not know of it.
class frmDatiClienteElettronica : public Form {
public:
    explicit frmDatiClienteElettronica(Program& program);

    Label lblCliente{*this, "lblCliente"};
    CheckBox chkPA{*this, "chkPA"};
    TextBox txtCodice{*this, "txtCodice"};
    TextBox txtPEC{*this, "txtPEC"};
    ComboBox cboNazione{*this, "cboNazione"};
    CheckBox chkGruppo{*this, "chkGruppo"};
    ComboBox cboPaeseIVA{*this, "cboPaeseIVA"};
    TextBox txtIVAEstera{*this, "txtIVAEstera"};
    TextBox txtIndirizzo{*this, "txtIndirizzo"};
    TextBox txtComune{*this, "txtComune"};
    /// What is wrong with the entry that was left last.
    Label lblAvviso{*this, "lblAvviso"};
    CommandButton cmdSalva{*this, "cmdSalva"};
    CommandButton cmdChiudi{*this, "cmdChiudi"};

    /// Whose data they are; before it is shown.
    void edit(int number, const std::string& name);
    /// The keyboard goes to the field in which a finding is mended.
    void lead_to(e_invoice::Field field);

private:
    void country_changed();
    e_invoice::Customer entered() const;
    std::string recipient_fault() const;
    void save();

    Program& program_;
    int number_ = 0;
};

} // namespace tarvello
