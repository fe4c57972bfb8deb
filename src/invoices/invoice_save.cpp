#include "failure.h"
#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "program/messages.h"
#include "text/letter_case.h"
#include "text/numbers.h"

#include <utility>
#include <vector>

/// Between "Salva Fattura" or "Aggiorna Dati" and the row on disk: the checks in their order, the
/// calculation, the statement.
namespace tarvello {
namespace {

bool blank(const TextEntry& field) { return trim(field.text()).empty(); }

std::pair<std::vector<std::string>, Parameters> names_and_texts(const std::vector<ColumnText>& columns) {
    std::pair<std::vector<std::string>, Parameters> parts;
    for (const auto& [column, text] : columns) {
        parts.first.push_back(column);
        parts.second.emplace_back(text);
    }
    return parts;
}

} // namespace

void frmTarvello::save_new_invoice() {
    if (!is_complete() || !date_fits_new_invoice()) return;
    customer.leave(CustomerBlock::codice_fiscale);
    if (!program_.confirm("\nSalvare la fattura?")) return;
    if (!customer.insert_if_new()) return;
    Calcola();
    insert_invoice();

    BloccaAnagrafica();
    BloccaFattura();
    cmdNuovoAnnoFatturazione.set_enabled(false);
    ImpostaStato("Salva Fattura");
    cmdNuovaFattura.set_caption("Nuova Fattura");
    show_toolbar_mode(invoice_tool::new_invoice, "Nuova Fattura", new_picture);
    txtNumeroFattura.set_locked(true);
}

void frmTarvello::save_changed_invoice() {
    if (!is_complete() || !date_fits_changed_invoice()) return;
    customer.leave(CustomerBlock::cap);
    if (!customer.insert_if_new()) return;
    BloccaAnagrafica();
    Calcola();
    BloccaFattura();
    for (CommandButton& move : cmdNavigazione) move.set_enabled(true);
    update_invoice();

    ImpostaStato("Aggiorna Dati");
    cmdModificaDati.set_caption("Modifica Dati");
    show_toolbar_mode(invoice_tool::change, "Modifica Dati", change_picture);
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
    auto& block = customer.txtAnagrafica;
    if (blank(block[CustomerBlock::cognome])) {
        return refuse(messages::no_surname, &block[CustomerBlock::cognome]);
    }
    if (blank(block[CustomerBlock::codice_fiscale]) && blank(block[CustomerBlock::partita_iva])) {
        return refuse("Inserire il Codice Fiscale o la Partita IVA.", &block[CustomerBlock::codice_fiscale]);
    }
    if (blank(block[CustomerBlock::indirizzo]))
        return refuse("Inserire l'indirizzo.", &block[CustomerBlock::indirizzo]);
    if (blank(block[CustomerBlock::cap])) return refuse(messages::no_cap, &block[CustomerBlock::cap]);
    if (blank(block[CustomerBlock::provincia]))
        return refuse("Inserire la provincia.", &block[CustomerBlock::provincia]);
    if (blank(block[CustomerBlock::citta])) return refuse("Inserire la città.", &block[CustomerBlock::citta]);
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

void frmTarvello::insert_invoice() {
    draft_.keep(); // as it goes into its row
    Database& database = program_.database();
    const auto [names, texts] = names_and_texts(column_texts());
    run_statement(database, database.rsFatture, insert_statement("Fatture", names), texts);
    draft_.drop();
    with_result(database, database.rsFatture, newest_invoice,
                [this](const Recordset& row) { txtCurrent_ID.set_text(row.text("ID")); });
}

void frmTarvello::update_invoice() {
    Database& database = program_.database();
    const std::string id = plain_number(leading_number(txtCurrent_ID.text()));
    const auto [names, texts] = names_and_texts(column_texts());
    run_statement(database, database.rsFatture, update_statement("Fatture", names, "ID=" + id), texts);
    draft_.drop();
}

} // namespace tarvello
