#pragma once

#include "platform/office/frames.h"
#include "platform/office/office_word_processor.h"

#include <string>

#include <sys/types.h>

namespace tarvello::office {

/// A helper process that runs, seen from the program. It has a folder of its own for LibreOffice's profile
/// and for the documents in work, which goes with it.
class Helper {
public:
    /// Starts the process. @throws Failure
    explicit Helper(const OfficeWordProcessor::Settings& settings);
    /// Lets it end.
    ~Helper();
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    const std::string& folder() const { return folder_; }

    /// One request and its answer. Afterwards the helper may have gone: see alive().
    /// @throws Failure if the answer says so, the helper has died, or has had to be ended
    void ask(const Frame& request);

    /// False once the process has ended, also while nobody was looking.
    bool alive();

private:
    void end();

    std::chrono::milliseconds patience_;
    std::string folder_;
    int socket_ = -1;
    pid_t process_ = -1;
};

} // namespace tarvello::office
