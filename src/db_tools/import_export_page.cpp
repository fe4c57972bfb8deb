#include "db_tools/copy_database.h"
#include "db_tools/database_form.h"

#include "program/open_database.h"
#include "program/program.h"

namespace tarvello {
namespace {

constexpr std::string_view source_prompt = "Inserisci percorso di origine";
constexpr std::string_view destination_prompt = "Inserisci percorso di destinazione";

} // namespace

void frmGestioneDatabase::prepare_import_export() {
    CheckBoxImportaEsporta.set_caption("Importa / Esporta database");
    Label7.set_caption("Origine:");
    Label8.set_caption("Destinazione:");
    txtOrigine.set_text(std::string(source_prompt));
    txtDest.set_text(std::string(destination_prompt));
    empty_prompt_on_focus(txtOrigine, source_prompt);
    empty_prompt_on_focus(txtDest, destination_prompt);
    cmdImpExp.set_caption("Esegui");
    enable_import_export(false);

    CheckBoxImportaEsporta.on_click = [this] { enable_import_export(CheckBoxImportaEsporta.checked()); };
    const auto wanted_again = [this] { cmdImpExp.set_enabled(true); };
    txtOrigine.on_change = wanted_again;
    txtDest.on_change = wanted_again;
    Command2[browse_source].on_click = [this] {
        if (const auto path = program_.platform().dialogs.open_file(database_dialog()))
            txtOrigine.set_text(*path);
    };
    Command2[browse_destination].on_click = [this] {
        // The destination may be a file that is still to come.
        if (const auto path = program_.platform().dialogs.save_file(database_dialog()))
            txtDest.set_text(*path);
    };
    cmdImpExp.on_click = [this] { EseguiCopia(); };
}

void frmGestioneDatabase::enable_import_export(bool enabled) {
    txtOrigine.set_enabled(enabled);
    txtDest.set_enabled(enabled);
    Command2[browse_source].set_enabled(enabled);
    Command2[browse_destination].set_enabled(enabled);
    Label7.set_enabled(enabled);
    Label8.set_enabled(enabled);
    cmdImpExp.set_enabled(enabled);
}

void frmGestioneDatabase::EseguiCopia() {
    const std::string source = txtOrigine.text();
    const std::string destination = txtDest.text();
    ChiudiDatabase(program_);
    const DatabaseCopy copy = CopiaDatabase(program_.platform(), source, destination);
    const bool given_up = copy.outcome == CopyOutcome::given_up;
    if (copy.outcome == CopyOutcome::made || given_up) {
        report_copy("Copia file completata", source, destination);
    }
    ApriDatabase(program_);
    cmdImpExp.set_enabled(false);
    // The words above are those of a copy that went its way. What is true:
    if (given_up) {
        const bool there = program_.platform().files.exists(copy.target);
        program_.message("La copia non è stata fatta: il file\n" + copy.target +
                             (there ? "\nnon è stato toccato." : "\nnon è stato creato."),
                         BoxIcon::information);
    } else if (!copy.unsound.empty()) {
        program_.message("Il file copiato non si apre come archivio. " + copy.unsound, BoxIcon::exclamation);
    }
}

} // namespace tarvello
