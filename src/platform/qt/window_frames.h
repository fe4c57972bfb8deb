#pragma once

#include "platform/form.h"

#include <QSize>

#include <memory>

class QMdiArea;
class QWidget;

/// What stands around the window of a form: the desktop's frame, or one in the multi-document area of the
/// main window. How it is made, how large it is and where it lies.
namespace tarvello::qt {

/// The forms whose windows are like no other: the one without a frame, and the one with the area.
inline constexpr const char* splash_form = "frmSplash";
inline constexpr const char* main_form = "MDIForm1";

/// The multi-document area of a main window; null for any other window.
QMdiArea* area_of(const QWidget& main_window);

/// Puts a frame around a window.
/// @param root   the window made from the .ui file; goes with its frame
/// @param modal  the user is kept on it until it is closed
/// @param area   where windows lie that are no dialogs; null while there is none
/// @param owner  what a dialog belongs to; may be null
/// @return the frame, owned by the caller and perhaps by a window too; the window itself if nothing of the
///         program's own stands around it
QWidget* put_in_frame(std::unique_ptr<QWidget> root, const Form& form, bool modal, QMdiArea* area,
                      QWidget* owner);

/// Gives a frame the size that its form wants, or else that its content likes to have, as far as there is
/// room. A main window that is on the screen grows where its area is too small.
void size_frame(QWidget& frame, const QWidget& root, const Form& form);

/// Puts a frame where the form asks for a place of its own, and inside the area as far as it has room.
/// @param area  of the main window; null while there is none
void place_frame(QWidget& frame, const QWidget& root, const Form& form, const QMdiArea* area);

/// How much higher a window is with what the desktop puts above and below it, in pixels; 0 where it puts
/// nothing there, or has not yet said.
int title_bar_of(const QWidget& frame);

/// The largest size of a window on its screen, under a title bar.
QSize most_of(const QWidget& window);

} // namespace tarvello::qt
