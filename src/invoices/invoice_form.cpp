#include "invoices/invoice_form.h"

#include "platform/platform.h"

namespace tarvello {

frmTarvello::frmTarvello(Program& program) : Form(program, "frmTarvello"), program_(program) {
    set_caption("Fatture");
    DTPicker1.set_date(program_.platform().clock.today());
}

void frmTarvello::on_load() {}

void frmTarvello::on_unload(UnloadReason) {}

} // namespace tarvello
