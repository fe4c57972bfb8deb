#include "shell/main_window.h"

#include "customers/customer_form.h"
#include "db_tools/database_form.h"
#include "documents/letterhead_form.h"
#include "e_invoice/e_invoice_list_form.h"
#include "invoices/invoice_form.h"
#include "preferences/tax_preferences.h"
#include "program/open_database.h"
#include "program/program.h"
#include "shell/about_form.h"
#include "shell/author_form.h"
#include "shell/session.h"
#include "update/web_service.h"

namespace tarvello {

void MDIForm1::connect_menus() {
    mnuApri.on_click = [this] { open_database(); };
    session.mnuChiudiDatabase.on_click = [this] { close_database(); };
    CercaFile.on_click = [this] { find_files(); };
    mnuFileExit.on_click = [this] { exit(); };

    // The entries look enabled until the pointer moves, also after the database has gone.
    const auto if_connected = [this](auto open) {
        return [this, open] {
            if (!session.mnuChiudiDatabase.enabled()) return follow_connection();
            open();
        };
    };
    mnuAnagrafica_Clienti.on_click = if_connected([this] { program_.form<frmClienti>().show_modal(); });
    mnuFatture.on_click = if_connected([this] { program_.form<frmTarvello>().show(); });
    IntestaFatture.on_click = if_connected([this] { program_.form<frmIntestazioneFatture>().show(); });
    Visualizza.on_open = [this] { follow_connection(); }; // by the keyboard, with no pointer that moves
    Impostazioni.on_click = [this] { program_.form<frmImpostazioni>().show(); };
    mnuGestioneDatabase.on_click = [this] { program_.form<frmGestioneDatabase>().show(); };
    mnuScaricaAggiornamenti.on_click = [this] { look_for_updates(); };
    mnuFattureElettroniche.on_click = [this] { show_e_invoices(); };
    mnuDatiElettronica.on_click = [this] { edit_e_invoice_issuer(nullptr); };

    Autore.on_click = [this] { program_.form<frmAutore>().show_modal(); };
    AboutTarvello.on_click = [this] { program_.form<frmAbout>().show_modal(); };
}

void MDIForm1::open_database() {
    const auto chosen = program_.platform().dialogs.open_file(database_dialog());
    if (!chosen) return;
    // An open database is not closed first. The store refuses a second one: then the title shows the new
    // file, the connection stays on the old one, and the session counts as not connected.
    const std::string route = session.txtDatabaseRoute.text();
    const bool connected = session.mnuChiudiDatabase.enabled();
    session.take_route(*chosen);
    if (ApriDatabase(program_)) {
        program_.message("Database caricato correttamente.", BoxIcon::information);
        session.mnuChiudiDatabase.set_enabled(true);
    } else {
        program_.message("Errore nel caricamento del database.", BoxIcon::critical);
        session.mnuChiudiDatabase.set_enabled(false);
        if (connected && program_.database().dbConnection.is_open()) offer_way_back(route);
    }
}

void MDIForm1::offer_way_back(const std::string& route) {
    const MessageBox question{"L'archivio di prima è rimasto aperto:\n" + route +
                                  "\n\nContinuare a lavorare con questo?\n(Per aprirne un altro, chiudere "
                                  "prima questo con il menù \"File\", voce \"Chiudi\".)",
                              program_title, BoxIcon::question, BoxButtons::yes_no, 1};
    if (program_.platform().boxes.show(question) != Answer::yes) return;
    session.take_route(route);
    session.mnuChiudiDatabase.set_enabled(true);
}

void MDIForm1::close_database() {
    const MessageBox question{"Chiudere: " + session.txtDatabaseRoute.text() + "?", program_title,
                              BoxIcon::question, BoxButtons::yes_no, 1};
    if (program_.platform().boxes.show(question) != Answer::yes) return;
    ChiudiDatabase(program_);
    set_caption("Tarvello - [Nessun Databsase Caricato]");
    session.mnuChiudiDatabase.set_enabled(false);
}

void MDIForm1::find_files() {
    if (program_.platform().desktop.find_files()) return;
    program_.message("Impossibile accedere al modulo di ricerca file di Windows.", BoxIcon::none);
}

void MDIForm1::exit() {
    UnloadAllForms(program_);
    unload();
}

void MDIForm1::look_for_updates() {
    const MessageBox question{
        "Per verificare la disponibilità di aggiornamenti è necessario essere collegati a internet. \n"
        "Se si è collegati a internet premere 'OK' altrimenti premere 'Annulla'",
        program_title, BoxIcon::none, BoxButtons::ok_cancel, 1};
    if (program_.platform().boxes.show(question) == Answer::ok) open_update_page(program_);
}

void MDIForm1::show_e_invoices() {
    if (database_is_open()) program_.form<frmFattureElettroniche>().show();
}

void MDIForm1::run_side_command(std::size_t command) {
    const MenuItem* const entries[] = {&mnuAnagrafica_Clienti,  &mnuFatture,  &IntestaFatture,
                                       &mnuGestioneDatabase,    &mnuFileExit, &Impostazioni,
                                       &mnuScaricaAggiornamenti};
    if (entries[command]->on_click) entries[command]->on_click();
}

} // namespace tarvello
