#pragma once

#include <string>

namespace tarvello {

class Program;

/// The database that is opened where no other has been chosen.
std::string default_database(const Program& program);

/// Where the automatic backup goes where no other place has been chosen.
std::string default_backup(const Program& program);

} // namespace tarvello
