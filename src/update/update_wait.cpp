#include "update/update_wait.h"

#include "program/maker_site.h"
#include "program/program.h"

namespace tarvello {

frmAttesaControlloAggiornamenti::frmAttesaControlloAggiornamenti(Program& program)
    : Form(program, "frmAttesaControlloAggiornamenti") {
    set_caption(program_title);
    Label2.set_caption("Verifica Aggiornamenti...");
    Label1.set_caption("Collegamento a " + maker_host());
    Timer1.on_timer = [this] { tick(); };
}

void frmAttesaControlloAggiornamenti::on_load() { Timer1.set_enabled(true); }

void frmAttesaControlloAggiornamenti::tick() {
    waited_ += 2;
    ProgressBar1.set_value(waited_);
    if (waited_ <= 100) return;
    Timer1.set_enabled(false);
    unload();
}

} // namespace tarvello
