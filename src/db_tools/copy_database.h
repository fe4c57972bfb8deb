#pragma once

#include "db_tools/copy_file.h"

#include <string>

namespace tarvello {

struct DatabaseCopy {
    CopyOutcome outcome = CopyOutcome::failed;
    std::string target;  ///< the file that was the destination
    std::string unsound; ///< why a copy that was made does not open as an archive; empty if it does
    std::string kept_as; ///< where the former file at the destination lies now; empty if it is gone
};

/// Copies a database that is closed, as the store has it: see store/archive_copy.h. Asks before a file is
/// replaced, shows its progress, and says why it failed.
DatabaseCopy CopiaDatabase(Platform& platform, const std::string& source, const std::string& destination);

/// The same for a backup: nothing is asked but whether a copy may be overwritten for which the disk has no
/// second place, and nothing is said. A former copy whose content it would cost is put aside.
DatabaseCopy back_up_database(Platform& platform, const std::string& source, const std::string& destination);

} // namespace tarvello
