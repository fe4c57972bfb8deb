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
    /// The logo as it is chosen: what the report shows of it, unless it is fitted.
    Picture PicDest{FrameLogo, "PicDest"};
    /// The logo at its own size; never in view.
    Picture PicOrigine{FrameLogo, "PicOrigine"};
    /// What the report shows of a logo that is fitted: there it fills its box, whatever its proportions.
    Label LabelInStampa{FrameLogo, "LabelInStampa"};
    Picture PicInStampa{FrameLogo, "PicInStampa"};
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
    void show_in_print();
    void choose_logo();
    void remove_logo();
    void choose_layout();
    void save_layout();

    Program& program_;
};

} // namespace tarvello
