#include "db_tools/copy_file.h"

#include "failure.h"

namespace tarvello {
namespace {

/// The progress window for as long as a copy runs.
class ProgressWindow {
public:
    ProgressWindow(CopyDialog& dialog, const std::string& title) : dialog_(dialog) { dialog_.begin(title); }
    ~ProgressWindow() { dialog_.end(); }
    ProgressWindow(const ProgressWindow&) = delete;
    ProgressWindow& operator=(const ProgressWindow&) = delete;

private:
    CopyDialog& dialog_;
};

std::string file_destination(Platform& platform, const std::string& source, const std::string& destination) {
    if (!platform.files.folder_exists(destination)) return destination;
    const std::string folder =
        destination.ends_with(platform.separator) ? destination : destination + platform.separator;
    return folder + source.substr(source.rfind(platform.separator) + 1);
}

} // namespace

CopyOutcome run_copy(Platform& platform, const std::string& source, const std::string& destination,
                     bool may_ask, bool show_progress, const CopyStep& step) {
    CopyDialog& dialog = platform.copy_dialog;
    try {
        const std::string target = file_destination(platform, source, destination);
        const bool would_replace = platform.files.exists(source) && platform.files.exists(target);
        if (may_ask && would_replace && !dialog.may_replace(target)) return CopyOutcome::given_up;
        bool made = false;
        if (!show_progress) {
            made = step(target, {});
        } else {
            const ProgressWindow window(dialog, "Copia " + destination);
            made = step(target,
                        [&](std::uint64_t done, std::uint64_t total) { return dialog.advance(done, total); });
        }
        return made ? CopyOutcome::made : CopyOutcome::given_up;
    } catch (const Failure& failure) {
        // The answer tells the caller; the reason is for the user, who is only watching a copy that shows
        // itself.
        if (show_progress) dialog.report_failure(failure.description());
        return failure.number() == failure_number::content_lost ? CopyOutcome::spoilt : CopyOutcome::failed;
    }
}

bool CopiaFile(Platform& platform, const std::string& source, const std::string& destination, bool may_ask,
               bool show_progress) {
    const auto copy = [&](const std::string& target, const CopyProgress& progress) {
        return platform.files.copy(source, target, progress);
    };
    return run_copy(platform, source, destination, may_ask, show_progress, copy) != CopyOutcome::failed;
}

} // namespace tarvello
