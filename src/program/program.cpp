#include "program/program.h"

#include "program/doors.h"
#include "program/drafts.h"
#include "program/failure_words.h"
#include "program/session_fields.h"

#include <cstdlib>

namespace tarvello {

Program::Program(Platform platform) : platform_(std::move(platform)), database_(platform_.regional) {}

Program::~Program() = default;

namespace {

template <typename Part>
Part& living(Part* part) {
    if (!part) throw Failure(failure_number::object_not_set, "Sessione", "La sessione è terminata.");
    return *part;
}

} // namespace

SessionFields& Program::session() const { return living(session_); }

Doors& Program::doors() const { return living(doors_); }

std::string Program::in_program_directory(const std::string& name) const {
    return platform_.program_directory + platform_.separator + name;
}

void Program::message(const std::string& text, BoxIcon icon, const std::string& caption) {
    platform_.boxes.show({text, caption, icon, BoxButtons::ok, 1});
}

bool Program::confirm(const std::string& text, const std::string& caption) {
    return platform_.boxes.show({text, caption, BoxIcon::information, BoxButtons::yes_no, 2}) != Answer::no;
}

Answer Program::ask_to_save(const std::string& text) {
    return platform_.boxes.show({text, program_title, BoxIcon::information, BoxButtons::yes_no, 2, true});
}

Form& Program::load(std::shared_ptr<Form>& slot, const std::shared_ptr<Form>& form) {
    slot = form;
    try {
        FormLife::load(*form);
    } catch (const Failure& failure) { // whatever it was: half a form is none
        if (slot == form) slot.reset();
        throw LoadFailure(failure);
    } catch (...) {
        if (slot == form) slot.reset();
        throw;
    }
    if (slot != form) gone_in_load_.push_back(form);
    return *form;
}

void Program::run(const std::function<void()>& act) {
    struct Act {
        explicit Act(Program& owner) : program(owner) { ++program.acts_; }
        ~Act() {
            if (--program.acts_ == 0) program.gone_in_load_.clear();
        }
        Program& program;
    };
    const Act running(*this);
    try {
        act();
    } catch (const Failure& failure) {
        // The top of the application. An act inside another one, in a modal window, ends here too: between
        // the two lies an event loop, and what called it knows nothing of this act.
        keep_drafts();
        const bool goes_on = survives(failure);
        std::string words = words_for(failure);
        if (!goes_on) words += "\nIl programma si chiude: quanto già salvato resta nell'archivio.";
        message(words + "\n\n" + failure.description(), BoxIcon::critical);
        if (!goes_on) platform_.windows.abort(EXIT_FAILURE);
    }
}

bool Program::survives(const Failure& failure) const {
    if (!session_ || !session_->loaded) return false; // there is nothing on the screen to go on with
    const bool no_database =
        failure.number() == failure_number::object_closed && !database_.dbConnection.is_open();
    return no_database || dynamic_cast<const LoadFailure*>(&failure);
}

void Program::keep_drafts() {
    for (DraftKeeper* keeper : draft_keepers_) keeper->keep();
}

void Program::offer_draft(const Form& form) {
    for (DraftKeeper* keeper : std::vector(draft_keepers_)) {
        if (keeper->is_of(form)) keeper->offer();
    }
}

void Program::show(Form& form) {
    offer_draft(form);
    platform_.windows.show(form);
}

void Program::show_modal(Form& form) {
    offer_draft(form);
    platform_.windows.show_modal(form);
}

void Program::help() {
    if (doors_) doors_->show_guide();
}

bool Program::unload(Form& form, UnloadReason reason) {
    const auto slot = [&] {
        for (auto it = forms_.begin(); it != forms_.end(); ++it) {
            if (it->second.get() == &form) return it;
        }
        return forms_.end();
    };
    if (slot() == forms_.end()) return true; // already gone
    const auto alive = form.shared_from_this();
    if (FormLife::refuses(form, reason)) return false;
    if (slot() == forms_.end()) return true; // gone while it was asking: the desktop has ended
    FormLife::unload(form, reason);
    if (const auto it = slot(); it != forms_.end()) it->second.reset();
    platform_.windows.close(form);
    return true;
}

} // namespace tarvello
