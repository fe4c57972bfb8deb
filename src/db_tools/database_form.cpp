#include "db_tools/database_form.h"

#include "program/program.h"

namespace tarvello {

FileDialog database_dialog() { return {"Apri Database", {{"Microsoft Access files (*.mdb)", "*.mdb"}}}; }

frmGestioneDatabase::frmGestioneDatabase(Program& program)
    : Form(program, "frmGestioneDatabase"), program_(program) {
    set_caption("Strumenti");
    for (CommandButton& browse : Command2) browse.set_caption("Sfoglia");
    cmdClose.set_caption("Chiudi");
    cmdClose.on_click = [this] { close_form(); };
    set_keys(nullptr, &cmdClose);
    prepare_choice();
    prepare_backup();
    prepare_restore();
    prepare_import_export();
    order_tabs({&Text1,
                &Command1,
                &cmdApriDB,
                &cmdNuovoArchivio,
                &CheckBoxBackup,
                &OptionDestinazioneDefault,
                &OptionDestinazioneBackup,
                &TxtDestinazioneBackup,
                &Command2[browse_backup],
                &cmdSaveBackupSettings,
                &CheckBoxRipristinaBackup,
                &txtLocalFolder,
                &Dir1,
                &ListView1,
                &txtSelectedFile,
                &Command5,
                &File1,
                &Text2,
                &CheckBoxImportaEsporta,
                &txtOrigine,
                &Command2[browse_source],
                &txtDest,
                &Command2[browse_destination],
                &cmdImpExp,
                &cmdClose});
}

void frmGestioneDatabase::on_load() {
    show_current_database();
    read_backup_settings();
    CambiaCartella(program_.platform().program_directory);
}

void frmGestioneDatabase::close_form() {
    if (cmdSaveBackupSettings.enabled()) {
        const Answer answer = program_.ask_to_save(
            "Le impostazioni di backup sono state modificate\nSalvare le nuove impostazioni?");
        if (answer == Answer::cancel) return;
        if (answer == Answer::yes) SalvaImpostazioniBackup();
    }
    unload();
}

void frmGestioneDatabase::empty_prompt_on_focus(TextBox& field, std::string_view prompt) {
    field.on_got_focus = [&field, prompt] {
        if (field.text() == prompt) field.clear();
    };
}

void frmGestioneDatabase::report_copy(const std::string& headline, const std::string& source,
                                      const std::string& destination) {
    program_.message(headline + "\nOrigine Dati:      " + source + "\nDestinazione:    " + destination,
                     BoxIcon::information);
}

} // namespace tarvello
