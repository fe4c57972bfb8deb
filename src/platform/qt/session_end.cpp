#include "platform/qt/session_end.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace tarvello::qt {

namespace {

constexpr int signals_to_end[] = {SIGTERM, SIGHUP, SIGINT};

volatile std::sig_atomic_t wake = -1;

void tell(int) {
    const int error = errno; // belongs to whom the signal has interrupted
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(wake, &byte, 1);
    errno = error;
}

void handle_signals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : signals_to_end) ::sigaction(number, &action, nullptr);
}

} // namespace

SessionEnd::SessionEnd(std::function<void()> on_end) : on_end_(std::move(on_end)) {
    if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        QObject::connect(application, &QGuiApplication::commitDataRequest, this, [this] { on_end_(); });
    }
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets_) != 0) return;
    auto* notifier = new QSocketNotifier(sockets_[1], QSocketNotifier::Read, this);
    QObject::connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(sockets_[1], &byte, 1) == 1) on_end_();
    });
    wake = sockets_[0];
    handle_signals(tell);
}

SessionEnd::~SessionEnd() {
    if (sockets_[0] < 0) return;
    handle_signals(SIG_DFL);
    wake = -1;
    ::close(sockets_[0]);
    ::close(sockets_[1]);
}

} // namespace tarvello::qt
