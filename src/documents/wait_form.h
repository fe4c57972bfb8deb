#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// A notice that something is going on. It blocks nothing.
class frmAttesa : public Form {
public:
    explicit frmAttesa(Program& program);

    Label Label1{*this, "Label1"};
};

} // namespace tarvello
