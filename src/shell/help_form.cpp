#include "shell/help_form.h"

#include "shell/program.h"

namespace tarvello {

frmHelp::frmHelp(Program& program) : Form(program, "frmHelp") {
    Text1.set_locked(true);
    Command1.set_caption("&Chiudi");
    Command1.on_click = [this] { unload(); };
}

void frmHelp::set_page(const std::string& title, const std::string& text) {
    set_caption(title);
    Text1.set_text(text);
}

void show_help(Program& program, const std::string& title, const std::string& text) {
    frmHelp& page = program.form<frmHelp>();
    page.set_page(title, text);
    page.show_modal();
}

} // namespace tarvello
