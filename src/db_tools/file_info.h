#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarvello {

/// What the disk knows about one file or folder, formatted for the eye. One that is not there is no failure:
/// FileExists is false, and of the rest only the parts of the path are filled.
class CFileInfo {
public:
    explicit CFileInfo(Platform& platform) : platform_(platform) {}

    /// The file in question. Setting it runs Refresh.
    const std::string& FullPathName() const { return full_path_name_; }
    void set_FullPathName(std::string path);

    /// Gathers everything anew.
    void Refresh();

    /// The parts of the path: FilePath ends in the separator, FileExtension is what follows the last point.
    std::string FileName, FilePath, FileExtension;
    /// The short form of the name: the name itself, where the system has no other.
    std::string ShortPathName, ShortName, ShortPath;
    std::string DisplayName;
    /// The upper-case extension, followed by " File".
    std::string TypeName;
    bool FileExists = false;
    /// The folder that it lies in is there.
    bool PathExists = false;
    /// Low and high part of the size in bytes; on disk a file takes its plain size.
    std::uint32_t FileSize = 0, FileSizeHigh = 0;
    std::uint32_t CompressedFileSize = 0, CompressedFileSizeHigh = 0;
    std::optional<DateTime> CreationTime, LastAccessTime, ModifyTime;
    /// The marks below as one number: 1 read-only, 2 hidden, 2048 compressed.
    std::uint32_t Attributes = 0;
    bool attrReadOnly = false, attrHidden = false;
    /// Marks that no file system here keeps: never set.
    bool attrSystem = false, attrArchive = false, attrTemporary = false;
    bool attrCompressed = false;
    /// The desktop lends no icons: always 0.
    std::uintptr_t hIcon = 0;

    /// The long date, a blank and the long time; empty for no date.
    std::string FormatFileDate(const std::optional<DateTime>& date) const;
    /// Such as 1023 bytes, or 1,00KB (1.024 bytes). Steps up a unit at every thousand of the smaller one.
    std::string FormatFileSize(std::uint64_t size) const;

private:
    Platform& platform_;
    std::string full_path_name_;
};

} // namespace tarvello
