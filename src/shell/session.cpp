#include "shell/session.h"

#include "db_tools/backup_restore.h"
#include "failure.h"
#include "shell/main_window.h"
#include "shell/program.h"
#include "shell/register_form.h"
#include "shell/settings.h"
#include "shell/splash.h"
#include "shell/version.h"
#include "text/numbers.h"
#include "update/update_reminder.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tarvello {

namespace {

const std::string default_database = "tarvello.mdb";
const std::string default_backup = "tarvello.bak";

/// Gives a field its default if it holds one of these texts. The lists of texts that count as missing differ
/// from setting to setting.
void replace(TextBox& field, std::initializer_list<std::string_view> missing, const std::string& value) {
    if (std::find(missing.begin(), missing.end(), field.text()) != missing.end()) field.set_text(value);
}

void read_settings(Program& program, MDIForm1& main) {
    for (TextBox* field : {&main.txtPercorsoLogo, &main.txt_IVA_default, &main.txt_Ritenuta_default,
                           &main.txt_RitenutaSu_default, &main.txt_RIVALSA_default}) {
        ReadTextSetting(program, *field);
    }
    for (TextBox* field : {&main.txtPercorsoLogo, &main.txt_IVA_default, &main.txt_RitenutaSu_default,
                           &main.txt_Ritenuta_default, &main.txt_RIVALSA_default}) {
        replace(*field, {"False"}, "");
    }
    ReadTextSetting(program, main.txtModelloReport);
    replace(main.txtModelloReport, {"", "false", "False", "falso", "Falso"}, "1");
    ReadTextSetting(program, main.txtContatoreAccessi);
    replace(main.txtContatoreAccessi, {"", "false", "False", "falso", "Falso"}, "1");
    ReadTextSetting(program, main.txtDatabaseRoute);
    replace(main.txtDatabaseRoute, {"", "False", "false", "Falso"},
            program.in_program_directory(default_database));
    ReadTextSetting(program, main.txtProfessione);
}

void read_backup_settings(Program& program, MDIForm1& main) {
    ReadValueSetting(program, main.CheckBoxBackup);
    ReadValueSetting(program, main.CheckEscludiRivalsaImponibile);
    ReadTextSetting(program, main.TxtDestinazioneBackup);
    replace(main.TxtDestinazioneBackup, {"", "False"}, program.in_program_directory(default_backup));
}

void ask_name_at_first_run(Program& program, const MDIForm1& main) {
    if (leading_number(main.txtContatoreAccessi.text()) != 1) return;
    program.form<frmRegister>().show_modal();
}

void back_up(Program& program, MDIForm1& main) {
    if (!main.CheckBoxBackup.checked() || EseguiBackupAutomatico(program)) return;
    // It is the route of the database that goes back to its default, not the place of the backup: after a
    // failed copy the next session starts on the default database.
    main.txtDatabaseRoute.set_text(program.in_program_directory(default_database));
    SaveTextSetting(program, main.txtDatabaseRoute);
}

} // namespace

void start_program(Program& program) { program.form<frmSplash>().show(); }

void load_session(Program& program) {
    MDIForm1& main = program.main_window();
    main.StatusBar2.set_panel(1, "Tarvello " + version_text());
    main.set_size(14000, 10080);
    if (Form* splash = program.loaded("frmSplash")) splash->unload();
    LeggiNomeIntestatario(program);
    ControllaAggiornamenti(program);
    skip_failures([&] { read_settings(program, main); }, [&] { ask_name_at_first_run(program, main); },
                  [&] { ApriDatabase(program); }, [&] { read_backup_settings(program, main); });
    main.session_loaded = true;
}

void close_session(Program& program, UnloadReason reason) {
    MDIForm1& main = program.main_window();
    const bool desktop_ends = reason == UnloadReason::shut_down;
    skip_failures([&] { UnloadAllForms(program, desktop_ends ? reason : UnloadReason::code); });
    for (TextBox* field :
         {&main.txtDatabaseRoute, &main.txtProfessione, &main.txt_IVA_default, &main.txt_Ritenuta_default,
          &main.txt_RitenutaSu_default, &main.txt_RIVALSA_default, &main.txtPercorsoLogo}) {
        skip_failures([&] { SaveTextSetting(program, *field); });
    }
    skip_failures(
        [&] {
            const auto sessions = to_int16(leading_number(main.txtContatoreAccessi.text()) + 1);
            main.txtContatoreAccessi.set_text(std::to_string(sessions));
        },
        [&] { SaveTextSetting(program, main.txtContatoreAccessi); }, [&] { ChiudiDatabase(program); },
        [&] { SaveValueSetting(program, main.CheckEscludiRivalsaImponibile); },
        [&] { back_up(program, main); });
}

bool ApriDatabase(Program& program) {
    MDIForm1& main = program.main_window();
    bool opened = false;
    skip_failures([&] {
        program.database().dbConnection.open(main.txtDatabaseRoute.text());
        opened = true;
    });
    main.mnuChiudiDatabase.set_enabled(opened);
    return opened;
}

void ChiudiDatabase(Program& program) {
    Database& database = program.database();
    skip_failures([&] { database.rsFatture.close(); }, [&] { database.rsClienti.close(); },
                  [&] { database.rsIntestazione.close(); }, [&] { database.rsRiserva.close(); },
                  [&] { database.dbConnection.close(); });
}

void LeggiNomeIntestatario(Program& program) {
    frmRegister& form = program.form<frmRegister>();
    ReadTextSetting(program, form.Text1);
    program.NomeIntestatario = form.Text1.text();
}

void UnloadAllForms(Program& program, UnloadReason reason) {
    for (const char* name : {"frmClienti", "frmTarvello", "frmIntestazioneFatture", "frmAutore", "frmAbout",
                             "frmArticoloEsenzione", "frmCalcolaCF", "frmInfoModelli", "frmGestioneDatabase",
                             "frmRisultatiRicercaClienti", "frmRisultatiRicercaFatture",
                             "frmRipristinaBackup", "frmRegister", "frmImpostazioni", "frmHelp"}) {
        if (Form* form = program.loaded(name)) form->unload(reason);
    }
}

void end_with_desktop(Program& program) {
    if (program.loaded("MDIForm1") && program.main_window().session_loaded) {
        program.main_window().unload(UnloadReason::shut_down);
    } else {
        program.platform().windows.quit();
    }
}

} // namespace tarvello
