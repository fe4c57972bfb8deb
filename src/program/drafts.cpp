#include "program/drafts.h"

#include "failure.h"
#include "platform/buttons.h"
#include "platform/date_picker.h"
#include "platform/entries.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "text/escapes.h"

#include <cstdint>
#include <sstream>

namespace tarvello {
namespace {

constexpr int least_pause_ms = 1000;

/// Names of what a draft says of itself; no control has them.
const std::string mode_name = "(modo)";
const std::string record_name = "(chiave)";

std::string value_of(const Control& control) {
    if (const auto* entry = dynamic_cast<const TextEntry*>(&control)) return entry->text();
    if (const auto* box = dynamic_cast<const CheckBox*>(&control)) return box->checked() ? "1" : "0";
    if (const auto* picker = dynamic_cast<const DatePicker*>(&control)) return iso_date(picker->date());
    return {};
}

void set_value(Control& control, const std::string& value) {
    if (auto* entry = dynamic_cast<TextEntry*>(&control)) entry->set_text(value);
    if (auto* box = dynamic_cast<CheckBox*>(&control)) box->set_checked(value == "1");
    auto* picker = dynamic_cast<DatePicker*>(&control);
    const auto date = read_iso_date(value);
    if (picker && date) picker->set_date(*date);
}

std::string folder_of_drafts(Program& program) {
    return program.platform().state_directory + program.platform().separator + "bozze";
}

/// A name for an archive that no other one has.
std::string name_of_archive(const std::string& route) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : route) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return std::to_string(hash);
}

std::string content_of(const FormDraft& draft) {
    const auto line = [](const std::string& name, const std::string& value) {
        return name + "\t" + escaped(value) + "\n";
    };
    std::string content = line(mode_name, draft.mode) + line(record_name, draft.record);
    for (const auto& [name, value] : draft.values) content += line(name, value);
    return content;
}

/// @return nothing if it is not whole
std::optional<FormDraft> draft_in(const std::string& content) {
    FormDraft draft;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        const auto tab = line.find('\t');
        if (tab == std::string::npos) return std::nullopt;
        const auto value = unescaped(std::string_view(line).substr(tab + 1));
        if (!value) return std::nullopt;
        draft.values[line.substr(0, tab)] = *value;
    }
    draft.mode = draft.values[mode_name];
    draft.record = draft.values[record_name];
    draft.values.erase(mode_name);
    draft.values.erase(record_name);
    return draft.mode.empty() ? std::nullopt : std::optional(draft);
}

} // namespace

DraftKeeper::DraftKeeper(Program& program, Form& form, DraftedForm& drafted)
    : program_(program), form_(form), drafted_(drafted), pause_(form, "TimerBozza", least_pause_ms) {
    program_.add_draft_keeper(*this);
    form_.on_field_left = [this] { field_left(); };
    pause_.on_timer = [this] {
        pause_.set_enabled(false);
        field_left();
    };
}

DraftKeeper::~DraftKeeper() { program_.remove_draft_keeper(*this); }

void DraftKeeper::begin() { at_begin_ = values(); }

bool DraftKeeper::anything_typed() const { return !drafted_.draft_mode().empty() && values() != at_begin_; }

void DraftKeeper::field_left() {
    if (!pause_.enabled()) keep();
}

void DraftKeeper::keep() {
    if (!anything_typed()) return;
    const std::string content = content_of({drafted_.draft_mode(), drafted_.draft_record(), values()});
    if (content == written_) return;
    pause_.set_enabled(true);
    skip_failures([&] {
        program_.platform().files.make_folder(folder_of_drafts(program_));
        program_.platform().files.write_private(path(), content);
        written_ = content; // what could not be written is tried again when the next field is left
    });
}

void DraftKeeper::drop() {
    pause_.set_enabled(false);
    written_.clear();
    at_begin_.clear();
    skip_failures([&] {
        if (program_.platform().files.exists(path())) program_.platform().files.remove({path()});
    });
}

void DraftKeeper::fill(const FormDraft& draft) {
    for (Control* field : drafted_.draft_fields()) {
        if (const auto value = draft.values.find(field->name()); value != draft.values.end())
            set_value(*field, value->second);
    }
}

bool DraftKeeper::has(const FormDraft& draft, const Control& field) {
    const auto value = draft.values.find(field.name());
    return value != draft.values.end() && value->second == value_of(field);
}

void DraftKeeper::give_up() {
    if (!drafted_.draft_mode().empty()) drop();
}

void DraftKeeper::form_closes(UnloadReason reason) {
    if (reason == UnloadReason::main_window || reason == UnloadReason::shut_down) {
        keep();
    } else {
        give_up();
    }
}

void DraftKeeper::offer() {
    if (offered_ || !drafted_.draft_mode().empty()) return;
    offered_ = true;
    const auto draft = read();
    if (!draft) return;
    if (drafted_.is_stored(*draft)) return drop();

    const auto facts = program_.platform().files.facts(path());
    std::string when;
    if (facts && facts->modified) {
        const auto day = std::chrono::floor<std::chrono::days>(*facts->modified);
        when = " (" + short_date_text(Date(day), program_.regional()) + ", " +
               long_time_text(*facts->modified, program_.regional()) + ")";
    }
    const MessageBox question{"Non è stato salvato quanto scritto " + drafted_.draft_words(*draft) + when +
                                  ".\n\nRiprenderlo? Con No viene eliminato.",
                              program_title,
                              BoxIcon::question,
                              BoxButtons::yes_no,
                              1,
                              true};
    const Answer answer = program_.platform().boxes.show(question);
    if (answer == Answer::cancel) offered_ = false; // the question was closed: it comes again
    if (answer == Answer::no && !program_.platform().windows.deserted()) drop();
    if (answer != Answer::yes) return;
    std::string why_not = "in questo archivio non c'è più";
    try {
        if (drafted_.take_up(*draft)) return;
    } catch (const Failure& failure) {
        why_not = failure.description();
    }
    program_.message("Quanto scritto " + drafted_.draft_words(*draft) + " non si può riprendere: " + why_not +
                         "\n\nResta conservato nel file\n" + path(),
                     BoxIcon::exclamation);
}

DraftKeeper::Values DraftKeeper::values() const {
    Values all;
    for (const Control* field : drafted_.draft_fields()) all[field->name()] = value_of(*field);
    return all;
}

std::string DraftKeeper::path() const {
    return folder_of_drafts(program_) + program_.platform().separator + form_.name() + "-" +
           name_of_archive(program_.session().txtDatabaseRoute.text());
}

std::optional<FormDraft> DraftKeeper::read() const {
    std::optional<FormDraft> draft;
    skip_failures([&] { draft = draft_in(program_.platform().files.read(path())); });
    return draft;
}

} // namespace tarvello
