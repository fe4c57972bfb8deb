#include "shell/splash.h"

#include "program/program.h"
#include "program/version.h"
#include "shell/main_window.h"
#include "shell/session.h"

#include <cstdlib>

namespace tarvello {

frmSplash::frmSplash(Program& program) : Form(program, "frmSplash"), program_(program) {
    if (program.platform().desktop.is_another_copy_running()) program.platform().windows.abort(EXIT_SUCCESS);
    set_caption(program_title);
    Image1.set_picture("tarvello-quadro");
    Timer1.on_timer = [this] { tick(); };
}

void frmSplash::on_load() {
    LabelAttesa.set_caption("Caricamento Sessione...");
    Timer1.set_enabled(true);
    program_.platform().windows.set_pointer(Pointer::hourglass);
    ticks_ = 0;
    lblversion.set_caption("Version " + version_text());
}

void frmSplash::on_unload(UnloadReason) { program_.platform().windows.set_pointer(Pointer::normal); }

void frmSplash::tick() {
    ticks_ += 2;
    if (ticks_ > 80) LabelAttesa.set_caption("Ripristino connessione database...attendere!");
    if (ticks_ <= 100) return;
    Timer1.set_enabled(false);
    program_.platform().windows.repaint();
    load_session(program_);
    program_.form<MDIForm1>().show();
}

} // namespace tarvello
