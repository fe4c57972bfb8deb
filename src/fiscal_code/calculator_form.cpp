#include "fiscal_code/calculator_form.h"

#include "fiscal_code/fiscal_code.h"
#include "platform/file_names.h"
#include "program/program.h"
#include "text/letter_case.h"
#include "text/utf8.h"

namespace tarvello {
namespace {

constexpr Color dark_red = Color::from_bgr(128);
constexpr Color dark_green = Color::from_bgr(0x008000);
const char* const unknown = "?";

} // namespace

frmCalcolaCF::frmCalcolaCF(Program& program) : Form(program, "frmCalcolaCF"), program_(program) {
    set_caption("Calcolo del codice fiscale");
    Frame1.set_caption("Calcola Codice Fiscale");
    cboSesso.set_list_only(true);
    txtComune.set_max_length(40);
    txtProvincia.set_enabled(false);
    txtCodice.set_enabled(false);
    txtCodiceFiscale.set_locked(true);
    txtCodiceFiscale.set_fore_color(colors::white);
    txtCodiceFiscale.set_back_color(dark_green);
    txtparam.set_visible(false);
    cmdElabora.set_caption("Elabora");
    cmdExit.set_caption("Chiudi");

    const auto enable = [this] { cmdElabora.set_enabled(true); };
    txtCognome.on_change = enable;
    txtNome.on_change = enable;
    txtComune.on_change = enable;
    cboSesso.on_change = enable;
    cboSesso.on_click = enable;
    // A new date alone does not enable the button.
    txtComune.on_key_up = [this] { telling_failures([this] { search_municipality(); }); };
    cmdElabora.on_click = [this] { compute(); };
    cmdExit.on_click = [this] { unload(); };
}

void frmCalcolaCF::on_load() {
    DTPicker1.set_date(program_.platform().clock.today());
    cboSesso.add_item("Maschio");
    cboSesso.add_item("Femmina");
    cboSesso.set_list_index(0);
    cmdElabora.set_enabled(false);
    telling_failures([this] {
        try {
            municipalities_.emplace(program_.in_program_directory(file_name::municipalities));
        } catch (const Failure& failure) {
            not_opened_ = failure; // every search fails in the same way
            throw;
        }
    });
}

void frmCalcolaCF::telling_failures(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        // The code can be worked out without municipalities, so the form stays open.
        program_.message("FasMsg: " + std::to_string(failure.number()) + " " + failure.description(),
                         BoxIcon::none);
    }
}

void frmCalcolaCF::search_municipality() {
    const std::string typed = trim(txtComune.text());
    // An emptied box is not searched, and keeps its colour.
    if (!typed.empty()) txtComune.set_fore_color(show_match(typed));
    txtComune.set_tag(typed);
}

std::optional<Color> frmCalcolaCF::show_match(const std::string& typed) {
    if (not_opened_) throw Failure(*not_opened_);
    const std::optional<Municipality> found = municipalities_->seek(typed);
    if (!found) return std::nullopt; // past the last name there is no message

    const std::size_t length = utf8::length(typed);
    if (upper_case(utf8::left(found->name, length)) == upper_case(typed)) {
        // Nothing is completed after a deletion, or it would undo it.
        if (length > utf8::length(txtComune.tag())) {
            txtComune.set_text(found->name);
            txtComune.select(length, utf8::length(found->name) - length);
            txtProvincia.set_text(found->province);
            txtCodice.set_text(found->code);
        }
        return std::nullopt;
    }

    // Once for a run of wrong keys: the next message waits until a good key has turned the text black.
    if (!txtComune.fore_color()) program_.message("Comune non in elenco.", BoxIcon::exclamation);
    txtProvincia.set_text(unknown);
    txtCodice.set_text(unknown);
    txtComune.set_focus();
    return dark_red;
}

void frmCalcolaCF::compute() {
    if (txtComune.empty()) {
        program_.message("Indicare il comune di nascita", BoxIcon::exclamation);
        return;
    }
    if (!DTPicker1.date().ok()) {
        program_.message("La data di nascita non e' valida.", BoxIcon::none);
        return;
    }
    const std::string code = CalcoloCodFis(txtCognome.text(), txtNome.text(), DTPicker1.date(),
                                           cboSesso.text(), trim(txtCodice.text()));
    txtCodiceFiscale.set_text(code);
    if (code_target_) code_target_->set_text(code);
    cmdElabora.set_enabled(false);
}

void frmCalcolaCF::hand_over_to(const std::string& caller, std::shared_ptr<TextBox> code) {
    txtparam.set_text(caller);
    code_target_ = std::move(code);
}

} // namespace tarvello
