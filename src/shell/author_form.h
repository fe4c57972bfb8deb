#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// Who has made the program, the works of others in it with their licences, and where its data come from.
class frmAutore : public Form {
public:
    explicit frmAutore(Program& program);

    Picture Image1{*this, "Image1"};
    Label lblTitle{*this, "lblTitle"};
    TextBox Text1{*this, "Text1"};
    CommandButton Command1{*this, "Command1"};
};

} // namespace tarvello
