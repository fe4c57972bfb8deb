#include "platform/qt/keyboard.h"

#include "platform/control.h"

#include <QKeyEvent>

namespace tarvello::qt {

bool is_enter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

int key_code(const QKeyEvent& event) {
    // Backspace is one with Ctrl too, where the toolkit takes a whole word.
    if (event.key() == Qt::Key_Backspace) return keys::backspace;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return 0;
    if (is_enter(event)) return keys::enter;
    if (event.key() == Qt::Key_Escape) return keys::escape;
    const auto characters = event.text().toUcs4();
    if (characters.size() != 1) return 0;
    const auto code = static_cast<int>(characters.front());
    return code >= ' ' && code != 127 ? code : 0;
}

} // namespace tarvello::qt
