#include "update/web_service.h"

#include "program/maker_site.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "program/version.h"
#include "text/utf8.h"
#include "update/update_wait.h"

namespace tarvello {

namespace {

/// The banner has stood complete for a while when this many characters would have been typed.
constexpr std::int16_t banner_end = 40;

} // namespace

frmWebService::frmWebService(Program& program) : Form(program, "frmWebService"), program_(program) {
    set_caption(std::string(program_title) + " - Verifica Aggiornamenti");
    set_size(11500, 8700);
    Label1.set_caption("Verifica il tuo numero di versione con quello sul sito e se disponibile scarica la "
                       "versione aggiornata");
    labelVersion.set_caption("Versione corrente");
    Toolbar1.add_button("Verifica", "Verifica", "verifica");
    Toolbar1.add_button("Indietro", "Indietro", "freccia-sinistra");
    Toolbar1.add_button("Aggiorna", "Aggiorna", "aggiorna");
    Toolbar1.add_button("Avanti", "Avanti", "freccia-destra");
    ToolButton& closing = Toolbar1.add_button("Chiudi", "Chiudi", "chiudi");
    order_tabs({&Toolbar1, &WebBrowser1});
    Toolbar1.on_button_click = [this](ToolButton& button) { press(button.key()); };
    set_keys(nullptr, &closing);
    TimerBannerVersion.on_timer = [this] { type_banner(); };
}

void frmWebService::on_load() {
    TimerBannerVersion.set_enabled(true);
    WebBrowser1.navigate(maker_address("\\it\\software\\tarvello\\aggiornamenti\\index.asp"));
    WebBrowser1.set_silent(true);
    SessionFields& session = program_.session();
    session.txtGiorniTraCuiAvvisare.set_text("0");
    session.txtDataUltimoAggiornamento.set_text(
        short_date_text(program_.platform().clock.today(), program_.regional()));
    // At once: the fields of the main window do not outlive the session, and the next start counts from here.
    SaveTextSetting(program_, session.txtGiorniTraCuiAvvisare);
    SaveTextSetting(program_, session.txtDataUltimoAggiornamento);
}

void frmWebService::press(const std::string& key) {
    if (key == "Verifica") WebBrowser1.navigate(maker_address("\\it\\Tarvello\\webServ\\ws_home.htm"));
    if (key == "Indietro") WebBrowser1.go_back();
    if (key == "Aggiorna") WebBrowser1.refresh();
    if (key == "Avanti") WebBrowser1.go_forward();
    if (key == "Chiudi") unload();
}

void frmWebService::type_banner() {
    std::int16_t& typed = program_.version_banner_ticks;
    if (typed == banner_end) {
        TimerBannerVersion.set_enabled(false);
        return;
    }
    labelVersion.set_caption(
        utf8::left("Versione installata: " + version_text(), static_cast<std::size_t>(typed)));
    ++typed;
}

void open_update_page(Program& program) {
    program.form<frmAttesaControlloAggiornamenti>().show_modal();
    program.form<frmWebService>().show();
}

} // namespace tarvello
