#include "failure.h"
#include "invoices/invoice_amounts.h"
#include "invoices/invoice_form.h"
#include "program/session_fields.h"
#include "text/numbers.h"

/// Showing a stored invoice. Its texts go into the fields as they stand; nothing is calculated again but the
/// base of the withholding, which has no column. Every field is a step of its own: one that cannot be read
/// leaves its field as it was.
namespace tarvello {

void frmTarvello::MostraFattura() {
    Recordset& row = program_.database().rsFatture;
    copy_column("ID", txtCurrent_ID);
    skip_failures([&] {
        if (row.is_null("Data_Fattura")) return;
        skip_failures([&] { DTPicker1.set_date(row.date("Data_Fattura")); });
        txtNumeroFattura.set_text(row.text("Numero_Fattura") + " - " +
                                  std::to_string(year_of(DTPicker1.date())));
    });
    copy_column("Numero_Cliente", ComboNumeroCliente);
    copy_column("Codice_Fiscale", txtAnagrafica[0]);
    copy_column("Indirizzo", txtAnagrafica[1]);
    copy_column("CAP", txtAnagrafica[2]);
    copy_column("Provincia", txtAnagrafica[3]);
    copy_column("Città", txtAnagrafica[4]);
    copy_column("Cognome_Ragione_Sociale", txtAnagrafica[5]);
    copy_column("Partita_IVA", txtAnagrafica[6]);
    copy_column("Nome", txtNome);
    for (std::size_t i = 0; i < lines; ++i) {
        const std::string number = std::to_string(i + 1);
        copy_column("Prestazione" + number, PrestazioneSingola[i]);
        copy_column("Importo" + number, txtImportoPrestazioni[i]);
    }
    show_rivalsa();
    copy_column("Imponibile", txtImponibile);
    skip_failures([&] { LabelImponibile.set_caption(row.text("Imponibile")); });
    copy_column("Aliquota_IVA", ComboIVAApplicata);
    copy_column("Imposta_IVA", txtIVA);
    show_spese();
    copy_column("Totale_Fattura", txtTotaleFattura);
    show_ritenuta();
    copy_column("Importo_Netto", txtImportoNetto);
    show_pagamento();
}

void frmTarvello::copy_column(std::string_view column, TextEntry& field) {
    skip_failures([&] { field.set_text(program_.database().rsFatture.text(column)); });
}

void frmTarvello::show_rivalsa() {
    const Recordset& row = program_.database().rsFatture;
    skip_failures(
        [&] {
            CheckRivalsa.set_checked(!row.text("Rivalsa").empty());
            if (CheckRivalsa.checked()) {
                copy_column("Percentuale_Rivalsa", ComboPercentualeRivalsa);
                copy_column("Importo_Rivalsa", txtImportoRivalsa);
            } else {
                ComboPercentualeRivalsa.clear();
                txtImportoRivalsa.clear();
            }
        },
        [&] {
            const std::string wording = row.text("Dicitura_Rivalsa");
            CheckRivalsa.set_caption(wording.empty() ? program_.session().txtProfessione.text() : wording);
        });
}

void frmTarvello::show_spese() {
    const Recordset& row = program_.database().rsFatture;
    copy_column("IVA_Spese", ComboIVASpeseAnticipate);
    skip_failures([&] {
        const bool part_of_invoice = !row.text("Spese").empty();
        CheckSpese.set_checked(part_of_invoice);
        show_expenses(part_of_invoice);
        if (part_of_invoice) {
            copy_column("Importo_Spese", txtImportoSpeseAnticipate);
            copy_column("Articolo_Esenzione", txtArticoloEsenzione);
        } else {
            txtImportoSpeseAnticipate.clear();
            txtArticoloEsenzione.clear();
        }
    });
}

void frmTarvello::show_ritenuta() {
    const Recordset& row = program_.database().rsFatture;
    skip_failures([&] {
        CheckRitenuta.set_checked(!row.text("Ritenuta").empty());
        if (!CheckRitenuta.checked()) {
            ComboRitenuta.clear();
            ComboRitenutaSu.clear();
            txtRitenutaAcconto.clear();
            LabelRitenuta.set_caption({});
            return;
        }
        copy_column("Ritenuta_Su", ComboRitenutaSu);
        copy_column("Importo_Ritenuta", txtRitenutaAcconto);
        const std::string percentage = row.text("Percentuale_Ritenuta");
        if (percentage == "20%" || percentage == "20") {
            ComboRitenuta.set_list_index(0);
        } else if (percentage == "10%") {
            ComboRitenuta.set_list_index(1);
        } else if (percentage != "20% (su 75% imp.)") { // an older wording, for which the combo has no item
            ComboRitenuta.set_text(percentage + "%");
        }
        LabelRitenuta.set_caption(invoice_amounts::ritenuta_base_shown(
            row.text("Importo_Ritenuta"), leading_number(percentage), program_.regional()));
    });
}

void frmTarvello::show_pagamento() {
    const Recordset& row = program_.database().rsFatture;
    skip_failures([&] {
        CheckPagamento.set_checked(!row.text("Check_Pagamento").empty());
        if (CheckPagamento.checked()) {
            // Ticking has put the bank of the letterhead there.
            copy_column("Pagamento", txtPagamento);
        } else {
            txtPagamento.clear();
        }
    });
}

} // namespace tarvello
