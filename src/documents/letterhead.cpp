#include "documents/letterhead.h"

#include "failure.h"
#include "platform/file_names.h"
#include "program/program.h"

namespace tarvello {

std::string templates_folder(Program& program) { return program.in_program_directory(file_name::templates); }

std::string existing_templates_folder(Program& program) {
    std::string folder = templates_folder(program);
    if (!program.platform().files.folder_exists(folder))
        throw Failure(failure_number::file_not_found, "File", "La cartella \"" + folder + "\" non esiste.");
    return folder;
}

bool open_letterhead(Program& program) {
    Database& database = program.database();
    database.close_results();
    database.rsIntestazione.open(select_letterhead, database.dbConnection);
    if (!database.rsIntestazione.eof()) return true;
    program.message("Per eseguire la stampa è necessario inserire i dati di intestazione",
                    BoxIcon::information);
    database.close_results();
    return false;
}

void or_show_failure(Program& program, const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        program.message(failure.description(), BoxIcon::exclamation);
    }
}

} // namespace tarvello
