#pragma once

#include <QObject>

#include <functional>

namespace tarvello::qt {

/// Tells when the desktop session ends, or when somebody asks the process to end (SIGTERM, SIGHUP, SIGINT):
/// then the program closes as if its main window had been closed, and keeps its settings. One at a time.
class SessionEnd final : public QObject {
public:
    explicit SessionEnd(std::function<void()> on_end);
    ~SessionEnd() override;

private:
    std::function<void()> on_end_;
    int sockets_[2] = {-1, -1}; // a signal handler may do no more than write a byte
};

} // namespace tarvello::qt
