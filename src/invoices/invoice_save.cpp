#include "failure.h"
#include "invoices/invoice_form.h"
#include "text/letter_case.h"
#include "text/numbers.h"

#include <vector>

/// Between "Salva Fattura" or "Aggiorna Dati" and the row on disk: the checks in their order, the
/// calculation, the statement.
namespace tarvello {
namespace {

bool blank(const TextEntry& field) { return trim(field.text()).empty(); }

std::string yes_or_empty(const CheckBox& box) { return box.checked() ? "Sì" : ""; }

} // namespace

void frmTarvello::save_new_invoice() {
    if (!is_complete() || !date_fits_new_invoice()) return;
    leave_customer_field(0);
    if (!program_.confirm("\nSalvare la fattura?")) return;
    if (!insert_new_customer()) return;
    Calcola();
    insert_invoice();

    BloccaAnagrafica();
    BloccaFattura();
    cmdNuovoAnnoFatturazione.set_enabled(false);
    ImpostaStato("Salva Fattura");
    cmdNuovaFattura.set_caption("Nuova Fattura");
    show_toolbar_mode(1, "Nuova Fattura", new_picture);
    txtNumeroFattura.set_locked(true);
}

void frmTarvello::save_changed_invoice() {
    if (!is_complete() || !date_fits_changed_invoice()) return;
    leave_customer_field(2);
    if (!insert_new_customer()) return;
    BloccaAnagrafica();
    Calcola();
    BloccaFattura();
    for (CommandButton& move : cmdNavigazione) move.set_enabled(true);
    update_invoice();

    ImpostaStato("Aggiorna Dati");
    cmdModificaDati.set_caption("Modifica Dati");
    show_toolbar_mode(2, "Modifica Dati", change_picture);
}

bool frmTarvello::is_complete() {
    try {
        return every_field_is_filled();
    } catch (const Failure&) {
        // Whatever could not be checked does not get saved.
        program_.message("Errore nel controllo dei dati. Ripetere la procedura di fatturazione",
                         BoxIcon::critical);
        return false;
    }
}

bool frmTarvello::every_field_is_filled() {
    const auto refuse = [&](const char* message, Control* field, BoxIcon icon = BoxIcon::exclamation) {
        program_.message(message, icon);
        if (field) field->set_focus();
        return false;
    };
    if (blank(txtNumeroFattura)) return refuse("Inserire il Numero della Fattura.", &txtNumeroFattura);
    if (blank(txtAnagrafica[5])) {
        return refuse("Inserire il Cognome o Ragione Sociale del Cliente.", &txtAnagrafica[5]);
    }
    if (blank(txtAnagrafica[0]) && blank(txtAnagrafica[6])) {
        return refuse("Inserire il Codice Fiscale o la Partita IVA.", &txtAnagrafica[0]);
    }
    if (blank(txtAnagrafica[1])) return refuse("Inserire l'indirizzo.", &txtAnagrafica[1]);
    if (blank(txtAnagrafica[2])) return refuse("Inserire il CAP.", &txtAnagrafica[2]);
    if (blank(txtAnagrafica[3])) return refuse("Inserire la provincia.", &txtAnagrafica[3]);
    if (blank(txtAnagrafica[4])) return refuse("Inserire la città.", &txtAnagrafica[4]);
    if (blank(PrestazioneSingola[0])) {
        return refuse("Per completare la fattura è necessario inserire almeno una prestazione professionale.",
                      &PrestazioneSingola[0]);
    }
    // From here on a text of blanks counts as one.
    for (std::size_t i = 0; i < lines; ++i) {
        if (!PrestazioneSingola[i].empty() && txtImportoPrestazioni[i].empty()) {
            return refuse("Inserire l'importo della prestazione.", &txtImportoPrestazioni[i]);
        }
    }
    for (std::size_t i = 0; i < lines; ++i) {
        if (!txtImportoPrestazioni[i].empty() && PrestazioneSingola[i].empty()) {
            return refuse("Inserire la descrizione.", &PrestazioneSingola[i]);
        }
    }
    if (ComboIVAApplicata.empty()) {
        return refuse("Selezionare l'aliquota IVA.", &ComboIVAApplicata, BoxIcon::information);
    }
    if (CheckRivalsa.checked() && ComboPercentualeRivalsa.empty()) {
        return refuse("Impostare l'aliquota relativa alla rivalsa.", nullptr);
    }
    if (CheckSpese.checked() && ComboIVASpeseAnticipate.empty()) {
        return refuse("Impostare l'IVA relativa alle spese anticipate.", nullptr);
    }
    if (CheckSpese.checked() && txtImportoSpeseAnticipate.empty()) {
        return refuse("Digitare l'importo relativo alle spese anticipate.", &txtImportoSpeseAnticipate);
    }
    if (CheckRitenuta.checked() && ComboRitenuta.empty()) {
        return refuse("Selezionare L'aliquota di Ritenuta.", &ComboRitenuta);
    }
    return true;
}

std::vector<frmTarvello::ColumnText> frmTarvello::column_texts() const {
    // Apostrophes are doubled in names, addresses and services, and nowhere else: in any other column one
    // breaks the statement.
    const auto escaped = [](const TextBox& box) { return double_apostrophes(trim(box.text())); };
    std::vector<ColumnText> columns = {
        {"Numero_Fattura", plain_number(leading_number(txtNumeroFattura.text()))},
        {"Data_Fattura", short_date_text(DTPicker1.date(), program_.regional())},
        {"Anno", std::to_string(year_of(DTPicker1.date()))},
        {"Numero_Cliente", ComboNumeroCliente.text()},
        {"Codice_Fiscale", trim(txtAnagrafica[0].text())},
        {"Partita_IVA", trim(txtAnagrafica[6].text())},
        {"Nome", escaped(txtNome)},
        {"Cognome_Ragione_Sociale", escaped(txtAnagrafica[5])},
        {"Indirizzo", escaped(txtAnagrafica[1])},
        {"CAP", escaped(txtAnagrafica[2])},
        {"Provincia", escaped(txtAnagrafica[3])},
        {"Città", escaped(txtAnagrafica[4])},
    };
    for (std::size_t i = 0; i < lines; ++i) {
        const std::string number = std::to_string(i + 1);
        columns.push_back({"Prestazione" + number, escaped(PrestazioneSingola[i])});
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

void frmTarvello::insert_invoice() {
    std::string names;
    std::string values;
    for (const auto& [column, text] : column_texts()) {
        if (!names.empty()) {
            names += ',';
            values += ',';
        }
        names += column;
        values += "'" + text + "'";
    }
    ChiudiRecordset();
    Database& database = program_.database();
    database.rsFatture.open("INSERT INTO Fatture (" + names + ") VALUES (" + values + ")",
                            database.dbConnection);
    ChiudiRecordset();
    // The new row is the one of the highest key.
    database.rsFatture.open("SELECT TOP 1 * FROM Fatture ORDER BY ID DESC", database.dbConnection);
    txtCurrent_ID.set_text(database.rsFatture.text("ID"));
    ChiudiRecordset();
}

void frmTarvello::update_invoice() {
    std::string assignments;
    for (const auto& [column, text] : column_texts()) {
        if (!assignments.empty()) assignments += ',';
        assignments += column + "='" + text + "'";
    }
    ChiudiRecordset();
    program_.database().rsFatture.open("UPDATE Fatture SET " + assignments +
                                           " WHERE ID=" + plain_number(leading_number(txtCurrent_ID.text())),
                                       program_.database().dbConnection);
    ChiudiRecordset();
}

} // namespace tarvello
