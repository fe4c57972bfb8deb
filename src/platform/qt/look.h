#pragma once

#include "platform/color.h"

#include <QString>

#include <optional>
#include <string>

class QApplication;
class QWidget;

namespace tarvello::qt {

/// The look of the program: style and palette, light or dark as the desktop is, and the desktop's font, or
/// Liberation Sans where it offers no proportional one.
void apply_look(QApplication& application);

/// True if the desktop shows light texts on dark grounds.
bool has_dark_desktop();

/// Colours of a control's own on its widget. On a dark desktop they keep their meaning and not their value:
/// white is the ground of a field, the greys are that of one out of use, and a dark text becomes a light one.
void paint_with(QWidget& widget, std::optional<Color> back, std::optional<Color> fore);

/// A tool tip that shows the text as it stands, whatever it looks like.
QString plain_tool_tip(const std::string& text);

} // namespace tarvello::qt
