#include "db_tools/database_form.h"

#include "db_tools/new_archive_form.h"
#include "program/folders.h"
#include "program/open_database.h"
#include "program/program.h"
#include "program/session_fields.h"

namespace tarvello {
namespace {

constexpr std::string_view path_prompt = "Inserisci il percorso del database";

} // namespace

void frmGestioneDatabase::prepare_choice() {
    Label4.set_caption("Selezionare il database da aprire o a cui connettersi");
    Label2.set_caption(
        "Scegliere la destinazione del database sul quale si vuole lavorare.\n"
        "Selezionare 'Database di default' per utilizzare il database presente nella cartella di "
        "sistema di Tarvello.\n"
        "Selezionare 'Altro database' e specificarne il percorso, per utilizzare database salvati "
        "in altre cartelle o su unità di rete.");
    Label1.set_caption("Database corrente:");
    txtPercorsoDatabase.set_locked(true);
    Option1[default_choice].set_caption("Database di default");
    Option1[other_choice].set_caption("Altro database (permette di selezionare un'unità di rete)");
    Text1.set_text(std::string(path_prompt));
    empty_prompt_on_focus(Text1, path_prompt);
    Command1.set_caption("Sfoglia");
    cmdApriDB.set_caption("Apri");
    LabelNuovoArchivio.set_caption(
        "Un archivio in più, vuoto o con i dati attuali, anche in formato Access:");
    cmdNuovoArchivio.set_caption("Nuovo archivio...");
    Text1.set_enabled(false);
    Command1.set_enabled(false);

    const auto enable_path = [this](bool enabled) {
        Text1.set_enabled(enabled);
        Command1.set_enabled(enabled);
    };
    Option1[default_choice].on_click = [=] { enable_path(false); };
    Option1[other_choice].on_click = [=] { enable_path(true); };
    Command1.on_click = [this] {
        if (const auto path = program_.platform().dialogs.open_file(database_dialog())) Text1.set_text(*path);
    };
    cmdApriDB.on_click = [this] { ApriDatabaseScelto(); };
    cmdNuovoArchivio.on_click = [this] { CreaNuovoArchivio(); };
}

void frmGestioneDatabase::show_current_database() {
    const std::string& route = program_.session().txtDatabaseRoute.text();
    txtPercorsoDatabase.set_text(route);
    Option1[route == default_database(program_) ? default_choice : other_choice].set_selected(true);
}

void frmGestioneDatabase::ApriDatabaseScelto() {
    if (Option1[default_choice].selected()) {
        open_route(default_database(program_));
    } else if (Option1[other_choice].selected()) {
        if (Text1.empty() || Text1.text() == path_prompt) {
            program_.message("Selezionare il database.", BoxIcon::exclamation);
            return;
        }
        open_route(Text1.text());
    }
}

void frmGestioneDatabase::CreaNuovoArchivio() {
    new_archive_.clear();
    auto& dialog = program_.form<frmNuovoArchivio>();
    dialog.hand_over_to(share(new_archive_));
    dialog.show_modal();
    if (new_archive_.empty()) return;
    if (!program_.confirm("Il nuovo archivio è pronto:\n" + new_archive_ + "\nAprirlo adesso?")) return;
    Option1[other_choice].set_selected(true);
    Text1.set_text(new_archive_);
    open_route(new_archive_);
}

void frmGestioneDatabase::open_route(const std::string& route) {
    SessionFields& session = program_.session();
    session.take_route(route);
    txtPercorsoDatabase.set_text(route);
    ChiudiDatabase(program_);
    if (!ApriDatabase(program_)) return; // the title shows the route, the commands that they cannot be used
    program_.message("Nuovo database caricato.", BoxIcon::information);
    session.mnuChiudiDatabase.set_enabled(true);
}

} // namespace tarvello
