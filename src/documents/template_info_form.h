#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Explains the two formats of templates.
class frmInfoModelli : public Form {
public:
    explicit frmInfoModelli(Program& program);

    /// Closes the window, as Label3 does.
    Label Label6{*this, "Label6"};
    Label Label1{*this, "Label1"};
    Label Label2{*this, "Label2"};
    Label Label4{*this, "Label4"};
    Label Label5{*this, "Label5"};
    Label Label3{*this, "Label3"};
};

} // namespace tarvello
