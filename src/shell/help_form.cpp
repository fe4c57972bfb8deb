#include "shell/help_form.h"

#include "program/program.h"

namespace tarvello {

frmHelp::frmHelp(Program& program) : Form(program, "frmHelp") {
    Text1.set_locked(true);
    Document1.set_visible(false);
    Command2.set_caption("&Guida");
    Command2.set_tool_tip(guide_tip);
    Command1.set_caption("&Chiudi");
    Command2.on_click = [this] { set_guide(); };
    Command1.on_click = [this] { unload(); };
    set_keys(&Command1, &Command1);
}

void frmHelp::set_page(const std::string& title, const std::string& text) {
    set_caption(title);
    Text1.set_text(text);
}

void frmHelp::set_guide() {
    set_caption(std::string(program_title) + " - Guida");
    Document1.set_document("guida");
    Document1.set_visible(true);
    Text1.set_visible(false);
    Document1.set_focus();
    Command2.set_visible(false);
    set_size(12000, 10500);
}

void show_help(Program& program, const std::string& title, const std::string& text) {
    frmHelp& page = program.form<frmHelp>();
    page.set_page(title, text);
    page.show_modal();
}

void show_guide(Program& program) {
    frmHelp& page = program.form<frmHelp>();
    page.set_guide();
    page.show_modal();
}

} // namespace tarvello
