#pragma once

#include "store/engine.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// New archives: empty ones, and ones that get all that another holds.
namespace tarvello::store {

/// What a file is. sqlite: the program's own; access: Access 2000-2003.
enum class ArchiveFormat : std::uint8_t { sqlite, access };

/// Makes an archive with the three tables and no row. It is there whole and synced when this returns.
/// @param path  of a file that does not exist
/// @throws Failure, and there is no file
void make_archive(const std::string& path, ArchiveFormat format, const RegionalSettings& regional);

/// Hears how many rows of all have been carried over. @return false to give up
using CarryProgress = std::function<bool(std::int64_t done, std::int64_t all)>;

/// Makes an archive with all rows of all tables of another, keys and last autonumbers included; tables and
/// columns that the program does not know too. It is there whole, synced and looked through when this
/// returns. Values go over as they are; where the new column is of another type they are converted as
/// convert_value does it. Texts get as much room as they need.
/// @param from  stays open and unchanged
/// @param path  of a file that does not exist
/// @return the columns, as table.column, whose kind of values no archive of this program keeps (pictures,
///         bytes); nothing if it was given up, and there is no file
/// @throws Failure, which says the table and the row, and there is no file
std::optional<std::vector<std::string>> carry_over(Engine& from, const std::string& path,
                                                   ArchiveFormat format, const RegionalSettings& regional,
                                                   const CarryProgress& progress = {});

} // namespace tarvello::store
