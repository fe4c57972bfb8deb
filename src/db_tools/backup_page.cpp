#include "db_tools/database_form.h"

#include "platform/file_names.h"
#include "program/folders.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "text/letter_case.h"

namespace tarvello {

void frmGestioneDatabase::prepare_backup() {
    CheckBoxBackup.set_caption("Attiva supporto per backup");
    Label6.set_caption("Disattivato");
    OptionDestinazioneDefault.set_caption("Default");
    OptionDestinazioneBackup.set_caption("Scegli destinazione");
    Label5.set_caption("Destinazione:");
    TxtDestinazioneBackup.set_text("Destinazione Backup");
    TxtDestinazioneBackup.set_locked(true);
    cmdSaveBackupSettings.set_caption("Salva");
    enable_backup(false);

    CheckBoxBackup.on_click = [this] {
        cmdSaveBackupSettings.set_enabled(true);
        program_.session().CheckBoxBackup.set_checked(CheckBoxBackup.checked());
        enable_backup(CheckBoxBackup.checked());
    };
    OptionDestinazioneDefault.on_click = [this] {
        TxtDestinazioneBackup.set_text(default_backup(program_));
        TxtDestinazioneBackup.set_locked(true);
        cmdSaveBackupSettings.set_enabled(true);
    };
    OptionDestinazioneBackup.on_click = [this] {
        TxtDestinazioneBackup.set_locked(false);
        TxtDestinazioneBackup.set_enabled(true);
        cmdSaveBackupSettings.set_enabled(true);
    };
    // Saving locks the field: another click opens it again.
    OptionDestinazioneBackup.on_click_again = OptionDestinazioneBackup.on_click;
    TxtDestinazioneBackup.on_change = [this] {
        program_.session().TxtDestinazioneBackup.set_text(TxtDestinazioneBackup.text());
        if (TxtDestinazioneBackup.text() == missing_setting) TxtDestinazioneBackup.clear();
        cmdSaveBackupSettings.set_enabled(true);
    };
    Command2[browse_backup].on_click = [this] {
        const FileDialog dialog{"Seleziona la destinazione del Backup", {{"Backup files (*.bak)", "*.bak"}}};
        if (const auto path = program_.platform().dialogs.save_file(dialog))
            TxtDestinazioneBackup.set_text(*path);
    };
    cmdSaveBackupSettings.on_click = [this] { SalvaImpostazioniBackup(); };
}

void frmGestioneDatabase::read_backup_settings() {
    ReadValueSetting(program_, CheckBoxBackup);
    ReadTextSetting(program_, TxtDestinazioneBackup);
    if (!TxtDestinazioneBackup.empty()) {
        const bool by_default = TxtDestinazioneBackup.text() == default_backup(program_);
        (by_default ? OptionDestinazioneDefault : OptionDestinazioneBackup).set_selected(true);
    }
    enable_backup(CheckBoxBackup.checked());
    cmdSaveBackupSettings.set_enabled(false); // reading is no change of the user's
}

std::string frmGestioneDatabase::backup_file(const std::string& destination) const {
    Platform& platform = program_.platform();
    if (platform.files.folder_exists(destination)) {
        const bool ended = destination.ends_with(platform.separator);
        return (ended ? destination : destination + platform.separator) + file_name::backup;
    }
    return upper_case(destination).ends_with(".BAK") ? destination : destination + ".bak";
}

void frmGestioneDatabase::enable_backup(bool enabled) {
    OptionDestinazioneDefault.set_enabled(enabled);
    OptionDestinazioneBackup.set_enabled(enabled);
    TxtDestinazioneBackup.set_enabled(enabled);
    Command2[browse_backup].set_enabled(enabled);
    Label5.set_enabled(enabled);
    Label6.set_caption(enabled ? "Attivo" : "Disattivato");
}

bool frmGestioneDatabase::SalvaImpostazioniBackup() {
    if (TxtDestinazioneBackup.empty()) {
        program_.message("Inserire il percorso di destinazione", BoxIcon::exclamation);
        TxtDestinazioneBackup.set_focus();
        return false;
    }
    TxtDestinazioneBackup.set_text(backup_file(TxtDestinazioneBackup.text()));
    SessionFields& session = program_.session();
    SaveValueSetting(program_, session.CheckBoxBackup);
    SaveTextSetting(program_, session.TxtDestinazioneBackup);
    ReadTextSetting(program_, TxtDestinazioneBackup);
    program_.message("Impostazioni di backup salvate.", BoxIcon::information);
    cmdSaveBackupSettings.set_enabled(false);
    TxtDestinazioneBackup.set_locked(true);
    return true;
}

} // namespace tarvello
