#include "platform/office/libre_office.h"

// The operations on documents are offered under this name.
#define LOK_USE_UNSTABLE_API
#include <LibreOfficeKit/LibreOfficeKit.hxx>
#include <LibreOfficeKit/LibreOfficeKitEnums.h>
#include <LibreOfficeKit/LibreOfficeKitInit.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace tarvello::office {
namespace {

/// Where systems have LibreOffice's programs.
std::vector<std::string> usual_folders() {
    std::vector<std::string> folders{"/usr/lib/libreoffice/program", "/usr/lib64/libreoffice/program"};
    std::error_code unreadable;
    for (const auto& entry : std::filesystem::directory_iterator("/opt", unreadable)) {
        if (entry.path().filename().string().starts_with("libreoffice"))
            folders.push_back(entry.path() / "program");
    }
    return folders;
}

/// A path as a file address.
std::string address(const std::string& path) {
    std::string text = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || std::string_view("/-_.~").find(c) != std::string_view::npos) {
            text += c;
        } else {
            std::array<char, 4> escaped{};
            std::snprintf(escaped.data(), escaped.size(), "%%%02X", byte);
            text += escaped.data();
        }
    }
    return text;
}

/// A text as JSON has it between quotes.
std::string quoted(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20) {
            std::array<char, 7> escaped{};
            std::snprintf(escaped.data(), escaped.size(), "\\u%04x", byte);
            json += escaped.data();
        } else {
            json += c;
        }
    }
    return json + '"';
}

std::string argument(const std::string& name, const std::string& type, const std::string& value) {
    return quoted(name) + ":{\"type\":" + quoted(type) + ",\"value\":" + quoted(value) + "}";
}

} // namespace

LibreOffice::LibreOffice() = default;

LibreOffice::~LibreOffice() = default;

void LibreOffice::start(const std::string& folder, const std::string& profile) {
    if (office_) return;
    const std::vector<std::string> folders = folder.empty() ? usual_folders() : std::vector{folder};
    for (const std::string& place : folders) {
        std::error_code missing;
        if (!std::filesystem::is_directory(place, missing)) continue;
        office_.reset(lok::lok_cpp_init(place.c_str(), address(profile).c_str()));
        if (office_) return;
    }
    throw std::runtime_error("Impossibile avviare il programma di scrittura: LibreOffice non è installato.");
}

void LibreOffice::load(const std::string& path) {
    close();
    document_.reset(office_ ? office_->documentLoad(address(path).c_str()) : nullptr);
    if (!document_) throw std::runtime_error("Il documento è danneggiato o non si può aprire.");
    if (document_->getDocumentType() != LOK_DOCTYPE_TEXT) {
        close();
        throw std::runtime_error("Il file non è un documento di testo.");
    }
    document_->registerCallback(&LibreOffice::hear, this);
}

void LibreOffice::replace_all(const std::string& text, const std::string& value) {
    constexpr auto command_replace_all = "3";
    constexpr auto algorithm_plain = "0";
    constexpr auto algorithm_plain_by_its_newer_name = "1";
    constexpr auto ignore_case = "256";
    const std::string arguments =
        "{" + argument("SearchItem.SearchString", "string", text) + "," +
        argument("SearchItem.ReplaceString", "string", value) + "," +
        argument("SearchItem.Backward", "boolean", "false") + "," +
        argument("SearchItem.Command", "long", command_replace_all) + "," +
        argument("SearchItem.AlgorithmType", "short", algorithm_plain) + "," +
        argument("SearchItem.AlgorithmType2", "short", algorithm_plain_by_its_newer_name) + "," +
        argument("SearchItem.SearchFlags", "long", "0") + "," +
        argument("SearchItem.TransliterateFlags", "long", ignore_case) + "}";
    run(".uno:ExecuteSearch", arguments);
}

void LibreOffice::run(const std::string& command, const std::string& arguments) {
    std::unique_lock lock(mutex_);
    done_ = false;
    lock.unlock();
    document().postUnoCommand(command.c_str(), arguments.c_str(), true);
    lock.lock();
    // A command that never ends is the program's to judge: it ends this process.
    command_done_.wait(lock, [this] { return done_; });
}

void LibreOffice::hear(int event, const char*, void* self) {
    if (event != LOK_CALLBACK_UNO_COMMAND_RESULT) return;
    auto& office = *static_cast<LibreOffice*>(self);
    const std::lock_guard lock(office.mutex_);
    office.done_ = true;
    office.command_done_.notify_all();
}

void LibreOffice::save(const std::string& path, const std::string& format) {
    if (!document().saveAs(address(path).c_str(), format.c_str())) {
        throw std::runtime_error("Il documento non si può salvare.");
    }
}

void LibreOffice::close() { document_.reset(); }

lok::Document& LibreOffice::document() {
    if (!document_) throw std::runtime_error("Nessun documento è aperto.");
    return *document_;
}

} // namespace tarvello::office
