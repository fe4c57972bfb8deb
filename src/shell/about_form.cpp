#include "shell/about_form.h"

#include "program/program.h"
#include "program/version.h"
#include "shell/help_form.h"
#include "store/sqlite/sqlite_version.h"

#include <array>
#include <string>

namespace tarvello {

frmAbout::frmAbout(Program& program) : Form(program, "frmAbout"), program_(program) {
    set_caption("Informazioni su Tarvello");
    Image1.set_picture("tarvello");
    lblTitle.set_caption(program_title);
    lblVersion.set_caption("Versione " + version_text());
    ListView1.add_column({"Componente", "name", false, 2700});
    ListView1.add_column({"Versione", "value", false, 5400});
    cmdCopia.set_caption("&Copia");
    cmdCopia.set_picture("copia");
    cmdCopia.set_tool_tip("Copia le informazioni negli appunti");
    cmdGuida.set_caption("&Guida");
    cmdGuida.set_tool_tip(guide_tip);
    cmdOK.set_caption("&OK");
    cmdCopia.on_click = [this] { copy(); };
    cmdGuida.on_click = [this] { show_guide(program_); };
    cmdOK.on_click = [this] { unload(); };
    set_keys(&cmdOK, &cmdOK);
}

void frmAbout::on_load() {
    ListView1.add_row(std::array{application_name, version_text()});
    ListView1.add_row(std::array{std::string("SQLite"), store::sqlite_version()});
    for (const SystemFact& fact : program_.platform().desktop.system_facts()) {
        ListView1.add_row(std::array{fact.name, fact.value});
    }
}

void frmAbout::copy() {
    std::string text;
    const ListRows& rows = ListView1.rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        text += std::string(rows.cell(row, 0)) + ": " + std::string(rows.cell(row, 1)) + "\n";
    }
    program_.platform().desktop.copy_to_clipboard(text);
}

} // namespace tarvello
