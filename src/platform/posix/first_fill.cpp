#include "platform/posix/first_fill.h"

#include "failure.h"
#include "platform/file_names.h"
#include "platform/posix/new_file.h"
#include "platform/posix/source_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

namespace tarvello {
namespace {

namespace fs = std::filesystem;

/// That it is there says that the folder has been filled to the end.
const char* const filled_mark = ".tarvello-completa";

void copy_whole(const fs::path& original, const fs::path& own) {
    make_folders(own.parent_path().string(), private_folder);
    const SourceFile from(original.string());
    NewFile to(own.string(), private_file);
    from.copy_to(to.descriptor(), to.destination(), {});
    to.finish();
    to.place();
}

/// A file without a byte is what a power cut can leave of one.
bool is_there(const fs::path& file) {
    std::error_code missing;
    return fs::file_size(file, missing) > 0 && !missing;
}

std::vector<fs::path> names_below(const fs::path& originals) {
    std::vector<fs::path> names;
    for (const auto& entry : fs::recursive_directory_iterator(originals)) {
        if (entry.is_regular_file()) names.push_back(fs::relative(entry.path(), originals));
    }
    return names;
}

/// What marks a list of municipalities that was made with the program, and its contents: the three fields of
/// the header of an SQLite file that are free for its maker. Empty for any other file.
std::string mark_of_list(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string fields(12, '\0'); // user_version, incremental vacuum, application_id
    file.seekg(60);
    file.read(fields.data(), static_cast<std::streamsize>(fields.size()));
    return file && fields.ends_with("TvCo") ? fields : std::string();
}

void bring_list_up_to_date(const fs::path& original, const fs::path& own) {
    if (is_there(own)) {
        const std::string mark = mark_of_list(own);
        const std::string shipped = mark_of_list(original);
        if (mark.empty() || shipped.empty() || mark == shipped) return;
    }
    copy_whole(original, own);
}

void fill(const fs::path& originals, const fs::path& folder) {
    const fs::path own_list = folder / file_name::municipalities;
    const fs::path shipped_list = originals / file_name::municipalities;
    const bool filled = fs::exists(folder / filled_mark);
    if (!filled) {
        std::vector<fs::path> names = names_below(originals);
        std::erase(names, file_name::municipalities);
        // Earlier versions left no mark: the list of municipalities came last.
        const bool by_an_earlier_version =
            fs::exists(own_list) && std::any_of(names.begin(), names.end(), [&](const fs::path& name) {
                return fs::exists(folder / name);
            });
        for (const fs::path& name : names) {
            if (is_there(folder / name)) continue;
            if (by_an_earlier_version && !fs::exists(folder / name)) continue; // the user took it away
            copy_whole(originals / name, folder / name);
        }
    }
    const bool list_wanted = !filled || fs::exists(own_list);
    if (list_wanted && is_there(shipped_list)) bring_list_up_to_date(shipped_list, own_list);
    if (filled) return;
    NewFile mark((folder / filled_mark).string(), private_file);
    mark.finish();
    mark.place();
}

} // namespace

void fill_program_directory(const std::string& originals, const std::string& folder) {
    try {
        make_folders(folder, private_folder);
        std::error_code missing;
        if (fs::is_directory(originals, missing)) fill(originals, folder);
    } catch (const Failure&) {
        // See the header: the next start tries again.
    } catch (const fs::filesystem_error&) {
        // A folder that cannot be looked into: the same.
    }
}

} // namespace tarvello
