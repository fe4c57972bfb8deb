#pragma once

#include <string>

namespace tarvello::store {

/// Puts aside the journal that lies beside an SQLite file if it is not of this file as it is now.
///
/// SQLite rolls back whatever journal a stopped program has left, also into an older copy that has been put
/// in the file's place: half of the one, half of the other. Every transaction counts up in the head of the
/// file, so the head is either the one that the journal keeps or its successor. A journal that keeps no
/// head, of another program that had more in hand than its memory holds, is known by the number of pages. A
/// copy of the very state that the journal keeps, and one that was changed by exactly one transaction since,
/// cannot be told from the file.
/// @return what the user is to know; empty if it was not put aside
/// @throws Failure if it cannot be put aside: SQLite must not open the file then
std::string put_stale_journal_aside(const std::string& database);

} // namespace tarvello::store
