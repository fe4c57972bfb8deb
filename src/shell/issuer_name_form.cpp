#include "shell/issuer_name_form.h"

#include "documents/letterhead_form.h"
#include "program/program.h"
#include "program/settings.h"
#include "shell/splash.h"

namespace tarvello {

frmRegister::frmRegister(Program& program) : Form(program, "frmRegister"), program_(program) {
    set_caption("Inserisci Modifica Nome/Ragione Sociale");
    Label4.set_caption("ATTENZIONE!");
    Label1.set_caption("Nome (Persona fisica o giuridica)");
    Label2.set_caption(
        "Per utilizzare Tarvello 4 è necessario inseire il proprio cognome e nome o la ragione "
        "sociale. E' importante inserire i dati correttamente in quanto tali dati saranno "
        "visualizzati nell'intestazione delle fatture che si intende stampare. Se dovesse "
        "essere necessario modificare i dati si potrà comunque farlo in un secondo momento");
    Command1.set_caption("C&onferma");
    Command2.set_caption("&Cancella");
    Text1.on_change = [this] { name_changed(); };
    Command1.on_click = [this] { confirm(); };
    Command2.on_click = [this] { cancel(); };
    set_keys(&Command1, &Command2);
}

void frmRegister::on_load() { Text1.set_text(program_.NomeIntestatario); }

void frmRegister::on_unload(UnloadReason) {
    if (auto* splash = program_.loaded<frmSplash>()) splash->unload();
}

void frmRegister::name_changed() {
    // The emptying below is no change of its own: the store keeps "False", which the next start reads as a
    // blank name.
    if (emptying_) return;
    SaveTextSetting(program_, Text1);
    if (Text1.text() == missing_setting) {
        emptying_ = true;
        Text1.clear();
        emptying_ = false;
    }
    program_.NomeIntestatario = Text1.text();
}

void frmRegister::confirm() {
    if (Text1.empty()) {
        program_.message("Inserire il nome della persona fisica o\ngiuridica che emetterà le fatture!",
                         BoxIcon::exclamation);
        Text1.set_focus();
        return;
    }
    if (!program_.confirm("Se i dati inseriti sono corretti premere 'Si'.\n"
                          "Attenzione! I dati verranno visualizzati nell'intestazione\n"
                          "delle fatture da stampare.\n"
                          "Continuare?")) {
        return;
    }
    unload();
    auto& letterhead = program_.form<frmIntestazioneFatture>();
    letterhead.Text1[frmIntestazioneFatture::nome].set_text(program_.NomeIntestatario);
}

void frmRegister::cancel() {
    if (program_.confirm("Annullare inserimento dati?")) {
        unload();
    } else {
        Text1.set_focus();
    }
}

} // namespace tarvello
