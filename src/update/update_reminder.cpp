#include "update/update_reminder.h"

#include "failure.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "text/numbers.h"
#include "update/web_service.h"

namespace tarvello {

namespace {

/// @param last   the day of the last look
/// @param extra  days to wait beyond the usual 30
bool reminder_is_due(const Date& last, int extra, const Date& today) {
    return days_between(today, last) < -30 - extra;
}

} // namespace

void ControllaAggiornamenti(Program& program) {
    SessionFields& session = program.session();
    TextBox& last = session.txtDataUltimoAggiornamento;
    TextBox& extra = session.txtGiorniTraCuiAvvisare;
    ReadTextSetting(program, last);
    ReadTextSetting(program, extra);
    if (last.text() == missing_setting) last.set_text("01/01/2005");
    if (extra.text() == missing_setting) extra.set_text("0");

    int extra_days = 0;
    skip_failures([&] { extra_days = leading_int16(extra.text()); },
                  [&] {
                      const auto date = read_date(last.text(), program.regional());
                      if (date && reminder_is_due(*date, extra_days, program.platform().clock.today())) {
                          program.form<DialogAggiornamento>().show_modal();
                      }
                  });
    SaveTextSetting(program, last);
    SaveTextSetting(program, extra);
}

DialogAggiornamento::DialogAggiornamento(Program& program)
    : Form(program, "DialogAggiornamento"), program_(program) {
    set_caption(program_title);
    Frame1.set_caption("Verifica Aggiornamenti");
    Label2.set_caption("Premere OK per verificare la disponibilità di aggiornamenti.");
    Label3.set_caption("Avvisa di nuovo tra");
    for (const char* days : {"1", "7"}) Combo1.add_item(days);
    Combo1.set_list_only(true);
    Label4.set_caption("giorno/i");
    OKButton.set_caption("OK");
    CancelButton.set_caption("Annulla");
    Command1.set_picture("chiudi");
    Command1.set_tool_tip("Chiudi");

    Combo1.on_click = [this] { program_.session().txtGiorniTraCuiAvvisare.set_text(Combo1.text()); };
    OKButton.on_click = [this] {
        unload();
        program_.form<frmWebService>().show();
    };
    CancelButton.on_click = [this] { unload(); };
    Command1.on_click = [this] { unload(); };
    set_keys(&OKButton, &CancelButton);
}

void DialogAggiornamento::on_load() {
    Label1.set_caption(
        "Tarvello ha rilevato che non è stato eseguito alcun aggiornamento negli ultimi 30 giorni. "
        "Si consiglia di verificare la disponibilità di aggiornamenti per disporre delle ultime "
        "funzionalità del programma.");
}

} // namespace tarvello
