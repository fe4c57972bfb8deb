#include "failure.h"
#include "invoices/invoice_amounts.h"
#include "invoices/invoice_form.h"
#include "program/session_fields.h"
#include "text/letter_case.h"
#include "text/numbers.h"

/// The columns of Fatture beside the fields of the form: how a stored invoice comes on view and goes from it,
/// and what of the fields goes into its row and into a draft. Those of the customer stand in
/// customer_block.cpp.
namespace tarvello {
namespace {

std::string yes_or_empty(const CheckBox& box) { return box.checked() ? "Sì" : ""; }

} // namespace

// On view: texts go into the fields as they stand; nothing is calculated again but the base of the
// withholding, which has no column. Every field is a step of its own: one that cannot be read leaves its
// field as it was.

void frmTarvello::MostraFattura() {
    Recordset& row = program_.database().rsFatture;
    archive_ = program_.database().dbConnection.path();
    copy_column("ID", txtCurrent_ID);
    skip_failures([&] {
        if (row.is_null("Data_Fattura")) return;
        skip_failures([&] { DTPicker1.set_date(row.date("Data_Fattura")); });
        txtNumeroFattura.set_text(row.text("Numero_Fattura") + " - " +
                                  std::to_string(year_of(DTPicker1.date())));
    });
    customer.show(row);
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

// Off view

void frmTarvello::PulisciFattura() {
    customer.clear();
    for (std::size_t i = 0; i < lines; ++i) {
        PrestazioneSingola[i].clear();
        ShapePrestazioneSingola[i].set_visible(false);
        txtImportoPrestazioni[i].clear();
        ShapeImporto[i].set_visible(false);
    }
    txtArticoloEsenzione.clear();
    ComboPercentualeRivalsa.clear();
    ComboIVASpeseAnticipate.set_list_index(0);
    CheckRivalsa.set_checked(false);
    CheckSpese.set_checked(false);
    CheckRitenuta.set_checked(false);
    CheckPagamento.set_checked(false);
    txtImponibile.clear();
    LabelImponibile.set_caption({});
    txtIVA.clear();
    txtTotaleFattura.clear();
    txtImportoSpeseAnticipate.clear();
    // Locked, the box of the expenses does not act by itself.
    show_expenses(false);
    txtRitenutaAcconto.clear();
    LabelRitenuta.set_caption({});
    txtImportoNetto.clear();
    txtPagamento.clear();
}

// Into a draft

std::vector<Control*> frmTarvello::draft_fields() {
    // A tick brings texts with it: it comes before those that were typed.
    std::vector<Control*> fields{&DTPicker1, &CheckRivalsa, &CheckSpese, &CheckRitenuta, &CheckPagamento};
    if (!txtNumeroFattura.locked()) fields.push_back(&txtNumeroFattura);
    fields.insert(fields.end(),
                  {&customer.txtNuovoInserimento, &customer.ComboNumeroCliente, &customer.txtNome});
    for (TextBox& box : customer.txtAnagrafica) fields.push_back(&box);
    for (TextBox& box : PrestazioneSingola) fields.push_back(&box);
    for (TextBox& box : txtImportoPrestazioni) fields.push_back(&box);
    fields.insert(fields.end(),
                  {&ComboPercentualeRivalsa, &txtImportoRivalsa, &txtImponibile, &ComboIVAApplicata, &txtIVA,
                   &txtArticoloEsenzione, &txtImportoSpeseAnticipate, &txtTotaleFattura, &ComboRitenuta,
                   &ComboRitenutaSu, &txtRitenutaAcconto, &txtImportoNetto, &txtPagamento});
    return fields;
}

// Into the row

std::vector<ColumnText> frmTarvello::column_texts() const {
    std::vector<ColumnText> columns = {
        {"Numero_Fattura", plain_number(leading_number(txtNumeroFattura.text()))},
        {"Data_Fattura", short_date_text(DTPicker1.date(), program_.regional())},
        {"Anno", std::to_string(year_of(DTPicker1.date()))},
    };
    const std::vector<ColumnText> of_customer = customer.columns();
    columns.insert(columns.end(), of_customer.begin(), of_customer.end());
    for (std::size_t i = 0; i < lines; ++i) {
        const std::string number = std::to_string(i + 1);
        columns.push_back({"Prestazione" + number, trim(PrestazioneSingola[i].text())});
        columns.push_back({"Importo" + number, txtImportoPrestazioni[i].text()});
    }
    columns.insert(columns.end(), {
                                      {"Rivalsa", yes_or_empty(CheckRivalsa)},
                                      {"Dicitura_Rivalsa", CheckRivalsa.caption()},
                                      {"Percentuale_Rivalsa", ComboPercentualeRivalsa.text()},
                                      {"Importo_Rivalsa", txtImportoRivalsa.text()},
                                      {"Imponibile", txtImponibile.text()},
                                      {"Aliquota_IVA", ComboIVAApplicata.text()},
                                      {"Imposta_IVA", txtIVA.text()},
                                      {"Spese", yes_or_empty(CheckSpese)},
                                      {"IVA_Spese", ComboIVASpeseAnticipate.text()},
                                      {"Importo_Spese", txtImportoSpeseAnticipate.text()},
                                      {"Articolo_Esenzione", txtArticoloEsenzione.text()},
                                      {"Totale_Fattura", txtTotaleFattura.text()},
                                      {"Ritenuta", yes_or_empty(CheckRitenuta)},
                                      {"Importo_Ritenuta", txtRitenutaAcconto.text()},
                                      {"Percentuale_Ritenuta", ComboRitenuta.text()},
                                      {"Ritenuta_Su", ComboRitenutaSu.text()},
                                      {"Importo_Netto", txtImportoNetto.text()},
                                      {"Check_Pagamento", yes_or_empty(CheckPagamento)},
                                      {"Pagamento", txtPagamento.text()},
                                  });
    return columns;
}

} // namespace tarvello
