#include "documents/templates_page.h"

#include "db_tools/copy_file.h"
#include "documents/letterhead.h"
#include "documents/template_in_force.h"
#include "documents/template_info_form.h"
#include "failure.h"
#include "platform/file_names.h"
#include "program/program.h"

namespace tarvello {
namespace {

/// Disables a button until the end of the scope, whatever happens.
class Disabled {
public:
    explicit Disabled(Control& control) : control_(control) { control_.set_enabled(false); }
    ~Disabled() { control_.set_enabled(true); }
    Disabled(const Disabled&) = delete;
    Disabled& operator=(const Disabled&) = delete;

private:
    Control& control_;
};

} // namespace

TemplatesPage::TemplatesPage(Program& program, Form& form) : FrameWord(form, "FrameWord"), program_(program) {
    FrameWord.set_caption("Impostazioni file di Microsoft Word");
    Option1.set_caption("Rich Text Format (*.rtf)");
    Option2.set_caption("Word (*.doc)");
    txtModello.set_locked(true);
    txtModelloAttuale.set_locked(true);
    Command5.set_caption("Salva");
    Command5.set_enabled(false);
    cmdAnteprimaModelli.set_caption("Anteprima");
    cmdNuovoModello.set_caption("Nuovo Modello");
    ImportaModello.set_caption("Importa Modello");
    cmdInfoModelli.set_caption("Informazioni sui modelli");

    Option1.on_click = [this] { or_show_failure(program_, [this] { list_templates("*.rtf"); }); };
    Option2.on_click = [this] { or_show_failure(program_, [this] { list_templates("*.doc"); }); };
    File1.on_click = [this] {
        txtModello.set_text(File1.text());
        Command5.set_enabled(true);
    };
    Command5.on_click = [this] { save_template(); };
    cmdAnteprimaModelli.on_click = [this] { preview_template(); };
    cmdInfoModelli.on_click = [this] { program_.form<frmInfoModelli>().show_modal(); };
    cmdNuovoModello.on_click = [this] { start_template(); };
    ImportaModello.on_click = [this] { import_template(); };
}

std::string TemplatesPage::in_templates(const std::string& name) const {
    return templates_folder(program_) + program_.platform().separator + name;
}

std::string TemplatesPage::working_copy(const std::string& name) {
    const std::string folder = program_.in_program_directory(file_name::working_copies);
    program_.platform().files.make_folder(folder);
    return folder + program_.platform().separator + name;
}

void TemplatesPage::list_templates(const std::string& pattern) {
    File1.set_items(program_.platform().files.files_in(existing_templates_folder(program_), pattern));
}

void TemplatesPage::save_template() {
    const std::string path = in_templates(txtModello.text());
    try {
        program_.platform().files.write(in_templates(print_conf), print_conf_of(path));
        program_.message("Impostazioni modello fattura per stampa su file salvate correttamente.",
                         BoxIcon::information);
        txtModelloAttuale.set_text(path);
        Command5.set_enabled(false);
    } catch (const Failure&) { // whatever it was, the user reads the same
        program_.message("Impossibile salvare le impostazioni.", BoxIcon::critical);
    }
}

void TemplatesPage::preview_template() {
    if (txtModello.empty()) {
        program_.message("Selezionare un modello dalla lista.", BoxIcon::information);
        return;
    }
    or_show_failure(program_, [this] {
        const Disabled busy(cmdAnteprimaModelli);
        const auto application = program_.platform().word_processor.start();
        application->open_read_only(in_templates(txtModello.text()));
        application->save_as(working_copy("anteprima"));
        application->show();
    });
}

void TemplatesPage::start_template() {
    or_show_failure(program_, [this] {
        const Disabled busy(cmdNuovoModello);
        const auto application = program_.platform().word_processor.start();
        application->open_read_only(in_templates("Standard.doc"));
        program_.message(
            "Per creare un nuovo modello modificare la fattura che verrà visualizzata e poi salvarlo col "
            "nome voluto nella cartella: " +
                templates_folder(program_) +
                "\n\nN.B.  Non omettere nessuna delle voci presenti nella fattura!",
            BoxIcon::information);
        application->save_as(working_copy("nuovo-modello"));
        application->show();
    });
}

void TemplatesPage::import_template() {
    const FileFilter filter = Option1.selected() ? FileFilter{"Rich Text Format files (*.rtf)", "*.rtf"}
                                                 : FileFilter{"Microsoft Word files (*.doc)", "*.doc"};
    const auto path = program_.platform().dialogs.open_file({"Importa copia dei dati", {filter}});
    if (!path) return;
    const std::string name = path->substr(path->rfind(program_.platform().separator) + 1);
    if (CopiaFile(program_.platform(), *path, in_templates(name), true, true)) {
        program_.message("Importazione modello completata.", BoxIcon::information);
    } else {
        program_.message("Errore nella copia del file.", BoxIcon::critical);
    }
}

void TemplatesPage::read_template_in_force() {
    // This reader looks in the program's own folder, one above the place where the file is written. So it
    // finds something only where the user has put a copy there.
    const std::string path =
        template_on_view(program_.platform().files.read(program_.in_program_directory(print_conf)));
    if (!path.empty()) txtModelloAttuale.set_text(path);
}

} // namespace tarvello
