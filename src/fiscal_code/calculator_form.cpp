#include "fiscal_code/calculator_form.h"

#include "fiscal_code/fiscal_code.h"
#include "platform/file_names.h"
#include "program/program.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <utility>

namespace tarvello {
namespace {

constexpr Color dark_red = Color::from_bgr(128);
constexpr Color dark_green = Color::from_bgr(0x008000);
const char* const unknown = "?";

bool begins(const std::string& name, const std::string& beginning) {
    return upper_case(utf8::left(name, utf8::length(beginning))) == upper_case(beginning);
}

/// True if the text is what a deletion of characters can leave.
bool is_rest_of(std::string_view rest, std::string_view text) {
    for (const char c : text) {
        if (!rest.empty() && rest.front() == c) rest.remove_prefix(1);
    }
    return rest.empty();
}

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
    cmdCopia.set_caption("Copia");
    cmdCopia.set_tool_tip("Copia il codice fiscale negli appunti; se aperto dall'intestazione, anche lì");
    cmdCopia.set_enabled(false);
    cmdExit.set_caption("Chiudi");

    const auto enable = [this] { cmdElabora.set_enabled(true); };
    txtCognome.on_change = enable;
    txtNome.on_change = enable;
    txtComune.on_change = enable;
    cboSesso.on_change = enable;
    cboSesso.on_click = enable;
    // A new date alone does not enable the button.
    DTPicker1.on_no_date = [this] { tell_no_date(); };
    txtComune.on_key_press = [this](int& key) { character_typed_ = key >= ' '; };
    txtComune.on_edit = [this] { telling_failures([this] { search_municipality(); }); };
    cmdElabora.on_click = [this] { compute(); };
    cmdCopia.on_click = [this] { copy(); };
    cmdExit.on_click = [this] { unload(); };
    set_keys(&cmdElabora, &cmdExit);
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
    const bool added = std::exchange(character_typed_, false) || !is_rest_of(typed, before_);
    const bool searched = typed == txtComune.tag();
    txtComune.set_tag(typed);
    // An emptied box is not searched, and keeps its colour.
    if (!typed.empty() && !searched) {
        txtComune.set_fore_color(show_match(typed, added));
    } else if (typed.empty() && !txtComune.empty()) {
        show_place({});
    }
    before_ = trim(txtComune.text());
}

void frmCalcolaCF::show_place(const Municipality& place) {
    place_ = place.name;
    txtProvincia.set_text(place.province);
    txtCodice.set_text(place.code);
}

std::optional<Color> frmCalcolaCF::show_match(const std::string& typed, bool added) {
    if (not_opened_) throw Failure(*not_opened_);
    const std::optional<Municipality> found = municipalities_->seek(typed);
    if (!found) { // past the last name there is no message
        show_place({});
        return std::nullopt;
    }
    if (begins(found->name, typed)) {
        // Nothing is completed after a deletion, or it would undo it.
        if (added) {
            const std::size_t length = utf8::length(typed);
            txtComune.set_text(found->name);
            txtComune.select(length, utf8::length(found->name) - length);
            show_place(*found);
        } else if (!place_.empty() && !begins(place_, typed)) {
            show_place({}); // what is left is the beginning of another place
        }
        return std::nullopt;
    }

    // Once for a run of wrong keys: the next message waits until a good key has turned the text black.
    if (!txtComune.fore_color()) program_.message("Comune non in elenco.", BoxIcon::exclamation);
    show_place({{}, unknown, unknown});
    txtComune.set_focus();
    return dark_red;
}

void frmCalcolaCF::compute() {
    if (txtComune.empty()) {
        program_.message("Indicare il comune di nascita", BoxIcon::exclamation);
        return;
    }
    if (!DTPicker1.date().ok()) {
        tell_no_date();
        return;
    }
    const std::string code = CalcoloCodFis(txtCognome.text(), txtNome.text(), DTPicker1.date(),
                                           cboSesso.text(), trim(txtCodice.text()));
    txtCodiceFiscale.set_text(code);
    if (code_target_) code_target_->set_text(code);
    cmdElabora.set_enabled(false);
    cmdCopia.set_enabled(true);
}

void frmCalcolaCF::copy() {
    program_.platform().desktop.copy_to_clipboard(txtCodiceFiscale.text());
    if (copy_taker_) copy_taker_(txtCodiceFiscale.text());
}

void frmCalcolaCF::tell_no_date() { program_.message("La data di nascita non e' valida.", BoxIcon::none); }

void frmCalcolaCF::hand_over_to(const std::string& caller, std::shared_ptr<TextBox> code) {
    txtparam.set_text(caller);
    code_target_ = std::move(code);
}

} // namespace tarvello
