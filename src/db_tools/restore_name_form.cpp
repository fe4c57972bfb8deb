#include "db_tools/restore_name_form.h"

#include "program/program.h"

namespace tarvello {

frmRipristinaBackup::frmRipristinaBackup(Program& program) : Form(program, "frmRipristinaBackup") {
    set_caption("Ripristino Backup");
    Frame1.set_caption("Ripristino Backup");
    Command1.set_caption("Annulla");
    Text1.on_change = [this] { Command1.set_caption(Text1.empty() ? "Annulla" : "OK"); };
    Command1.on_click = [this] { unload(); };
    set_keys(&Command1, nullptr);
}

bool frmRipristinaBackup::press_escape() {
    Text1.clear();
    return unload();
}

void frmRipristinaBackup::on_unload(UnloadReason) {
    if (!name_) return;
    name_->clear();
    name_->set_text(Text1.text());
}

} // namespace tarvello
