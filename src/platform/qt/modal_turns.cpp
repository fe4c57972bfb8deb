#include "platform/qt/modal_turns.h"

#include <QApplication>

namespace tarvello::qt {

ActiveAgain::ActiveAgain() : window_(QApplication::activeWindow()) {}

ActiveAgain::~ActiveAgain() {
    if (!window_ || !window_->isVisible()) return;
    const QWidget* modal = QApplication::activeModalWidget(); // another one may still lie above
    if (!modal || modal == window_) window_->activateWindow();
}

} // namespace tarvello::qt
