#include "db_tools/backup_restore.h"

#include "db_tools/copy_file.h"
#include "shell/main_window.h"
#include "shell/program.h"

namespace tarvello {

bool EseguiBackupAutomatico(Program& program) {
    MDIForm1& main = program.main_window();
    const std::string& destination = main.TxtDestinazioneBackup.text();
    if (destination.empty()) {
        program.message("Impossibile eseguire il backup. Nessuna destinazione impostata.\n"
                        " Le impostazioni di backup saranno riconfigurate automaticamente al prossimo avvio.",
                        BoxIcon::exclamation);
        return true;
    }
    if (CopiaFile(program.platform(), main.txtDatabaseRoute.text(), destination)) return true;
    program.message("Si è verificato un errore durante il backup. \n"
                    "Se l'errore dovesse ripetersi controllare le impostazioni di backup.",
                    BoxIcon::critical);
    return false;
}

} // namespace tarvello
