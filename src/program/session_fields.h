#pragma once

#include "platform/bars.h"
#include "platform/controls.h"

#include <string>

namespace tarvello {

class Program;

/// The holder fields, in which all settings live while the program runs, on a hidden panel of the main
/// window. A field's setting is found under the field's own name.
class SessionFields {
public:
    /// The program reaches these fields as long as they live.
    SessionFields(Program& program, Form& main_window);
    ~SessionFields();
    SessionFields(const SessionFields&) = delete;
    SessionFields& operator=(const SessionFields&) = delete;

    /// Enabled means that a database is connected: the one such flag of the program.
    MenuItem mnuChiudiDatabase;

    Frame FrameImpostazioni;
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

    /// The fields have been filled: from now on a closing may write them.
    bool loaded = false;

    /// Makes this the route of the database. Who shows the route shows it anew, also if it is the same as
    /// before.
    void take_route(const std::string& route);

private:
    Program& program_;
};

} // namespace tarvello
