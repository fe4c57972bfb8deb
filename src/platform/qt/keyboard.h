#pragma once

class QKeyEvent;

namespace tarvello::qt {

/// The code of the character that a key writes, or of Backspace, Enter or Escape; 0 for every other key, and
/// for every key pressed together with Ctrl, Alt or Meta.
int key_code(const QKeyEvent& event);

/// True for both keys of that name.
bool is_enter(const QKeyEvent& event);

} // namespace tarvello::qt
