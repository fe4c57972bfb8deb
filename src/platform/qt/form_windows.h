#pragma once

#include <QWidget>

#include <memory>
#include <string>

namespace tarvello::qt {

/// Makes the window of a form, with the widgets that its .ui file describes and nothing of the form in them.
/// The list behind it is written by the build from the .ui files themselves.
/// @return null if no form of that name has a window
std::unique_ptr<QWidget> make_window(const std::string& form);

} // namespace tarvello::qt
