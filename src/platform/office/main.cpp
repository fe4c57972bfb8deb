#include "platform/office/frames.h"
#include "platform/office/libre_office.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <unistd.h>

/// The helper process: LibreOffice behind a socket, so that nothing that happens to it happens to the
/// program.
///
/// Arguments: its own folder, which it removes at its end; the seconds that it waits for a request; the
/// seconds that a request may take; LibreOffice's folder of programs, or an empty text.
namespace {

using namespace tarvello::office;

void carry_out(LibreOffice& office, const Frame& frame, const std::string& office_folder,
               const std::string& profile) {
    const std::string& name = frame.at(0);
    if (name == request::start) return office.start(office_folder, profile);
    if (name == request::load) return office.load(frame.at(1));
    if (name == request::replace) return office.replace_all(frame.at(1), frame.at(2));
    if (name == request::save) return office.save(frame.at(1), frame.at(2));
    if (name == request::close) return office.close();
    throw std::runtime_error("Richiesta sconosciuta.");
}

Frame answer_to(LibreOffice& office, const Frame& frame, const std::string& office_folder,
                const std::string& profile) {
    try {
        carry_out(office, frame, office_folder, profile);
        return {answer_ok};
    } catch (const std::exception& failure) {
        return {answer_failed, failure.what()};
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 5) return EXIT_FAILURE;
    const std::string folder = arguments[1];
    const std::chrono::seconds idle(std::atoi(arguments[2]));
    const auto patience = static_cast<unsigned>(std::atoi(arguments[3]));
    const std::string office_folder = arguments[4];

    LibreOffice office;
    Frame frame;
    while (receive_frame(helper_socket, frame, Deadline::clock::now() + idle) == Exchange::done) {
        // The program ends a request that hangs. Should the program itself be gone by then, the alarm does
        // it.
        ::alarm(patience + 10);
        const Frame answer = answer_to(office, frame, office_folder, folder + "/profilo");
        ::alarm(0);
        if (send_frame(helper_socket, answer) != Exchange::done) break;
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    // LibreOffice's own end is slow and not always clean, and there is nothing left for it to do.
    std::_Exit(EXIT_SUCCESS);
}
