#pragma once

#include <QApplication>

namespace tarvello::qt {

/// The application object: Italian words in the toolkit's own dialogs whatever the desktop speaks, the
/// program's look, and the last stop for what must not cross the toolkit's event loop.
class Application final : public QApplication {
public:
    Application(int& argc, char** argv);
    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace tarvello::qt
