#include "db_tools/backup_restore.h"

#include "db_tools/copy_database.h"
#include "program/program.h"
#include "program/session_fields.h"

namespace tarvello {

bool EseguiBackupAutomatico(Program& program) {
    SessionFields& session = program.session();
    const std::string& destination = session.TxtDestinazioneBackup.text();
    if (destination.empty()) {
        program.message("Impossibile eseguire il backup. Nessuna destinazione impostata.\n"
                        " Le impostazioni di backup saranno riconfigurate automaticamente al prossimo avvio.",
                        BoxIcon::exclamation);
        return true;
    }
    const std::string source = session.txtDatabaseRoute.text();
    const DatabaseCopy copy = back_up_database(program.platform(), source, destination);
    if (copy.outcome == CopyOutcome::made) {
        if (!copy.kept_as.empty() && !copy.unsound.empty()) {
            program.message("L'archivio\n" + source + "\nnon si apre più. " + copy.unsound +
                                "\n\nLa copia precedente è stata conservata:\n" + copy.kept_as,
                            BoxIcon::exclamation);
        }
        return true;
    }
    program.message("Si è verificato un errore durante il backup. \n"
                    "Se l'errore dovesse ripetersi controllare le impostazioni di backup.",
                    BoxIcon::critical);
    return false;
}

} // namespace tarvello
