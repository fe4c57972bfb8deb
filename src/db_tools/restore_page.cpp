#include "db_tools/copy_database.h"
#include "db_tools/database_form.h"
#include "db_tools/file_info.h"
#include "db_tools/restore_name_form.h"
#include "failure.h"
#include "program/open_database.h"
#include "program/program.h"
#include "program/session_fields.h"

#include <array>

namespace tarvello {
namespace {

const char* const parent_folder = "..";
const char* const folder_mark = "< Directory >";

/// The folder that holds a folder; the root holds itself.
std::string parent_of(const std::string& folder, char separator) {
    const auto last = folder.rfind(separator);
    if (last == std::string::npos) return folder;
    return last == 0 ? folder.substr(0, 1) : folder.substr(0, last);
}

std::string inside(const std::string& folder, const std::string& name, char separator) {
    return folder.ends_with(separator) ? folder + name : folder + separator + name;
}

/// What a restore that did not bring its archive has left; empty if it brought it.
std::string what_is_true(Program& program, const DatabaseCopy& copy, bool opened) {
    const std::string file = "il file\n" + copy.target + "\n";
    const std::string untouched = "Il ripristino non è stato fatto: " + file + "non è stato toccato";
    const bool there = program.platform().files.exists(copy.target);
    switch (copy.outcome) {
    case CopyOutcome::made:
        return opened ? "" : "Il file ripristinato non si apre come archivio. " + copy.unsound;
    case CopyOutcome::given_up:
        if (!there) return "Il ripristino è stato interrotto: " + file + "non è stato creato.";
        return untouched + (opened ? ", ed è ora l'archivio aperto." : ".");
    case CopyOutcome::failed:
        if (!there) return "Il ripristino non è stato fatto e nessun archivio è aperto.";
        return untouched + ". Nessun archivio è aperto.";
    case CopyOutcome::spoilt:
        break;
    }
    return "Il ripristino non è riuscito e " + file + "non è più integro. Nessun archivio è aperto.";
}

} // namespace

void frmGestioneDatabase::prepare_restore() {
    Label12.set_caption("Attenzione!");
    Label13.set_caption(
        "Il ripristino di una copia di back-up causa la totale perdita dei dati attualmente in uso. "
        "Utilizzare il ripristino solo se siete certi che sia necessario.");
    CheckBoxRipristinaBackup.set_caption("Ripristina Copia di Backup");
    FrameRipristino.set_caption("Ripristino Copia di Backup");
    Command5.set_caption("Ripristina");
    ListView1.add_column({"Full Path", "", false, 4200});
    ListView1.add_column({"Dimensione", "", true, 1500});
    File1.set_visible(false);
    Text2.set_visible(false);
    txtLocalFolder.set_locked(true);
    txtSelectedFile.set_locked(true);
    Dir1.set_enabled(false);
    Command5.set_enabled(false);

    CheckBoxRipristinaBackup.on_click = [this] {
        const bool enabled = CheckBoxRipristinaBackup.checked();
        Dir1.set_enabled(enabled);
        Command5.set_enabled(enabled);
        if (enabled) {
            ElencaBackup();
        } else {
            ListView1.clear();
        }
    };
    Dir1.on_double_click = [this] {
        if (Dir1.list_index() >= 0) CambiaCartella(folders_.at(static_cast<std::size_t>(Dir1.list_index())));
    };
    File1.on_click = [this] { Command5.set_enabled(true); };
    ListView1.on_item_click = [this] {
        txtSelectedFile.set_text(std::string(ListView1.rows().cell(*ListView1.selected(), 0)));
    };
    ListView1.on_double_click = [this] { open_selected_row(); };
    Command5.on_click = [this] { RipristinaBackup(); };
}

void frmGestioneDatabase::CambiaCartella(const std::string& folder) {
    folder_ = folder;
    txtLocalFolder.set_text(folder);
    File1.set_items(program_.platform().files.files_in(folder, "*.bak"));
    show_folders();
    if (CheckBoxRipristinaBackup.checked()) ElencaBackup();
}

void frmGestioneDatabase::show_folders() {
    Platform& platform = program_.platform();
    folders_.clear();
    std::vector<std::string> above;
    for (std::string folder = folder_; above.empty() || above.back() != folder;
         folder = parent_of(folder, platform.separator)) {
        above.push_back(folder);
    }
    std::vector<std::string> items;
    const auto add = [&](const std::string& path, const std::string& name, std::size_t depth) {
        folders_.push_back(path);
        items.push_back(std::string(3 * depth, ' ') + name);
    };
    for (auto folder = above.rbegin(); folder != above.rend(); ++folder) {
        const std::string name = folder->substr(folder->rfind(platform.separator) + 1);
        add(*folder, name.empty() ? *folder : name, folders_.size());
    }
    const std::size_t depth = above.size();
    for (const std::string& name : platform.files.folders_in(folder_)) {
        add(inside(folder_, name, platform.separator), name, depth);
    }
    Dir1.set_items(std::move(items));
    Dir1.set_list_index(static_cast<int>(depth) - 1);
}

void frmGestioneDatabase::ElencaBackup() {
    Platform& platform = program_.platform();
    ListView1.clear();
    ListRows& rows = ListView1.fill();
    const auto add = [&rows](const std::string& path, const std::string& size) {
        rows.begin_row();
        rows.add_cell(path);
        rows.add_cell(size);
    };
    add(parent_folder, folder_mark);
    for (const std::string& name : platform.files.folders_in(folder_)) {
        add(inside(folder_, name, platform.separator), folder_mark);
    }
    CFileInfo info(platform);
    for (const std::string& name : File1.items()) {
        info.set_FullPathName(inside(txtLocalFolder.text(), name, platform.separator));
        add(info.FullPathName(), std::to_string((std::uint64_t{info.FileSizeHigh} << 32) | info.FileSize));
    }
    ListView1.rows_added();
}

void frmGestioneDatabase::open_selected_row() {
    const auto row = ListView1.selected();
    if (!row || ListView1.rows().cell(*row, 1) != folder_mark) return;
    const std::string path(ListView1.rows().cell(*row, 0));
    CambiaCartella(path == parent_folder ? parent_of(folder_, program_.platform().separator) : path);
}

void frmGestioneDatabase::RipristinaBackup() {
    auto& name_form = program_.form<frmRipristinaBackup>();
    name_form.Label1.set_caption(
        "Indicare il nome che si vuole dare al database (es. 'tarvello'). Lasciare la "
        "casella vuota e premera 'Annulla' per annullare l'operazione.");
    name_form.hand_over_to(share(Text2));
    name_form.show_modal();
    if (Text2.empty()) return;
    if (!program_.confirm("Si conferma l'operazione di ripristino?")) return;

    const std::string source = txtSelectedFile.text();
    const std::string destination = program_.in_program_directory(Text2.text());
    const std::string former = program_.session().txtDatabaseRoute.text();
    ChiudiDatabase(program_);
    const DatabaseCopy copy = CopiaDatabase(program_.platform(), source, destination);
    bool opened = false;
    if (copy.outcome == CopyOutcome::made || copy.outcome == CopyOutcome::given_up) {
        report_copy("Ripristino file di backup completato.", source, destination);
        program_.session().take_route(destination);
        opened = ApriDatabase(program_);
        txtPercorsoDatabase.set_text(destination);
    }
    const std::string truth = what_is_true(program_, copy, opened);
    if (truth.empty()) return;
    const bool untouched = former != copy.target || copy.outcome == CopyOutcome::failed;
    if (untouched) {
        offer_former(truth, former);
    } else {
        program_.message(truth, BoxIcon::information);
    }
}

void frmGestioneDatabase::offer_former(const std::string& truth, const std::string& former) {
    const MessageBox question{truth + "\n\nL'archivio di prima è intatto. Riaprirlo?\n" + former,
                              program_title, BoxIcon::question, BoxButtons::yes_no, 1};
    if (program_.platform().boxes.show(question) != Answer::yes) return;
    program_.session().take_route(former);
    txtPercorsoDatabase.set_text(former);
    ChiudiDatabase(program_);
    if (ApriDatabase(program_)) return;
    program_.message("L'archivio\n" + former + "\nnon si apre.", BoxIcon::critical);
}

} // namespace tarvello
