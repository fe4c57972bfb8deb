#include "documents/template_info_form.h"

#include "program/program.h"

namespace tarvello {

frmInfoModelli::frmInfoModelli(Program& program) : Form(program, "frmInfoModelli") {
    set_caption("Informazioni sui modelli");
    Label1.set_caption("1) Rich Text Format (RTF)");
    Label2.set_caption(
        "I documenti in questo formato si leggono con qualunque programma di scrittura. È il formato adatto "
        "alle fatture da inviare per e-mail a clienti che potrebbero non avere Microsoft Word.");
    Label4.set_caption("2) Microsoft Word Document (DOC)");
    Label5.set_caption(
        "I documenti in questo formato sono adatti a essere visualizzati sui computer in cui è installato "
        "Microsoft Word.");
    Label3.set_caption("Chiudi");
    Label6.set_caption("X");
    Label3.on_click = [this] { unload(); };
    Label6.on_click = [this] { unload(); };
    set_keys(&Label3, &Label3);
}

} // namespace tarvello
