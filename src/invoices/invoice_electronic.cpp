#include "e_invoice/desk.h"
#include "e_invoice/findings.h"
#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "program/doors.h"
#include "text/numbers.h"

#include <algorithm>

/// The ways between the invoice form and the electronic invoice of the row on view.
namespace tarvello {

using e_invoice::Field;

void frmTarvello::open_electronic() {
    const std::int16_t id = leading_int16(txtCurrent_ID.text());
    if (id == 0) {
        program_.message("Nessuna fattura da mostrare: salvare prima una fattura.", BoxIcon::information);
        return;
    }
    program_.doors().open_e_invoice(id);
}

bool frmTarvello::may_touch(const std::string& deed) {
    return e_invoice::may_touch(program_, leading_int16(txtCurrent_ID.text()), deed);
}

void frmTarvello::show_stored(int id) {
    const bool writing =
        cmdNuovaFattura.caption() != "Nuova Fattura" || cmdModificaDati.caption() != "Modifica Dati";
    if (writing) {
        program_.message("Salvare o annullare prima la fattura che si sta scrivendo.", BoxIcon::information);
        return;
    }
    with_result(program_.database(), program_.database().rsFatture,
                "SELECT * FROM Fatture WHERE ID=" + std::to_string(id), [this](const Recordset& rows) {
                    if (!rows.eof()) MostraFattura();
                });
}

Control& frmTarvello::control_of(Field field, int line) {
    const std::size_t place = static_cast<std::size_t>(std::clamp(line, 1, static_cast<int>(lines))) - 1;
    auto& block = customer.txtAnagrafica;
    switch (field) {
    case Field::customer_name:
        return block[CustomerBlock::cognome];
    case Field::customer_nome:
        return customer.txtNome;
    case Field::customer_partita_iva:
        return block[CustomerBlock::partita_iva];
    case Field::customer_codice_fiscale:
        return block[CustomerBlock::codice_fiscale];
    case Field::customer_indirizzo:
        return block[CustomerBlock::indirizzo];
    case Field::customer_cap:
        return block[CustomerBlock::cap];
    case Field::customer_citta:
        return block[CustomerBlock::citta];
    case Field::customer_provincia:
        return block[CustomerBlock::provincia];
    case Field::data:
        return DTPicker1;
    case Field::prestazione:
        return PrestazioneSingola[place];
    case Field::importo:
        return txtImportoPrestazioni[place];
    case Field::percentuale_rivalsa:
        return ComboPercentualeRivalsa;
    case Field::importo_rivalsa:
        return txtImportoRivalsa;
    case Field::imponibile:
        return txtImponibile;
    case Field::aliquota_iva:
        return ComboIVAApplicata;
    case Field::imposta_iva:
        return txtIVA;
    case Field::importo_spese:
        return txtImportoSpeseAnticipate;
    case Field::totale:
        return txtTotaleFattura;
    case Field::percentuale_ritenuta:
        return ComboRitenuta;
    case Field::importo_ritenuta:
        return txtRitenutaAcconto;
    case Field::importo_netto:
        return txtImportoNetto;
    case Field::pagamento:
        return txtPagamento;
    default:
        return txtNumeroFattura;
    }
}

} // namespace tarvello
