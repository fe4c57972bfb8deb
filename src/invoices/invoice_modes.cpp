#include "failure.h"
#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "program/session_fields.h"
#include "text/numbers.h"

/// The modes of the invoice form: what is locked, enabled and shown in each, and the ways between them.
namespace tarvello {

void frmTarvello::BloccaAnagrafica() {
    customer.set_locked(true);
    FrameData.set_enabled(false);
}

void frmTarvello::SbloccaAnagrafica() {
    customer.set_locked(false);
    DTPicker1.set_enabled(true);
    FrameData.set_enabled(true);
}

void frmTarvello::lock_invoice(bool locked) {
    cmdCalcola.set_enabled(!locked);
    customer.cmdCercaCliente.set_enabled(!locked);
    for (TextBox& field : PrestazioneSingola) field.set_locked(locked);
    for (TextBox& field : txtImportoPrestazioni) field.set_locked(locked);
    FrameBloccaFattura.set_enabled(!locked);
    txtPagamento.set_locked(locked);
}

void frmTarvello::BloccaFattura() { lock_invoice(true); }

void frmTarvello::SbloccaFattura() { lock_invoice(false); }

void frmTarvello::show_no_invoice() {
    PulisciFattura();
    txtCurrent_ID.clear();
    txtNumeroFattura.clear();
}

void frmTarvello::show_toolbar_mode(std::size_t place, const std::string& caption, const char* picture) {
    ToolButton& button = Toolbar1.button(place);
    button.set_caption(caption);
    button.set_picture(picture);
    button.set_shortcut(caption == "Nuova Fattura"   ? "Ctrl+N"
                        : caption == "Modifica Dati" ? "Ctrl+M"
                                                     : "Ctrl+S");
    (place == invoice_tool::new_invoice ? cmdNuovaFattura : cmdModificaDati).tell_shortcut(button.shortcut());
}

void frmTarvello::each_other_tool(std::size_t mode, const std::function<void(ToolButton&)>& visit) {
    for (std::size_t place = 1; place <= Toolbar1.size(); ++place) {
        if (place != mode && place != invoice_tool::cancel) visit(Toolbar1.button(place));
    }
}

void frmTarvello::ImpostaStato(std::string_view action) {
    const std::initializer_list<CommandButton*> commands = {
        &cmdEliminaFattura, &cmdModificaDati, &cmdStampaFattura, &cmdChiudi,
        &search.cmdCerca,   &StampaWord,      &CheckEmail,       &cmdElettronica};
    const auto enable_commands = [&] {
        for (CommandButton* command : commands) command->set_enabled(true);
    };

    if (action == "Salva Fattura") {
        // Runs once on the way into the new mode and once on the way out.
        for (CommandButton& move : cmdNavigazione) move.flip_enabled();
        for (CommandButton* command : commands) command->flip_enabled();
        each_other_tool(invoice_tool::new_invoice, [](ToolButton& button) { button.flip_visible(); });
    } else if (action == "Modifica Dati") {
        cmdNuovaFattura.set_enabled(false);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        for (CommandButton* command : commands) {
            if (command != &cmdModificaDati) command->set_enabled(false);
        }
        each_other_tool(invoice_tool::change, [](ToolButton& button) { button.set_visible(false); });
    } else if (action == "Aggiorna Dati") {
        cmdNuovaFattura.set_enabled(true);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        enable_commands();
        BloccaAnagrafica();
        each_other_tool(invoice_tool::change, [](ToolButton& button) { button.set_visible(true); });
    } else if (action == "Annulla") {
        cmdNuovaFattura.set_enabled(true);
        cmdNuovaFattura.set_caption("Nuova Fattura");
        show_toolbar_mode(invoice_tool::new_invoice, "Nuova Fattura", new_picture);
        cmdNuovoAnnoFatturazione.set_enabled(false);
        enable_commands();
        cmdModificaDati.set_caption("Modifica Dati");
        show_toolbar_mode(invoice_tool::change, "Modifica Dati", change_picture);
        search.cmdCerca.set_caption("Cerca Fattura");
        search.set_open(false);
        BloccaAnagrafica();
        note.FrameNota.set_enabled(true);
        for (std::size_t place = 1; place <= Toolbar1.size(); ++place)
            Toolbar1.button(place).set_visible(true);
    } else {
        set_search_state(action);
    }
}

void frmTarvello::set_search_state(std::string_view action) {
    const bool browsing = action == "OK";
    for (CommandButton& move : cmdNavigazione) move.set_enabled(browsing);
    for (CommandButton* command : {&cmdNuovaFattura, &cmdModificaDati, &cmdEliminaFattura, &cmdStampaFattura,
                                   &StampaWord, &CheckEmail, &cmdChiudi, &cmdElettronica}) {
        command->set_enabled(browsing);
    }
    each_other_tool(invoice_tool::cancel, [&](ToolButton& button) { button.set_visible(browsing); });
}

void frmTarvello::start_new_invoice() {
    program_.database().dbConnection.engine(); // without a database nothing is cleared
    PulisciFattura();
    SbloccaFattura();
    txtNumeroFattura.set_locked(true);
    ImpostaStato("Salva Fattura");
    cmdNuovaFattura.set_caption("Salva Fattura");
    show_toolbar_mode(invoice_tool::new_invoice, "Salva Fattura", save_picture);
    cmdNuovoAnnoFatturazione.set_enabled(true);
    add_rates();
    ComboIVAApplicata.set_text(program_.session().txt_IVA_default.text());
    CheckRivalsa.set_caption(program_.session().txtProfessione.text());
    draft_.begin(); // before the focus moves: with the next field left what was typed is kept
    customer.cmdCercaCliente.set_focus();
    propose_number();
}

void frmTarvello::start_change() {
    if (leading_int16(txtCurrent_ID.text()) == 0) {
        program_.message("Nessuna fattura da modificare. Per inserirne una premere \"Nuova Fattura\".",
                         BoxIcon::information);
        return;
    }
    if (!may_touch("Modificare")) return;
    add_rates();
    SbloccaFattura();
    for (CommandButton& move : cmdNavigazione) move.set_enabled(false);
    ImpostaStato("Modifica Dati");
    cmdModificaDati.set_caption("Aggiorna Dati");
    show_toolbar_mode(invoice_tool::change, "Aggiorna Dati", save_picture);
    SbloccaAnagrafica();
    draft_.begin();
}

void frmTarvello::cancel() {
    draft_.give_up();
    leave_mode();
    if (!show_invoice(txtCurrent_ID.text())) show_no_invoice();
}

void frmTarvello::leave_mode() {
    customer.end_new_customer();
    for (CommandButton& move : cmdNavigazione) move.set_enabled(true);
    BloccaFattura();
    txtNumeroFattura.set_locked(true);
    ImpostaStato("Annulla");
}

void frmTarvello::show_newest() {
    Database& database = program_.database();
    archive_ = database.dbConnection.path();
    with_result(database, database.rsFatture, newest_first, [this](const Recordset& rows) {
        if (!rows.eof()) MostraFattura();
    });
}

std::function<void()> frmTarvello::in_its_archive(std::function<void()> command) {
    return [this, command = std::move(command)] {
        const Connection& connection = program_.database().dbConnection;
        if (!connection.is_open() || connection.path() == archive_) return command();
        program_.message("È stato aperto un altro archivio, e la fattura a video non ne fa parte.\nOra "
                         "compare l'ultima fattura di quello aperto.",
                         BoxIcon::exclamation);
        leave_mode(); // a draft of what was typed stays with its own archive
        show_no_invoice();
        show_newest();
    };
}

void frmTarvello::delete_invoice() {
    try {
        Database& database = program_.database();
        const std::int16_t id = leading_int16(txtCurrent_ID.text());
        bool any = false;
        with_result(database, database.rsFatture, "SELECT * FROM Fatture",
                    [&](const Recordset& rows) { any = !rows.eof(); });
        if (any && !program_.confirm("\nEliminare la fattura?")) return;
        if (any && !may_touch("Eliminare")) return;

        run_statement(database, database.rsFatture, "DELETE * FROM Fatture WHERE ID=" + std::to_string(id));
        show_no_invoice();
        show_newest();
    } catch (const Failure&) {
        // The form goes on with what it shows.
        program_.message("Errore nell'eliminazione della fattura.", BoxIcon::critical);
    }
}

} // namespace tarvello
