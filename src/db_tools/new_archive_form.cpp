#include "db_tools/new_archive_form.h"

#include "db_tools/copy_file.h"
#include "program/program.h"
#include "store/archive.h"
#include "text/letter_case.h"

namespace tarvello {

frmNuovoArchivio::frmNuovoArchivio(Program& program) : Form(program, "frmNuovoArchivio"), program_(program) {
    set_caption("Nuovo archivio");
    FrameFormato.set_caption("Formato");
    OptionFormato[own_format].set_caption("Tarvello (consigliato)");
    OptionFormato[access_format].set_caption("Access 2000-2003");
    OptionFormato[own_format].set_selected(true);
    LabelFormato.set_caption(
        "Il formato di Access serve a chi apre lo stesso file anche con altri programmi.");
    const bool connected = program.database().dbConnection.is_open();
    CheckDatiAttuali.set_caption("Con i dati attuali");
    CheckDatiAttuali.set_checked(connected);
    CheckDatiAttuali.set_enabled(connected);
    LabelFile.set_caption("File:");
    cmdSfoglia.set_caption("Sfoglia");
    cmdSfoglia.on_click = [this] {
        if (const auto file =
                program_.platform().dialogs.save_file({"Nuovo archivio", {{"Archivi (*.mdb)", "*.mdb"}}}))
            txtFile.set_text(*file);
    };
    cmdCrea.set_caption("Crea");
    cmdCrea.on_click = [this] { CreaArchivio(); };
    cmdAnnulla.set_caption("Annulla");
    cmdAnnulla.on_click = [this] { unload(); };
}

std::string frmNuovoArchivio::path() const {
    const char separator = program_.platform().separator;
    std::string path = trim(txtFile.text());
    const std::size_t folder = path.rfind(separator);
    if (folder == std::string::npos) path = program_.in_program_directory(path);
    if (path.find('.', path.rfind(separator)) == std::string::npos) path += ".mdb";
    return path;
}

void frmNuovoArchivio::CreaArchivio() {
    if (trim(txtFile.text()).empty()) {
        program_.message("Indicare il nome del nuovo archivio.", BoxIcon::exclamation);
        move_focus(&txtFile);
        return;
    }
    const std::string made = path();
    if (!make(made)) return;
    if (made_) *made_ = made;
    unload();
}

bool frmNuovoArchivio::make(const std::string& path) {
    const auto format =
        OptionFormato[access_format].selected() ? store::ArchiveFormat::access : store::ArchiveFormat::sqlite;
    std::vector<std::string> left_out;
    const auto step = [&](const std::string& target, const CopyProgress& progress) {
        if (!CheckDatiAttuali.checked()) {
            store::make_archive(target, format, program_.regional());
            return true;
        }
        const auto carried = store::carry_over(program_.database().dbConnection.engine(), target, format,
                                               program_.regional(), [&](std::int64_t done, std::int64_t all) {
                                                   return progress(static_cast<std::uint64_t>(done),
                                                                   static_cast<std::uint64_t>(all));
                                               });
        if (carried) left_out = *carried;
        return carried.has_value();
    };
    if (run_copy(program_.platform(), "", path, false, true, step) != CopyOutcome::made) return false;
    if (left_out.empty()) return true;
    std::string names;
    for (const std::string& column : left_out) names += "\n" + column;
    program_.message("Il nuovo archivio non contiene queste colonne, che non sono di Tarvello e tengono "
                     "immagini o altri oggetti:" +
                         names + "\nNell'archivio attuale ci sono ancora.",
                     BoxIcon::exclamation);
    return true;
}

} // namespace tarvello
