#include "program/folders.h"

#include "platform/file_names.h"
#include "program/program.h"

namespace tarvello {

std::string default_database(const Program& program) {
    return program.in_program_directory(file_name::database);
}

std::string default_backup(const Program& program) { return program.in_program_directory(file_name::backup); }

} // namespace tarvello
