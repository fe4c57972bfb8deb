#include "db_tools/file_info.h"

#include "text/letter_case.h"

#include <array>

namespace tarvello {
namespace {

std::string grouped(std::uint64_t number, const RegionalSettings& regional) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, regional.thousands_separator);
    }
    return digits;
}

/// size / unit with so many decimals, half rounded up. Computed in whole numbers: no double comes between.
std::string divided(std::uint64_t size, std::uint64_t unit, int decimals, const RegionalSettings& regional) {
    std::uint64_t whole = size / unit;
    std::uint64_t scale = 1;
    for (int i = 0; i < decimals; ++i) scale *= 10;
    std::uint64_t fraction = (size % unit * scale + unit / 2) / unit;
    if (fraction == scale) {
        ++whole;
        fraction = 0;
    }
    std::string text = std::to_string(whole);
    if (decimals == 0) return text;
    const std::string digits = std::to_string(fraction);
    return text + regional.decimal_separator +
           std::string(static_cast<std::size_t>(decimals) - digits.size(), '0') + digits;
}

constexpr std::uint64_t kilo = 1024;

constexpr std::uint32_t read_only_mark = 1, hidden_mark = 2, compressed_mark = 2048;

struct SizeStep {
    std::uint64_t below; ///< in kilobytes
    std::uint64_t unit;
    int decimals;
    const char* name;
};

constexpr std::array size_steps{
    SizeStep{10, kilo, 2, "KB"},
    SizeStep{100, kilo, 1, "KB"},
    SizeStep{1000, kilo, 0, "KB"},
    SizeStep{10000, kilo* kilo, 2, "MB"},
    SizeStep{100000, kilo* kilo, 1, "MB"},
    SizeStep{1000000, kilo* kilo, 0, "MB"},
    SizeStep{UINT64_MAX, kilo* kilo* kilo, 2, "GB"},
};

} // namespace

void CFileInfo::set_FullPathName(std::string path) {
    full_path_name_ = std::move(path);
    Refresh();
}

void CFileInfo::Refresh() {
    Files& files = platform_.files;
    full_path_name_ = files.full_path(full_path_name_);

    const std::size_t slash = full_path_name_.rfind(platform_.separator);
    const std::size_t name_start = slash == std::string::npos ? 0 : slash + 1;
    FilePath = full_path_name_.substr(0, name_start);
    FileName = full_path_name_.substr(name_start);
    const std::size_t point = FileName.rfind('.');
    FileExtension = point == std::string::npos ? std::string() : FileName.substr(point + 1);

    const auto facts = FileName.empty() ? std::nullopt : files.facts(full_path_name_);
    FileExists = facts.has_value();
    PathExists = !FilePath.empty() && files.folder_exists(FilePath);
    const FileFacts known = facts.value_or(FileFacts{});

    ShortPathName = FileExists ? full_path_name_ : std::string();
    ShortName = FileExists ? FileName : std::string();
    ShortPath = FileExists ? FilePath : std::string();
    DisplayName = ShortName;
    TypeName = FileExists ? upper_case(FileExtension) + " File" : std::string();
    FileSize = CompressedFileSize = static_cast<std::uint32_t>(known.size & 0xFFFFFFFF);
    FileSizeHigh = CompressedFileSizeHigh = static_cast<std::uint32_t>(known.size >> 32);
    CreationTime = known.created;
    LastAccessTime = known.accessed;
    ModifyTime = known.modified;
    attrReadOnly = known.read_only;
    attrHidden = FileExists && FileName.starts_with('.');
    attrCompressed = known.compressed;
    Attributes = (attrReadOnly ? read_only_mark : 0) | (attrHidden ? hidden_mark : 0) |
                 (attrCompressed ? compressed_mark : 0);
}

std::string CFileInfo::FormatFileDate(const std::optional<DateTime>& date) const {
    if (!date) return {};
    const Date day(std::chrono::floor<std::chrono::days>(*date));
    return long_date_text(day, platform_.regional) + " " + long_time_text(*date, platform_.regional);
}

std::string CFileInfo::FormatFileSize(std::uint64_t size) const {
    const RegionalSettings& regional = platform_.regional;
    std::string bytes = grouped(size, regional) + " bytes";
    if (size < kilo) return bytes;
    const SizeStep* step = size_steps.data();
    while (size / kilo >= step->below) ++step;
    return divided(size, step->unit, step->decimals, regional) + step->name + " (" + bytes + ")";
}

} // namespace tarvello
