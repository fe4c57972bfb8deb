#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace lok {
class Document;
class Office;
} // namespace lok

namespace tarvello::office {

/// LibreOffice in this process, with at most one document. What cannot be done throws std::runtime_error,
/// with the reason in Italian.
class LibreOffice {
public:
    LibreOffice();
    ~LibreOffice();

    /// Brings LibreOffice to life; the second time nothing happens.
    /// @param folder   LibreOffice's folder of programs; empty: where systems have it
    /// @param profile  a folder for the settings that LibreOffice keeps
    void start(const std::string& folder, const std::string& profile);
    void load(const std::string& path);
    void replace_all(const std::string& text, const std::string& value);
    void save(const std::string& path, const std::string& format);
    void close();

private:
    lok::Document& document();
    /// Runs a command on the document and waits until it is done: LibreOffice does it in a thread of its own.
    void run(const std::string& command, const std::string& arguments);
    static void hear(int event, const char* text, void* self);

    // What hear() works on outlives the document that calls it from a thread of its own.
    std::mutex mutex_;
    std::condition_variable command_done_;
    bool done_ = false; ///< the command that runs has come to its end

    std::unique_ptr<lok::Office> office_;
    std::unique_ptr<lok::Document> document_;
};

} // namespace tarvello::office
