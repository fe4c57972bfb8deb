#include "failure.h"
#include "invoices/invoice_form.h"
#include "program/session_fields.h"
#include "text/numbers.h"

/// The modes of the invoice form: what is locked, enabled and shown in each, and the ways between them.
namespace tarvello {

void frmTarvello::BloccaAnagrafica() {
    for (TextBox& field : txtAnagrafica) field.set_locked(true);
    txtNome.set_locked(true);
    cmdCalcolaCF.set_enabled(false);
    FrameData.set_enabled(false);
}

void frmTarvello::SbloccaAnagrafica() {
    for (TextBox& field : txtAnagrafica) field.set_locked(false);
    txtNome.set_locked(false);
    cmdCalcolaCF.set_enabled(true);
    DTPicker1.set_enabled(true);
    FrameData.set_enabled(true);
}

void frmTarvello::lock_invoice(bool locked) {
    cmdCalcola.set_enabled(!locked);
    cmdCercaCliente.set_enabled(!locked);
    for (TextBox& field : PrestazioneSingola) field.set_locked(locked);
    for (TextBox& field : txtImportoPrestazioni) field.set_locked(locked);
    FrameBloccaFattura.set_enabled(!locked);
    txtPagamento.set_locked(locked);
}

void frmTarvello::BloccaFattura() { lock_invoice(true); }

void frmTarvello::SbloccaFattura() { lock_invoice(false); }

void frmTarvello::PulisciFattura() {
    for (TextBox& field : txtAnagrafica) field.clear();
    txtNome.clear();
    ComboNumeroCliente.clear();
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

void frmTarvello::show_toolbar_mode(std::size_t place, const std::string& caption, const char* picture) {
    Toolbar1.button(place).set_caption(caption);
    Toolbar1.button(place).set_picture(picture);
}

void frmTarvello::ImpostaStato(std::string_view action) {
    const std::initializer_list<CommandButton*> commands = {
        &cmdEliminaFattura, &cmdModificaDati, &cmdStampaFattura, &cmdChiudi,
        &cmdCerca,          &StampaWord,      &CheckEmail};
    const auto enable_commands = [&] {
        for (CommandButton* command : commands) command->set_enabled(true);
    };

    if (action == "Salva Fattura") {
        // Runs once on the way into the new mode and once on the way out.
        for (CommandButton& move : cmdNavigazione) move.flip_enabled();
        for (CommandButton* command : commands) command->flip_enabled();
        for (const std::size_t place : {2, 3, 4, 5, 7, 8}) Toolbar1.button(place).flip_visible();
    } else if (action == "Modifica Dati") {
        cmdNuovaFattura.set_enabled(false);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        for (CommandButton* command : commands) {
            if (command != &cmdModificaDati) command->set_enabled(false);
        }
        for (const std::size_t place : {1, 3, 4, 5, 7, 8}) Toolbar1.button(place).set_visible(false);
    } else if (action == "Aggiorna Dati") {
        cmdNuovaFattura.set_enabled(true);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        enable_commands();
        BloccaAnagrafica();
        for (const std::size_t place : {1, 3, 4, 5, 7, 8}) Toolbar1.button(place).set_visible(true);
    } else if (action == "Annulla") {
        cmdNuovaFattura.set_enabled(true);
        cmdNuovaFattura.set_caption("Nuova Fattura");
        show_toolbar_mode(1, "Nuova Fattura", new_picture);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        enable_commands();
        cmdModificaDati.set_caption("Modifica Dati");
        show_toolbar_mode(2, "Modifica Dati", change_picture);
        cmdCerca.set_caption("Cerca Fattura");
        FrameRicerca.set_height(search_closed_height);
        BloccaAnagrafica();
        FrameNota.set_enabled(true);
        for (std::size_t place = 1; place <= Toolbar1.size(); ++place)
            Toolbar1.button(place).set_visible(true);
    } else {
        set_search_state(action);
    }
}

void frmTarvello::start_new_invoice() {
    Toolbar1.button(1).set_picture(save_picture);
    PulisciFattura();
    SbloccaFattura();
    txtNumeroFattura.set_locked(true);
    ImpostaStato("Salva Fattura");
    cmdNuovaFattura.set_caption("Salva Fattura");
    Toolbar1.button(1).set_caption("Salva Fattura");
    cmdNuovoAnnoFatturazione.set_enabled(true);
    ComboIVAApplicata.set_text(program_.session().txt_IVA_default.text());
    CheckRivalsa.set_caption(program_.session().txtProfessione.text());
    cmdCercaCliente.set_focus();
    propose_number();
}

void frmTarvello::start_change() {
    SbloccaFattura();
    for (CommandButton& move : cmdNavigazione) move.set_enabled(false);
    ImpostaStato("Modifica Dati");
    cmdModificaDati.set_caption("Aggiorna Dati");
    show_toolbar_mode(2, "Aggiorna Dati", save_picture);
    SbloccaAnagrafica();
}

void frmTarvello::cancel() {
    ComboNumeroCliente.set_back_color(colors::white);
    ComboNumeroCliente.set_enabled(true);
    for (CommandButton& move : cmdNavigazione) move.set_enabled(true);
    BloccaFattura();
    txtNumeroFattura.set_locked(true);
    ImpostaStato("Annulla");
    txtNuovoInserimento.clear();

    ChiudiRecordset();
    Recordset& rsFatture = program_.database().rsFatture;
    rsFatture.open("SELECT * FROM Fatture WHERE ID=" + std::to_string(leading_int16(txtCurrent_ID.text())),
                   program_.database().dbConnection);
    if (rsFatture.eof()) {
        PulisciFattura();
    } else {
        MostraFattura();
    }
    ChiudiRecordset();
}

void frmTarvello::delete_invoice() {
    try {
        Database& database = program_.database();
        const std::int16_t id = leading_int16(txtCurrent_ID.text());
        ChiudiRecordset();
        database.rsFatture.open("SELECT * FROM Fatture", database.dbConnection);
        const bool any = !database.rsFatture.eof();
        database.rsFatture.close();
        if (any && !program_.confirm("\nEliminare la fattura?")) return;

        database.rsFatture.open("DELETE * FROM Fatture WHERE ID=" + std::to_string(id),
                                database.dbConnection);
        PulisciFattura();
        ChiudiRecordset();
        database.rsFatture.open("SELECT * FROM Fatture ORDER BY ID DESC", database.dbConnection);
        if (!database.rsFatture.eof()) MostraFattura();
        ChiudiRecordset();
    } catch (const Failure&) {
        // The form goes on with what it shows.
        program_.message("Errore nell'eliminazione della fattura.", BoxIcon::critical);
    }
}

} // namespace tarvello
