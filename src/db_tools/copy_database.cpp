#include "db_tools/copy_database.h"

#include "db_tools/file_info.h"
#include "store/archive_copy.h"

namespace tarvello {
namespace {

bool may_overwrite(Platform& platform, const std::string& target, std::uint64_t needed, std::uint64_t free) {
    const CFileInfo sizes(platform);
    const MessageBox question{
        "Sul disco non c'è spazio per una seconda copia accanto a\n" + target + "\nServono " +
            sizes.FormatFileSize(needed) + ", ne sono liberi " + sizes.FormatFileSize(free) +
            ".\n\nSovrascrivere la copia che c'è? Fino alla fine della scrittura non ne "
            "resterà nessuna.",
        program_title, BoxIcon::exclamation, BoxButtons::yes_no, 2};
    return platform.boxes.show(question) == Answer::yes;
}

DatabaseCopy copy(Platform& platform, const std::string& source, const std::string& destination,
                  bool is_backup) {
    DatabaseCopy result;
    store::ArchiveCopied copied;
    const auto step = [&](const std::string& target, const CopyProgress& progress) {
        result.target = target;
        const auto ask = [&](std::uint64_t needed, std::uint64_t free) {
            return may_overwrite(platform, target, needed, free);
        };
        copied = store::copy_archive(platform.files, platform.regional,
                                     {source, target, progress, is_backup, platform.clock.today(), ask});
        return copied.made;
    };
    result.target = destination;
    result.outcome = run_copy(platform, source, destination, !is_backup, !is_backup, step);
    if (!copied.notice.empty()) platform.boxes.show({copied.notice, program_title, BoxIcon::exclamation});
    result.unsound = copied.unsound;
    result.kept_as = copied.kept_as;
    return result;
}

} // namespace

DatabaseCopy CopiaDatabase(Platform& platform, const std::string& source, const std::string& destination) {
    return copy(platform, source, destination, false);
}

DatabaseCopy back_up_database(Platform& platform, const std::string& source, const std::string& destination) {
    return copy(platform, source, destination, true);
}

} // namespace tarvello
