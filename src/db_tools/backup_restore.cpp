#include "db_tools/backup_restore.h"

#include "db_tools/copy_file.h"
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
    if (CopiaFile(program.platform(), session.txtDatabaseRoute.text(), destination)) return true;
    program.message("Si è verificato un errore durante il backup. \n"
                    "Se l'errore dovesse ripetersi controllare le impostazioni di backup.",
                    BoxIcon::critical);
    return false;
}

} // namespace tarvello
