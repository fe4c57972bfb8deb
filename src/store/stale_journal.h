#pragma once

#include <string>

/// Journals that lie beside a file for which they were not written: another one has been put in its place
/// since, or another program has written to it. Every engine puts them aside in the same way.
namespace tarvello::store {

/// The name under which nobody takes a journal for one: its own and the time. Nothing has it yet.
std::string name_put_aside(const std::string& journal);

/// What the user is to know of it.
std::string words_of_stale_journal(const std::string& database, const std::string& put_aside_as);

} // namespace tarvello::store
