#pragma once

#include "e_invoice/findings.h"
#include "e_invoice/source.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tarvello {

class Program;

/// "Dati per la fattura elettronica": what the letterhead does not know of who issues the invoices.
class frmDatiFatturaElettronica : public Form {
public:
    explicit frmDatiFatturaElettronica(Program& program);

    Label lblIntestazione{*this, "lblIntestazione"};
    TabControl SSTab1{*this, "SSTab1"};
    TextBox txtNome{*this, "txtNome"};
    TextBox txtCognome{*this, "txtCognome"};
    TextBox txtTitolo{*this, "txtTitolo"};
    TextBox txtCAP{*this, "txtCAP"};
    TextBox txtComune{*this, "txtComune"};
    TextBox txtProvincia{*this, "txtProvincia"};
    ComboBox cboRegime{*this, "cboRegime"};
    ComboBox cboCassa{*this, "cboCassa"};
    ComboBox cboCausale{*this, "cboCausale"};
    ComboBox cboTipoRitenuta{*this, "cboTipoRitenuta"};
    ComboBox cboTipoDocumento{*this, "cboTipoDocumento"};
    ComboBox cboNumero{*this, "cboNumero"};
    TextBox txtIBAN{*this, "txtIBAN"};
    TextBox txtSpese{*this, "txtSpese"};
    TextBox txtAlbo{*this, "txtAlbo"};
    TextBox txtProvinciaAlbo{*this, "txtProvinciaAlbo"};
    TextBox txtNumeroAlbo{*this, "txtNumeroAlbo"};
    TextBox txtDataAlbo{*this, "txtDataAlbo"};
    TextBox txtUfficioREA{*this, "txtUfficioREA"};
    TextBox txtNumeroREA{*this, "txtNumeroREA"};
    TextBox txtCapitale{*this, "txtCapitale"};
    ComboBox cboSocio{*this, "cboSocio"};
    ComboBox cboLiquidazione{*this, "cboLiquidazione"};
    Label lblSanita{*this, "lblSanita"};
    /// What is wrong with the first entry that is.
    Label lblAvviso{*this, "lblAvviso"};
    CommandButton cmdSalva{*this, "cmdSalva"};
    CommandButton cmdChiudi{*this, "cmdChiudi"};

    /// The keyboard goes to the field in which a finding is mended.
    void lead_to(e_invoice::Field field);

protected:
    void on_load() override;

private:
    using Check = std::function<std::string(const std::string&)>;

    void fill_lists();
    void check_when_left();
    void leave_comune();
    std::pair<TextBox*, std::string> first_wrong_entry() const;
    void tell_fault();
    void show_letterhead();
    void turn_to(Control& control);
    void show_entries();
    /// What the boxes say, over the letterhead.
    e_invoice::Issuer entered() const;
    /// The first box that is wrong or lacks what every invoice needs, and why.
    std::pair<TextBox*, std::string> first_fault();
    void save();

    Program& program_;
    e_invoice::Issuer issuer_;
    std::vector<std::pair<TextBox*, Check>> checks_;
};

} // namespace tarvello
