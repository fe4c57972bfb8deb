#include "shell/main_window.h"

#include "shell/program.h"

namespace tarvello {

MDIForm1::MDIForm1(Program& program) : Form(program, "MDIForm1"), program_(program) {
    FrameImpostazioni.set_visible(false);
}

} // namespace tarvello
