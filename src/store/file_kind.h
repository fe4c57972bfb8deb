#pragma once

#include "failure.h"

#include <string>
#include <vector>

/// Which engine a database file belongs to, and what the engines keep beside it.
namespace tarvello::store {

enum class FileKind { sqlite, access, other };

/// What to throw for a file that is no database to work with, and why: a sentence without its end.
Failure cannot_open(int number, const std::string& path, const std::string& why);

/// Told by the first bytes of the file. @throws Failure if there is no such file, or it cannot be read
FileKind kind_of_file(const std::string& path);

/// The file beside a database in which its engine has left something without which the database is not whole:
/// the journal of a statement that was cut short, or rows that have not come into the file itself yet.
/// @return empty if there is none
std::string left_beside(const std::string& database);

/// The names of all that engines may keep beside a database, whether it is there or not.
std::vector<std::string> companions_of(const std::string& database);

} // namespace tarvello::store
