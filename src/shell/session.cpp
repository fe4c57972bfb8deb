#include "shell/session.h"

#include "customers/customer_form.h"
#include "customers/customer_results.h"
#include "db_tools/backup_restore.h"
#include "db_tools/database_form.h"
#include "db_tools/new_archive_form.h"
#include "db_tools/restore_name_form.h"
#include "documents/letterhead_form.h"
#include "documents/template_info_form.h"
#include "failure.h"
#include "fiscal_code/calculator_form.h"
#include "invoices/exemption_form.h"
#include "invoices/invoice_form.h"
#include "invoices/invoice_results.h"
#include "preferences/tax_preferences.h"
#include "program/folders.h"
#include "program/open_database.h"
#include "program/program.h"
#include "program/settings.h"
#include "program/version.h"
#include "shell/about_form.h"
#include "shell/author_form.h"
#include "shell/help_form.h"
#include "shell/issuer_name_form.h"
#include "shell/main_window.h"
#include "shell/splash.h"
#include "text/numbers.h"
#include "update/update_reminder.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tarvello {

namespace {

/// Gives a field its default if it holds one of these texts. The lists of texts that count as missing differ
/// from setting to setting.
void replace(TextBox& field, std::initializer_list<std::string_view> missing, const std::string& value) {
    if (std::find(missing.begin(), missing.end(), field.text()) != missing.end()) field.set_text(value);
}

void read_settings(Program& program, SessionFields& session) {
    for (TextBox* field : {&session.txtPercorsoLogo, &session.txt_IVA_default, &session.txt_Ritenuta_default,
                           &session.txt_RitenutaSu_default, &session.txt_RIVALSA_default}) {
        ReadTextSetting(program, *field);
    }
    for (TextBox* field :
         {&session.txtPercorsoLogo, &session.txt_IVA_default, &session.txt_RitenutaSu_default,
          &session.txt_Ritenuta_default, &session.txt_RIVALSA_default}) {
        replace(*field, {missing_setting}, "");
    }
    ReadTextSetting(program, session.txtModelloReport);
    replace(session.txtModelloReport, {"", "false", missing_setting, "falso", "Falso"}, "1");
    ReadTextSetting(program, session.txtContatoreAccessi);
    replace(session.txtContatoreAccessi, {"", "false", missing_setting, "falso", "Falso"}, "1");
    ReadTextSetting(program, session.txtDatabaseRoute);
    replace(session.txtDatabaseRoute, {"", missing_setting, "false", "Falso"}, default_database(program));
    ReadTextSetting(program, session.txtProfessione);
}

void read_backup_settings(Program& program, SessionFields& session) {
    ReadValueSetting(program, session.CheckBoxBackup);
    ReadValueSetting(program, session.CheckEscludiRivalsaImponibile);
    ReadTextSetting(program, session.TxtDestinazioneBackup);
    replace(session.TxtDestinazioneBackup, {"", missing_setting}, default_backup(program));
}

void ask_name_at_first_run(Program& program, const SessionFields& session) {
    if (leading_number(session.txtContatoreAccessi.text()) != 1) return;
    program.form<frmRegister>().show_modal();
}

void back_up(Program& program, SessionFields& session) {
    if (!session.CheckBoxBackup.checked() || EseguiBackupAutomatico(program)) return;
    // It is the route of the database that goes back to its default, not the place of the backup: after a
    // failed copy the next session starts on the default database.
    session.txtDatabaseRoute.set_text(default_database(program));
    SaveTextSetting(program, session.txtDatabaseRoute);
}

template <typename FormType>
void unload_if_loaded(Program& program, UnloadReason reason) {
    if (FormType* form = program.loaded<FormType>()) form->unload(reason);
}

template <typename... FormTypes>
void unload_in_order(Program& program, UnloadReason reason) {
    (unload_if_loaded<FormTypes>(program, reason), ...);
}

} // namespace

void start_program(Program& program) { program.form<frmSplash>().show(); }

void load_session(Program& program) {
    MDIForm1& main = program.form<MDIForm1>();
    main.StatusBar2.set_panel(1, "Tarvello " + version_text());
    main.set_size(14000, 10080);
    if (auto* splash = program.loaded<frmSplash>()) splash->unload();
    LeggiNomeIntestatario(program);
    ControllaAggiornamenti(program);
    skip_failures([&] { read_settings(program, main.session); },
                  [&] { ask_name_at_first_run(program, main.session); }, [&] { ApriDatabase(program); },
                  [&] { read_backup_settings(program, main.session); });
    main.session.loaded = true;
}

void close_session(Program& program, UnloadReason reason) {
    SessionFields& session = program.session();
    const bool desktop_ends = reason == UnloadReason::shut_down;
    skip_failures([&] { UnloadAllForms(program, desktop_ends ? reason : UnloadReason::main_window); });
    // The user wanted it saved, and it could not be: the closing goes on all the same.
    program.keep_drafts();
    for (TextBox* field : {&session.txtDatabaseRoute, &session.txtProfessione, &session.txt_IVA_default,
                           &session.txt_Ritenuta_default, &session.txt_RitenutaSu_default,
                           &session.txt_RIVALSA_default, &session.txtPercorsoLogo}) {
        skip_failures([&] { SaveTextSetting(program, *field); });
    }
    skip_failures(
        [&] {
            const auto sessions = to_int16(leading_number(session.txtContatoreAccessi.text()) + 1);
            session.txtContatoreAccessi.set_text(std::to_string(sessions));
        },
        [&] { SaveTextSetting(program, session.txtContatoreAccessi); }, [&] { ChiudiDatabase(program); },
        [&] { SaveValueSetting(program, session.CheckEscludiRivalsaImponibile); },
        [&] { back_up(program, session); });
}

void LeggiNomeIntestatario(Program& program) {
    frmRegister& form = program.form<frmRegister>();
    ReadTextSetting(program, form.Text1);
    program.NomeIntestatario = form.Text1.text();
}

void UnloadAllForms(Program& program, UnloadReason reason) {
    unload_in_order<frmClienti, frmTarvello, frmIntestazioneFatture, frmAutore, frmAbout,
                    frmArticoloEsenzione, frmCalcolaCF, frmInfoModelli, frmGestioneDatabase,
                    frmRisultatiRicercaClienti, frmRisultatiRicercaFatture, frmRipristinaBackup,
                    frmNuovoArchivio, frmRegister, frmImpostazioni, frmHelp>(program, reason);
}

void end_with_desktop(Program& program) {
    program.platform().windows.stop_waiting();
    MDIForm1* const main = program.loaded<MDIForm1>();
    if (main && main->session.loaded) {
        main->unload(UnloadReason::shut_down);
    } else {
        program.platform().windows.quit();
    }
}

} // namespace tarvello
