#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

namespace tarvello {

class Program;

/// The version of the program and of what it works with, for whoever asks for help.
class frmAbout : public Form {
public:
    explicit frmAbout(Program& program);

    Picture Image1{*this, "Image1"};
    Label lblTitle{*this, "lblTitle"};
    Label lblVersion{*this, "lblVersion"};
    ListView ListView1{*this, "ListView1"};
    /// Copies the list to the clipboard, a line a row.
    CommandButton cmdCopia{*this, "cmdCopia"};
    CommandButton cmdGuida{*this, "cmdGuida"};
    CommandButton cmdOK{*this, "cmdOK"};

protected:
    void on_load() override;

private:
    void copy();

    Program& program_;
};

} // namespace tarvello
