#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"
#include "platform/platform.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello {

class Program;

/// The dialog in which a database file is chosen.
FileDialog database_dialog();

/// The tools of the database: which file is in use, automatic backup, restoring a backup, import and export.
/// Four pages; the routines of each lie in a file of its own.
class frmGestioneDatabase : public Form {
public:
    // The buttons Command2, which browse for a file.
    static constexpr std::size_t browse_source = 0;
    static constexpr std::size_t browse_destination = 1;
    static constexpr std::size_t browse_backup = 2;
    // The options Option1: which database to open.
    static constexpr std::size_t default_choice = 0;
    static constexpr std::size_t other_choice = 1;

    explicit frmGestioneDatabase(Program& program);

    TabControl SSTab1{*this, "SSTab1"};

    // The database in use: database_choice.cpp.
    Label Label4{*this, "Label4"};
    Label Label2{*this, "Label2"};
    Label Label1{*this, "Label1"};
    TextBox txtPercorsoDatabase{*this, "txtPercorsoDatabase"};
    Frame FrameDatabase{*this, "FrameDatabase"};
    ControlArray<OptionButton, 2> Option1{FrameDatabase, "Option1"};
    TextBox Text1{*this, "Text1"};
    CommandButton Command1{*this, "Command1"};
    CommandButton cmdApriDB{*this, "cmdApriDB"};
    Label LabelNuovoArchivio{*this, "LabelNuovoArchivio"};
    CommandButton cmdNuovoArchivio{*this, "cmdNuovoArchivio"};

    // Automatic backup: backup_page.cpp.
    CheckBox CheckBoxBackup{*this, "CheckBoxBackup"};
    Label Label6{*this, "Label6"};
    Frame FrameDestinazione{*this, "FrameDestinazione"};
    OptionButton OptionDestinazioneDefault{FrameDestinazione, "OptionDestinazioneDefault"};
    OptionButton OptionDestinazioneBackup{FrameDestinazione, "OptionDestinazioneBackup"};
    Label Label5{*this, "Label5"};
    TextBox TxtDestinazioneBackup{*this, "TxtDestinazioneBackup"};
    CommandButton cmdSaveBackupSettings{*this, "cmdSaveBackupSettings"};

    // Restoring: restore_page.cpp.
    Label Label12{*this, "Label12"};
    Label Label13{*this, "Label13"};
    CheckBox CheckBoxRipristinaBackup{*this, "CheckBoxRipristinaBackup"};
    Frame FrameRipristino{*this, "FrameRipristino"};
    /// The folders down to the chosen one, and those inside it.
    ListBox Dir1{FrameRipristino, "Dir1"};
    /// The backups of the folder; not shown, the list beside it is.
    ListBox File1{FrameRipristino, "File1"};
    ListView ListView1{FrameRipristino, "ListView1"};
    TextBox txtLocalFolder{FrameRipristino, "txtLocalFolder"};
    TextBox txtSelectedFile{FrameRipristino, "txtSelectedFile"};
    /// The name that the restored file is to have.
    TextBox Text2{FrameRipristino, "Text2"};
    CommandButton Command5{FrameRipristino, "Command5"};

    // Import and export: import_export_page.cpp.
    CheckBox CheckBoxImportaEsporta{*this, "CheckBoxImportaEsporta"};
    Label Label7{*this, "Label7"};
    TextBox txtOrigine{*this, "txtOrigine"};
    Label Label8{*this, "Label8"};
    TextBox txtDest{*this, "txtDest"};
    CommandButton cmdImpExp{*this, "cmdImpExp"};

    ControlArray<CommandButton, 3> Command2{*this, "Command2"};
    CommandButton cmdClose{*this, "cmdClose"};

protected:
    void on_load() override;

private:
    void prepare_choice();
    void show_current_database();
    void ApriDatabaseScelto();
    void open_route(const std::string& route);
    void CreaNuovoArchivio();

    void prepare_backup();
    void read_backup_settings();
    void enable_backup(bool enabled);
    /// The file that a typed destination stands for: the list of backups to restore shows files of that
    /// extension only.
    std::string backup_file(const std::string& destination) const;
    /// @return false if there was nothing to save under
    bool SalvaImpostazioniBackup();

    void prepare_restore();
    void CambiaCartella(const std::string& folder);
    void show_folders();
    void ElencaBackup();
    void open_selected_row();
    void RipristinaBackup();
    /// Says what a restore has come to that brought no archive, and opens the former one if the user likes.
    void offer_former(const std::string& truth, const std::string& former);

    void prepare_import_export();
    void enable_import_export(bool enabled);
    void EseguiCopia();

    void close_form();
    /// Empties a field that still shows its prompt when the user reaches it.
    static void empty_prompt_on_focus(TextBox& field, std::string_view prompt);
    /// Tells of a copy that was made.
    void report_copy(const std::string& headline, const std::string& source, const std::string& destination);

    Program& program_;
    std::vector<std::string> folders_; // the path behind each item of Dir1
    std::string folder_;               // the chosen one
    std::string new_archive_;          // the one made last
};

} // namespace tarvello
