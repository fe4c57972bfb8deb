#include "platform/office/helper.h"

#include "failure.h"

#include <cstdlib>
#include <filesystem>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::office {
namespace {

const char* const source = "Word";

Failure not_started(const std::string& why) {
    return {429, source, "Impossibile avviare il programma di scrittura: " + why + "."};
}

std::string make_folder() {
    std::error_code none;
    const auto temporary = std::filesystem::temp_directory_path(none);
    std::string pattern =
        ((none ? std::filesystem::path("/tmp") : temporary) / "tarvello-office-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw not_started("manca lo spazio per i file temporanei");
    return pattern;
}

/// Starts the program with one end of a socket pair as helper_socket and nothing else of ours open.
pid_t spawn(const std::string& path, const std::vector<std::string>& arguments, int socket) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, socket, helper_socket);
    std::vector<char*> pointers{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    pid_t process = -1;
    const int error = ::posix_spawn(&process, path.c_str(), &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : -1;
}

} // namespace

Helper::Helper(const OfficeWordProcessor::Settings& settings)
    : patience_(settings.patience), folder_(make_folder()) {
    int sockets[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        end();
        throw not_started("mancano le risorse di sistema");
    }
    socket_ = sockets[0];
    const auto patience = std::chrono::ceil<std::chrono::seconds>(settings.patience).count();
    process_ = spawn(
        settings.helper,
        {folder_, std::to_string(settings.idle.count()), std::to_string(patience), settings.office_folder},
        sockets[1]);
    ::close(sockets[1]);
    if (process_ < 0) {
        end();
        throw not_started("manca il programma \"" + settings.helper + "\"");
    }
}

Helper::~Helper() { end(); }

void Helper::ask(const Frame& request) {
    if (process_ < 0)
        throw Failure(failure_number::word_processor, source,
                      "Il programma di scrittura non è più in funzione.");
    const Deadline deadline = Deadline::clock::now() + patience_;
    Frame answer;
    Exchange exchange = send_frame(socket_, request, deadline);
    if (exchange == Exchange::done) exchange = receive_frame(socket_, answer, deadline);
    if (exchange == Exchange::done && !answer.empty() && answer[0] == answer_ok) return;
    if (exchange == Exchange::done && answer.size() == 2 && answer[0] == answer_failed) {
        throw Failure(failure_number::word_processor, source, answer[1]);
    }
    end();
    if (exchange == Exchange::timeout) {
        throw Failure(failure_number::word_processor, source,
                      "Il programma di scrittura non ha risposto in tempo ed è stato chiuso.");
    }
    throw Failure(failure_number::word_processor, source,
                  "Il programma di scrittura si è chiuso in modo imprevisto.");
}

bool Helper::alive() {
    if (process_ < 0) return false;
    // A helper that has ended has closed its side; one that is well has nothing to say by itself.
    pollfd entry{socket_, POLLIN, 0};
    if (::poll(&entry, 1, 0) != 0) end();
    return process_ >= 0;
}

void Helper::end() {
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
    if (process_ >= 0) {
        // LibreOffice has nothing of worth left: its documents are copies. So there is no waiting for a
        // good-bye.
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    process_ = -1;
    std::error_code ignored; // what cannot be removed is left to the system's own cleaning
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
    folder_.clear();
}

} // namespace tarvello::office
