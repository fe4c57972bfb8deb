#pragma once

#include "e_invoice/findings.h"
#include "e_invoice/source.h"
#include "platform/controls.h"
#include "text/regional_settings.h"

#include <string>

namespace tarvello {

/// What is to be decided for one electronic invoice: a page of its window.
class DecisionsPage {
public:
    explicit DecisionsPage(Form& form, const Date& today);

    ComboBox cboTipo;
    ComboBox cboBanca;
    ComboBox cboNatura;
    TextBox txtNorma;
    ComboBox cboNaturaSpese;
    TextBox txtDescrizioneSpese;
    ComboBox cboEsigibilita;
    CheckBox chkBollo;
    /// Why the stamp duty is proposed or not.
    Label lblBollo;
    TextBox txtCausale;
    ComboBox cboRiferimento;
    TextBox txtIdDocumento;
    TextBox txtDataDocumento;
    TextBox txtCUP;
    TextBox txtCIG;
    TextBox txtCollegata;
    TextBox txtDataCollegata;
    TextBox txtIntento;
    TextBox txtDataIntento;

    void show(const e_invoice::Decisions& decisions, const RegionalSettings& regional);
    /// What the boxes say, over what they do not show.
    e_invoice::Decisions entered(e_invoice::Decisions decisions, const RegionalSettings& regional) const;
    /// The first box of a date that holds none; null if they are all well.
    const TextBox* unread_date(const RegionalSettings& regional) const;
    /// The control in which a finding on a decision is mended.
    Control& control_of(e_invoice::Field field);
    /// The boxes that matter for this invoice can be reached.
    void enable(bool without_vat, bool expenses, bool public_administration, bool payment);
    /// After each change by the user.
    void on_change(const Event& event);
};

} // namespace tarvello
