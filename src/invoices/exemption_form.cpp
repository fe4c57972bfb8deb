#include "invoices/exemption_form.h"

#include "program/program.h"

namespace tarvello {

frmArticoloEsenzione::frmArticoloEsenzione(Program& program) : Form(program, "frmArticoloEsenzione") {
    set_caption("Articolo Esenzione IVA");
    Label1.set_caption("Specificare uno degli articoli di esenzione");
    Option1.set_caption("Art. 10 D.p.r. 633/72");
    Option2.set_caption("Art. 15 D.p.r. 633/72");
    Option3.set_caption("Art. 74 D.p.r. 633/72");
    Option4.set_caption("Altro (specificare nel riquadro sottostante)");
    txtEsenzioneIVA.set_tool_tip("Specificare la causale per l'esenzione IVA");
    txtparam.set_visible(false);
    OKButton.set_caption("OK");
    CancelButton.set_caption("&Annulla");

    allow_own_words(false);
    for (OptionButton* article : {&Option1, &Option2, &Option3}) {
        article->on_click = [this] { allow_own_words(false); };
    }
    Option4.on_click = [this] { allow_own_words(true); };
    OKButton.on_click = [this] { accept(); };
    CancelButton.on_click = [this] { cancel(); };
    set_keys(&OKButton, &CancelButton);
}

void frmArticoloEsenzione::allow_own_words(bool allowed) {
    txtEsenzioneIVA.set_enabled(allowed);
    txtEsenzioneIVA.set_back_color(allowed ? colors::white : colors::grey);
}

void frmArticoloEsenzione::accept() {
    std::optional<std::string> chosen;
    for (const OptionButton* article : {&Option1, &Option2, &Option3}) {
        if (article->selected()) chosen = "(" + article->caption() + ")";
    }
    if (Option4.selected()) chosen = txtEsenzioneIVA.text();
    if (target_) target_->exempt_expenses(chosen);
    unload();
}

void frmArticoloEsenzione::cancel() {
    if (target_) target_->drop_expenses();
    unload();
}

} // namespace tarvello
