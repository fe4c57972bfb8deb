#pragma once

#include "platform/files.h"
#include "platform/word_processor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tarvello {

namespace office {
class Helper;
}

/// The word processor in a process of its own, tarvello-office, which drives LibreOffice: neither a crash nor
/// a hang of it reaches the program, and a LibreOffice that the user has open knows nothing of it.
class OfficeWordProcessor final : public WordProcessor {
public:
    struct Settings {
        /// The executable of the helper process.
        std::string helper;
        /// LibreOffice's folder of programs; empty: where systems have it.
        std::string office_folder;
        /// How long one operation may take before the helper is ended.
        std::chrono::milliseconds patience{30'000};
        /// How long a helper waits for the next document before it ends by itself.
        std::chrono::seconds idle{300};
    };

    /// @param open_for_user  opens a file with the program that the user has for it, without waiting; false
    /// if
    ///                       there is none
    OfficeWordProcessor(Settings settings, Files& files,
                        std::function<bool(const std::string&)> open_for_user);
    ~OfficeWordProcessor();

    std::unique_ptr<WordApplication> start() override;

private:
    Settings settings_;
    Files& files_;
    std::function<bool(const std::string&)> open_for_user_;
    /// The helper of the last document, kept for the next one.
    std::shared_ptr<office::Helper> helper_;
};

} // namespace tarvello
