#pragma once

#include <QColor>
#include <QPalette>

#include <string>
#include <vector>

class QApplication;
class QWidget;

namespace tarvello::testing {

/// What a person could not read, tell apart or reach in a window as it stands on the screen: words that are
/// cut off or lie on each other, text that is too faint for its ground, parts that a small screen cannot
/// show, and what takes the keyboard and has no name for a screen reader. One line for each.
std::vector<std::string> look_faults(QWidget& window);

/// How much a text stands out from its ground, from 1 to 21, after WCAG 2.1.
double contrast(const QColor& text, const QColor& ground);

/// Gives the program the desktop that the environment asks for: TARVELLO_FONT points, TARVELLO_DARK.
void set_desktop(QApplication& application);

} // namespace tarvello::testing
