#include "e_invoice/decisions_page.h"

#include "e_invoice/code_choice.h"
#include "text/letter_case.h"

#include <algorithm>
#include <sstream>

namespace tarvello {

using namespace e_invoice;

DecisionsPage::DecisionsPage(Form& form, const Date& today)
    : cboTipo(form, "cboTipo"), cboBanca(form, "cboBanca"), cboNatura(form, "cboNatura"),
      txtNorma(form, "txtNorma"), cboNaturaSpese(form, "cboNaturaSpese"),
      txtDescrizioneSpese(form, "txtDescrizioneSpese"), cboEsigibilita(form, "cboEsigibilita"),
      chkBollo(form, "chkBollo"), lblBollo(form, "lblBollo"), txtCausale(form, "txtCausale"),
      cboRiferimento(form, "cboRiferimento"), txtIdDocumento(form, "txtIdDocumento"),
      txtDataDocumento(form, "txtDataDocumento"), txtCUP(form, "txtCUP"), txtCIG(form, "txtCIG"),
      txtCollegata(form, "txtCollegata"), txtDataCollegata(form, "txtDataCollegata"),
      txtIntento(form, "txtIntento"), txtDataIntento(form, "txtDataIntento") {
    fill_codes(cboTipo, document_kinds(), today);
    fill_codes(cboNatura, natures(), today, "da scegliere");
    fill_codes(cboNaturaSpese, natures(), today, "da scegliere");
    chkBollo.set_caption("Bollo di 2 euro");
    for (const char* item : {"immediata (I)", "scissione dei pagamenti (S)"}) cboEsigibilita.add_item(item);
    for (const char* item : {"se il pagamento la nomina", "quella dell'intestazione", "nessuna"})
        cboBanca.add_item(item);
    for (const char* item : {"nessuno", "ordine di acquisto", "contratto", "convenzione"})
        cboRiferimento.add_item(item);
    for (ComboBox* box : {&cboEsigibilita, &cboBanca, &cboRiferimento}) box->set_list_only(true);
    txtCausale.set_tool_tip("Una riga per ogni causale");
}

void DecisionsPage::show(const Decisions& decisions, const RegionalSettings& regional) {
    const auto day = [&](const std::optional<Date>& date) {
        return date ? short_date_text(*date, regional) : std::string();
    };
    choose_code(cboTipo, decisions.TipoDocumento);
    choose_code(cboNatura, decisions.Natura);
    txtNorma.set_text(decisions.RiferimentoNormativo);
    choose_code(cboNaturaSpese, decisions.NaturaSpese);
    txtDescrizioneSpese.set_text(decisions.DescrizioneSpese);
    chkBollo.set_checked(decisions.bollo);
    choose_code(cboEsigibilita, decisions.EsigibilitaIVA.empty() ? "I" : decisions.EsigibilitaIVA);
    cboBanca.set_list_index(static_cast<int>(decisions.bank));
    std::string reasons;
    for (const std::string& reason : decisions.Causale) reasons += (reasons.empty() ? "" : "\n") + reason;
    txtCausale.set_text(reasons);
    cboRiferimento.set_list_index(static_cast<int>(decisions.reference_kind));
    txtIdDocumento.set_text(decisions.reference.IdDocumento);
    txtDataDocumento.set_text(day(decisions.reference.Data));
    txtCUP.set_text(decisions.reference.CodiceCUP);
    txtCIG.set_text(decisions.reference.CodiceCIG);
    txtCollegata.set_text(decisions.FatturaCollegata.IdDocumento);
    txtDataCollegata.set_text(day(decisions.FatturaCollegata.Data));
    txtIntento.set_text(decisions.ProtocolloIntento);
    txtDataIntento.set_text(day(decisions.DataIntento));
}

Decisions DecisionsPage::entered(Decisions decisions, const RegionalSettings& regional) const {
    decisions.TipoDocumento = chosen_code(cboTipo);
    decisions.Natura = chosen_code(cboNatura);
    decisions.RiferimentoNormativo = trim(txtNorma.text());
    decisions.NaturaSpese = chosen_code(cboNaturaSpese);
    decisions.DescrizioneSpese = trim(txtDescrizioneSpese.text());
    decisions.bollo = chkBollo.checked();
    const std::string due = chosen_code(cboEsigibilita);
    decisions.EsigibilitaIVA = due == "I" ? "" : due;
    decisions.bank = static_cast<BankDetails>(std::max(0, cboBanca.list_index()));
    decisions.Causale.clear();
    std::istringstream reasons(txtCausale.text());
    for (std::string line; std::getline(reasons, line);) {
        if (const std::string reason = trim(line); !reason.empty()) decisions.Causale.push_back(reason);
    }
    decisions.reference_kind = static_cast<ReferenceKind>(std::max(0, cboRiferimento.list_index()));
    decisions.reference.IdDocumento = trim(txtIdDocumento.text());
    decisions.reference.Data = read_date(txtDataDocumento.text(), regional);
    decisions.reference.CodiceCUP = trim(txtCUP.text());
    decisions.reference.CodiceCIG = trim(txtCIG.text());
    decisions.FatturaCollegata.IdDocumento = trim(txtCollegata.text());
    decisions.FatturaCollegata.Data = read_date(txtDataCollegata.text(), regional);
    decisions.ProtocolloIntento = trim(txtIntento.text());
    decisions.DataIntento = read_date(txtDataIntento.text(), regional);
    return decisions;
}

const TextBox* DecisionsPage::unread_date(const RegionalSettings& regional) const {
    for (const TextBox* box : {&txtDataDocumento, &txtDataCollegata, &txtDataIntento}) {
        if (!trim(box->text()).empty() && !read_date(box->text(), regional)) return box;
    }
    return nullptr;
}

Control& DecisionsPage::control_of(Field field) {
    switch (field) {
    case Field::natura:
        return cboNatura;
    case Field::riferimento_normativo:
        return txtNorma;
    case Field::natura_spese:
        return cboNaturaSpese;
    case Field::descrizione_spese:
        return txtDescrizioneSpese;
    case Field::bollo:
        return chkBollo;
    case Field::esigibilita_iva:
        return cboEsigibilita;
    case Field::causale:
        return txtCausale;
    case Field::riferimenti:
        return cboRiferimento;
    case Field::fattura_collegata:
        return txtCollegata;
    case Field::dichiarazione_intento:
        return txtIntento;
    default:
        return cboTipo;
    }
}

void DecisionsPage::enable(bool without_vat, bool expenses, bool public_administration, bool payment) {
    cboNatura.set_enabled(without_vat);
    txtNorma.set_enabled(without_vat);
    cboNaturaSpese.set_enabled(expenses);
    txtDescrizioneSpese.set_enabled(expenses);
    cboEsigibilita.set_enabled(public_administration);
    cboBanca.set_enabled(payment);
    const bool intent = chosen_code(cboNatura) == "N3.5";
    txtIntento.set_enabled(intent);
    txtDataIntento.set_enabled(intent);
    const bool reference = cboRiferimento.list_index() > 0;
    for (TextBox* box : {&txtIdDocumento, &txtDataDocumento, &txtCUP, &txtCIG}) box->set_enabled(reference);
}

void DecisionsPage::on_change(const Event& event) {
    for (ComboBox* box : {&cboTipo, &cboNatura, &cboNaturaSpese, &cboEsigibilita, &cboBanca, &cboRiferimento})
        box->on_click = event;
    chkBollo.on_click = event;
    for (TextBox* box : {&txtNorma, &txtDescrizioneSpese, &txtCausale, &txtIdDocumento, &txtDataDocumento,
                         &txtCUP, &txtCIG, &txtCollegata, &txtDataCollegata, &txtIntento, &txtDataIntento})
        box->on_lost_focus = event;
}

} // namespace tarvello
