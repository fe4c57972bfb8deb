#pragma once

class QWidget;

/// How large things are on this screen: lengths are stated for 96 dots to the inch and the usual font, and
/// grow with the font of the desktop.
namespace tarvello::qt {

/// Pixels for a length in twips.
int pixels(const QWidget& widget, int twips);
int twips(const QWidget& widget, int pixels);

/// Lets the least and the largest sizes that the look of a window states grow with the font.
void grow_with_font(QWidget& window);

} // namespace tarvello::qt
