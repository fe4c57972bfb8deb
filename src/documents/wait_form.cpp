#include "documents/wait_form.h"

#include "program/program.h"

namespace tarvello {

frmAttesa::frmAttesa(Program& program) : Form(program, "frmAttesa") { set_caption(program_title); }

} // namespace tarvello
