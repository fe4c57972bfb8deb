#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Explains the two formats of templates.
class frmInfoModelli : public Form {
public:
    explicit frmInfoModelli(Program& program);

    Label Label1{*this, "Label1"};
    Label Label2{*this, "Label2"};
    Label Label4{*this, "Label4"};
    Label Label5{*this, "Label5"};
    /// Both close the window.
    Label Label3{*this, "Label3"};
    Label Label6{*this, "Label6"};
};

} // namespace tarvello
