#include "program/folders.h"

#include "program/program.h"

namespace tarvello {

std::string default_database(const Program& program) { return program.in_program_directory("tarvello.mdb"); }

std::string default_backup(const Program& program) { return program.in_program_directory("tarvello.bak"); }

} // namespace tarvello
