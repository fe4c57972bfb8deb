#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <string>

namespace tarvello {

class Program;

/// A page of help: a title and a text of several lines; from there, or by itself, the guide to the program.
class frmHelp : public Form {
public:
    explicit frmHelp(Program& program);

    TextBox Text1{*this, "Text1"};
    Document Document1{*this, "Document1"};
    CommandButton Command2{*this, "Command2"};
    CommandButton Command1{*this, "Command1"};

    /// What the page says; before it is shown.
    void set_page(const std::string& title, const std::string& text);
    /// The guide takes the place of the page.
    void set_guide();
};

/// Shows a page of help and returns when it has been closed.
void show_help(Program& program, const std::string& title, const std::string& text);
/// Tool tip of what does so.
inline constexpr const char* guide_tip = "Apre la guida di Tarvello";
/// Shows the guide to the program and returns when it has been closed.
void show_guide(Program& program);

} // namespace tarvello
