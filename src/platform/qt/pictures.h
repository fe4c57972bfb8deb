#pragma once

#include <QIcon>
#include <QString>

#include <string>

namespace tarvello::qt {

/// The file of a picture: a name such as "salva" is one of the program's own drawings, anything with a folder
/// or an extension is the path of a file. Empty if there is no such picture.
QString picture_file(const std::string& picture);

/// Drawn when it is first painted, at the size that is asked of it. Null for an empty name.
QIcon picture_icon(const std::string& picture);

/// The drawing of the program's icon for a size in pixels: small ones have less on them, so that they can be
/// read.
std::string program_icon_drawing(int size);

/// The icon of the program's windows.
QIcon program_icon();

} // namespace tarvello::qt
