#include "store/archive_copy.h"

#include "failure.h"
#include "store/archive_check.h"
#include "store/failure_source.h"
#include "store/file_kind.h"
#include "store/same_archive.h"

#include <algorithm>

namespace tarvello::store {
namespace {

constexpr std::size_t longest_name = 255; // bytes

Failure refusal(const std::string& what) { return {failure_number::database, source, what}; }

/// `tarvello.bak` put aside on 5 March 2006: `tarvello-2006-03-05.bak`.
std::string dated_name(const std::string& path, const Date& day, int number) {
    const auto name_at = path.rfind('/') + 1;
    auto extension_at = path.rfind('.');
    constexpr std::size_t longest_extension = 10;
    if (extension_at == std::string::npos || extension_at <= name_at ||
        path.size() - extension_at > longest_extension)
        extension_at = path.size();
    const auto two = [](unsigned part) { return (part < 10 ? "-0" : "-") + std::to_string(part); };
    std::string ending = "-" + std::to_string(year_of(day)) + two(month_of(day)) + two(day_of(day));
    if (number > 1) ending += "-" + std::to_string(number);
    ending += path.substr(extension_at);
    std::size_t stem = std::min(extension_at - name_at, longest_name - ending.size());
    while (stem > 0 && (static_cast<unsigned char>(path[name_at + stem]) & 0xC0) == 0x80) --stem;
    return path.substr(0, name_at + stem) + ending;
}

class Copying {
public:
    Copying(Files& files, const RegionalSettings& regional, const ArchiveCopy& order)
        : files_(files), regional_(regional), order_(order) {}

    ArchiveCopied run() {
        result_.unsound = bring_to_rest(order_.source);
        look_at_former();
        const auto copy = prepare();
        if (copy) {
            decide_on_former(copy->path());
            const std::string destination = copy->destination();
            if (former_stays_) put_aside(destination);
            // Before the copy is there: the next opening would put pages of the former file into it.
            files_.remove(companions_of(destination));
            copy->place();
            result_.made = true;
        }
        return result_;
    }

private:
    /// Opens a database once, so that its engine sees to what a stopped program has left.
    /// @return why it does not open, empty if it does
    std::string bring_to_rest(const std::string& path) {
        const std::string unsound = why_not_open(path, regional_, &result_.notice);
        if (files_.folder_exists(path) || !files_.exists(path)) return unsound; // the copying says so
        if (const std::string left = left_beside(path); !left.empty()) {
            throw refusal("Il file \"" + path + "\" non è completo senza \"" + left +
                          "\", lasciato da una scrittura interrotta che non si riesce ad annullare. " +
                          unsound);
        }
        return unsound;
    }

    void look_at_former() {
        if (files_.exists(order_.destination))
            former_opens_ = why_not_open(order_.destination, regional_, &result_.notice).empty();
    }

    /// @param content  a file with the bytes of the copy
    void decide_on_former(const std::string& content) {
        if (result_.unsound.empty()) result_.unsound = why_unsound(content, regional_);
        if (!former_opens_) return;
        if (!order_.keeps_former && !result_.unsound.empty()) {
            throw refusal("Il file \"" + order_.destination +
                          "\" non è stato sostituito, perché quello da copiare non è un archivio integro. " +
                          result_.unsound);
        }
        former_stays_ = order_.keeps_former && (!result_.unsound.empty() ||
                                                !holds_what_was_in(content, order_.destination, regional_));
    }

    /// @return null if there is nothing more to do
    std::unique_ptr<PendingCopy> prepare() {
        try {
            return files_.prepare_copy(order_.source, order_.destination, order_.progress);
        } catch (const Failure& failure) {
            if (failure.number() != failure_number::disk_full || !may_overwrite()) throw;
        }
        overwrite();
        return nullptr;
    }

    bool may_overwrite() {
        const auto source = files_.facts(order_.source);
        const auto former = files_.facts(order_.destination);
        if (!order_.may_overwrite || !source || !former) return false;
        const std::uint64_t free = files_.free_bytes(order_.destination);
        if (source->size > free + former->size) return false;
        decide_on_former(order_.source);
        return !former_stays_ && order_.may_overwrite(source->size, free);
    }

    void overwrite() {
        files_.remove(companions_of(order_.destination));
        try {
            files_.overwrite(order_.source, order_.destination, order_.progress);
        } catch (const Failure& failure) {
            throw Failure(failure_number::content_lost, failure.source(),
                          failure.description() + " Il contenuto che il file aveva prima è perduto.");
        }
        result_.unsound = why_unsound(order_.destination, regional_);
        result_.made = true;
    }

    void put_aside(const std::string& destination) {
        for (int number = 1; result_.kept_as.empty(); ++number) {
            const std::string name = dated_name(destination, order_.today, number);
            if (files_.keep_as(destination, name)) result_.kept_as = name;
        }
    }

    Files& files_;
    const RegionalSettings& regional_;
    const ArchiveCopy& order_;
    ArchiveCopied result_;
    bool former_opens_ = false;
    bool former_stays_ = false;
};

} // namespace

ArchiveCopied copy_archive(Files& files, const RegionalSettings& regional, const ArchiveCopy& order) {
    return Copying(files, regional, order).run();
}

} // namespace tarvello::store
