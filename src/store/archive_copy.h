#pragma once

#include "platform/files.h"
#include "text/dates.h"
#include "text/regional_settings.h"

#include <cstdint>
#include <functional>
#include <string>

/// Copying a database is more than copying a file: what a stopped program has left beside the source belongs
/// to it, and what lies beside the destination must not be taken for the copy's.
namespace tarvello::store {

struct ArchiveCopy {
    std::string source;
    std::string destination; ///< a file, also by way of a link
    CopyProgress progress;
    /// A file at the destination that opens as an archive is put aside under a dated name where the copy
    /// would cost what is in it: because the copy does not open, or is of another archive. Otherwise such a
    /// file is replaced by a copy that opens, and by no other.
    bool keeps_former = false;
    Date today; ///< for that name
    /// Asked where the disk has no room for the copy beside the file that is there, and would have it in that
    /// file's place. Empty: no.
    /// @param needed, free  bytes
    std::function<bool(std::uint64_t needed, std::uint64_t free)> may_overwrite;
};

struct ArchiveCopied {
    bool made = false;   ///< false: given up, and the destination is what it was
    std::string unsound; ///< why the copy, as its source, does not open as an archive; empty if it does
    std::string notice;  ///< what the user is to know of the two files as they were found; empty for nothing
    std::string kept_as; ///< where the former file lies now; empty if it was not put aside
};

/// Copies a database that is not open.
///
/// The source is brought to rest first: what was cut short in it is undone, what lies beside it worked in.
/// The copy is looked at from end to end before it replaces anything, and what lies beside the destination
/// goes.
/// @throws Failure if it could not be done, or another program is at work in one of the two files: the
///         destination is what it was, but for failure_number::content_lost: the user had agreed to overwrite
///         it
ArchiveCopied copy_archive(Files& files, const RegionalSettings& regional, const ArchiveCopy& order);

} // namespace tarvello::store
