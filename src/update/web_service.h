#pragma once

#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <string>

namespace tarvello {

class Program;

/// The maker's pages in a browser of the program's own. Looking at the page counts as a check for updates:
/// opening this window starts the days to the next reminder anew, whether or not the page could be reached.
class frmWebService : public Form {
public:
    explicit frmWebService(Program& program);

    Frame CoolBar1{*this, "CoolBar1"};
    Toolbar Toolbar1{CoolBar1, "Toolbar1"};
    Label Label1{*this, "Label1"};
    Label labelVersion{*this, "labelVersion"};
    WebBrowser WebBrowser1{*this, "WebBrowser1"};
    Timer TimerBannerVersion{*this, "TimerBannerVersion", 20};

protected:
    void on_load() override;

private:
    void press(const std::string& key);
    void type_banner();

    Program& program_;
};

/// Opens the maker's page after a short wait that does nothing.
void open_update_page(Program& program);

} // namespace tarvello
