#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace tarvello {

class Program;

/// The main window: menus, side panel, status bars, and the holder fields, in which all settings live while
/// the program runs. It opens the other windows and follows whether a database is open.
class MDIForm1 : public Form {
public:
    explicit MDIForm1(Program& program);

    MenuItem mnuFile{*this, "mnuFile"};
    MenuItem mnuApri{*this, "mnuApri"};
    /// Enabled means that a database is connected: the one such flag of the program.
    MenuItem mnuChiudiDatabase{*this, "mnuChiudiDatabase"};
    MenuItem CercaFile{*this, "CercaFile"};
    MenuItem mnuFileExit{*this, "mnuFileExit"};
    MenuItem Visualizza{*this, "Visualizza"};
    MenuItem mnuAnagrafica_Clienti{*this, "mnuAnagrafica_Clienti"};
    MenuItem mnuFatture{*this, "mnuFatture"};
    MenuItem IntestaFatture{*this, "IntestaFatture"};
    MenuItem Impostazioni{*this, "Impostazioni"};
    MenuItem mnuGestioneDatabase{*this, "mnuGestioneDatabase"};
    MenuItem mnuScaricaAggiornamenti{*this, "mnuScaricaAggiornamenti"};
    MenuItem Help{*this, "Help"};
    MenuItem Autore{*this, "Autore"};
    MenuItem AboutTarvello{*this, "AboutTarvello"};

    /// The hidden panel of the holder fields. A field's setting is found under the field's own name.
    Frame FrameImpostazioni{*this, "FrameImpostazioni"};
    TextBox txtDatabaseRoute{FrameImpostazioni, "txtDatabaseRoute"};
    TextBox txtProfessione{FrameImpostazioni, "txtProfessione"};
    TextBox txt_IVA_default{FrameImpostazioni, "txt_IVA_default"};
    TextBox txt_Ritenuta_default{FrameImpostazioni, "txt_Ritenuta_default"};
    TextBox txt_RitenutaSu_default{FrameImpostazioni, "txt_RitenutaSu_default"};
    TextBox txt_RIVALSA_default{FrameImpostazioni, "txt_RIVALSA_default"};
    TextBox txtPercorsoLogo{FrameImpostazioni, "txtPercorsoLogo"};
    TextBox txtContatoreAccessi{FrameImpostazioni, "txtContatoreAccessi"};
    TextBox txtModelloReport{FrameImpostazioni, "txtModelloReport"};
    TextBox TxtDestinazioneBackup{FrameImpostazioni, "TxtDestinazioneBackup"};
    CheckBox CheckBoxBackup{FrameImpostazioni, "CheckBoxBackup"};
    CheckBox CheckEscludiRivalsaImponibile{FrameImpostazioni, "CheckEscludiRivalsaImponibile"};
    TextBox txtDataUltimoAggiornamento{FrameImpostazioni, "txtDataUltimoAggiornamento"};
    TextBox txtGiorniTraCuiAvvisare{FrameImpostazioni, "txtGiorniTraCuiAvvisare"};

private:
    Program& program_;
};

} // namespace tarvello
