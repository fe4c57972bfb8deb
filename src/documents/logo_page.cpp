#include "documents/logo_page.h"

#include "documents/letterhead.h"
#include "failure.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"

namespace tarvello {

void RidimensionaImmagine(const Picture& origin, Picture& destination) {
    if (origin.picture().empty()) return;
    const float ratio = origin.width() / origin.height();
    float width = destination.width();
    float height = destination.height();
    if (width / height <= ratio) {
        height = width / ratio;
    } else {
        width = height * ratio;
    }
    destination.clear();
    destination.paint_picture(origin.picture(), {(destination.width() - width) / 2,
                                                 (destination.height() - height) / 2, width, height});
}

LogoPage::LogoPage(Program& program, Form& form)
    : FrameLogo(form, "FrameLogo"), FrameStampa(form, "FrameStampa"), program_(program) {
    FrameLogo.set_caption("Logo per la stampa");
    // The preview has the proportions, and at 96 dots to the inch the size, of the logo's box on paper.
    PicDest.set_size(2640, 2025);
    PicInStampa.set_size(PicDest.width() / 2, PicDest.height() / 2);
    LabelInStampa.set_caption("In stampa riempie tutto il riquadro:");
    show_in_print();
    PicOrigine.set_visible(false);
    Command7.set_caption("Seleziona");
    Command8.set_caption("Elimina Logo");
    Command8.set_enabled(false);
    CheckAdattaLogo.set_caption("Adatta dimensione Immagine");
    CheckAdattaLogo.set_enabled(false);
    FrameStampa.set_caption("Impostazioni di Stampa");
    Label14.set_caption("Elenco modelli disponibili");
    Command6.set_caption("Salva");
    Command6.set_enabled(false);

    Command7.on_click = [this] { or_show_failure(program_, [this] { choose_logo(); }); };
    Command8.on_click = [this] { remove_logo(); };
    CheckAdattaLogo.on_click = [this] {
        fit_logo();
        SaveValueSetting(program_, CheckAdattaLogo);
    };
    ListModelliReport.on_click = [this] { choose_layout(); };
    Command6.on_click = [this] { save_layout(); };
}

void LogoPage::load() {
    ListModelliReport.set_items({"Arial (modello-1)", "Thaoma (modello-2)"});
    const std::string logo = program_.session().txtPercorsoLogo.text();
    if (logo.empty()) return;
    Command8.set_enabled(true);
    CheckAdattaLogo.set_enabled(true);
    skip_failures([&] { load_logo(logo); }); // a logo that has gone leaves the boxes blank
    ReadValueSetting(program_, CheckAdattaLogo);
    fit_logo();
}

void LogoPage::load_logo(const std::string& path) {
    const PictureSize size = program_.platform().pictures.size(path);
    PicOrigine.set_size(size.width, size.height);
    PicOrigine.set_picture(path);
}

void LogoPage::fit_logo() {
    if (CheckAdattaLogo.checked()) {
        PicDest.clear();
        RidimensionaImmagine(PicOrigine, PicDest);
    } else {
        PicDest.set_picture(PicOrigine.picture());
    }
    show_in_print();
}

void LogoPage::show_in_print() {
    const bool fills_box = CheckAdattaLogo.checked() && !PicOrigine.picture().empty();
    LabelInStampa.set_visible(fills_box);
    PicInStampa.set_visible(fills_box);
    if (fills_box) {
        PicInStampa.paint_picture(PicOrigine.picture(), {0, 0, PicInStampa.width(), PicInStampa.height()});
    }
}

void LogoPage::choose_logo() {
    const auto path = program_.platform().dialogs.open_file(
        {"Seleziona Logo", {{"Formato jpg (*.jpg)", "*.JPG"}, {"Formato GIF (*.gif)", "*.gif"}}});
    if (!path) return;
    program_.session().txtPercorsoLogo.set_text(*path);
    load_logo(*path);
    PicDest.set_picture(*path);
    CheckAdattaLogo.set_enabled(true);
    CheckAdattaLogo.set_checked(false);
    show_in_print();
    Command8.set_enabled(true);
}

void LogoPage::remove_logo() {
    program_.session().txtPercorsoLogo.clear();
    Command8.set_enabled(false);
    PicOrigine.clear();
    PicDest.clear();
    show_in_print();
    CheckAdattaLogo.set_enabled(false);
}

void LogoPage::choose_layout() {
    Command6.set_enabled(true);
    program_.session().txtModelloReport.set_text(ListModelliReport.list_index() == 0 ? "1" : "2");
}

void LogoPage::save_layout() {
    skip_failures([&] { SaveTextSetting(program_, program_.session().txtModelloReport); },
                  [&] { Command6.set_enabled(false); });
}

} // namespace tarvello
