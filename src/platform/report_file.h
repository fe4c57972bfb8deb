#pragma once

#include "platform/platform.h"

#include <functional>
#include <string>

namespace tarvello {

struct ReportFileSurroundings {
    FileDialogs& dialogs;
    Files& files;
    CopyDialog& copy_dialog;
    MessageBoxes& boxes;
};

/// Makes a PDF file under a name that the user chooses, whole or not at all, and says what became of it.
/// @param pdf  what goes into it, asked for once there is a name
void save_as_pdf(const ReportFileSurroundings& around, const std::function<std::string()>& pdf);

} // namespace tarvello
