#pragma once

#include "platform/controls.h"
#include "platform/lists.h"

#include <string>

namespace tarvello {

class Program;

/// Draws a picture into another picture control: as large as it fits there, its proportions kept, centred.
/// Nothing happens if the origin has no picture.
void RidimensionaImmagine(const Picture& origin, Picture& destination);

/// The page of the letterhead form that has to do with the print report: the logo, and the layout.
class LogoPage final {
public:
    LogoPage(Program& program, Form& form);

    Frame FrameLogo;
    /// What the report shows of the logo.
    Picture PicDest{FrameLogo, "PicDest"};
    /// The logo at its own size; never in view.
    Picture PicOrigine{FrameLogo, "PicOrigine"};
    CommandButton Command7{FrameLogo, "Command7"};
    CommandButton Command8{FrameLogo, "Command8"};
    CheckBox CheckAdattaLogo{FrameLogo, "CheckAdattaLogo"};
    Frame FrameStampa;
    Label Label14{FrameStampa, "Label14"};
    ListBox ListModelliReport{FrameStampa, "ListModelliReport"};
    CommandButton Command6{FrameStampa, "Command6"};

    /// Shows the layouts, and the logo that is in use.
    void load();

private:
    void load_logo(const std::string& path);
    void fit_logo();
    void choose_logo();
    void remove_logo();
    void choose_layout();
    void save_layout();

    Program& program_;
};

} // namespace tarvello
