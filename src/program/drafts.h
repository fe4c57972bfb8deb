#pragma once

#include "platform/timer.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {

class Program;

/// What was typed in a form and not saved.
struct FormDraft {
    std::string mode;                          ///< the form's own word for what was under way
    std::string record;                        ///< the key of what was being changed
    std::map<std::string, std::string> values; ///< by the name of the control
};

/// A form that keeps drafts.
class DraftedForm {
public:
    /// What is under way on the form; empty while there is nothing to lose.
    virtual std::string draft_mode() const = 0;
    /// The key of the record that is being changed.
    virtual std::string draft_record() const { return {}; }
    /// The text boxes, combo boxes, check boxes and dates whose values are kept, in the order in which they
    /// are filled in again.
    virtual std::vector<Control*> draft_fields() = 0;
    /// What the draft is of, for the question whether to take it up: "in una fattura nuova".
    virtual std::string draft_words(const FormDraft& draft) const = 0;
    /// Brings the form into the mode of a draft, on its record, and then fills it in by fill().
    /// @return false if the record is gone: nothing has been done
    virtual bool take_up(const FormDraft& draft) = 0;
    /// True if what a draft holds has got into the archive: the process ended before it could say so.
    virtual bool is_stored(const FormDraft&) { return false; }

protected:
    ~DraftedForm() = default;
};

/// Keeps the draft of a form in the user's state folder, one for each archive, while something is under way
/// on it: a file that is written when a field has been left, at most once a second, and when the process has
/// to end. Failures are silent: they must not come between the user and the form.
class DraftKeeper {
public:
    DraftKeeper(Program& program, Form& form, DraftedForm& drafted);
    ~DraftKeeper();
    DraftKeeper(const DraftKeeper&) = delete;
    DraftKeeper& operator=(const DraftKeeper&) = delete;

    /// The form has entered a mode: what the fields hold now was not typed.
    void begin();
    /// True if something is under way and other values stand in the fields than at its beginning.
    bool anything_typed() const;
    /// Writes the draft at once, if anything is typed.
    void keep();
    /// What was typed is saved, or not wanted any more.
    void drop();
    /// Fills the fields of the form with those of a draft.
    void fill(const FormDraft& draft);
    /// True if the draft has the value of a control that stands there now.
    static bool has(const FormDraft& draft, const Control& field);
    /// What is under way, if anything, is given up: its draft goes.
    void give_up();
    /// The form closes: by hand, what was typed is not wanted; with the program, it stays.
    void form_closes(UnloadReason reason);

    bool is_of(const Form& form) const { return &form_ == &form; }
    /// If there is a draft, lets the user take it up or throw it away; once in the life of the form,
    /// or again if the user does neither.
    void offer();

private:
    using Values = std::map<std::string, std::string>;

    void field_left();
    Values values() const;
    std::string path() const;
    std::optional<FormDraft> read() const;

    Program& program_;
    Form& form_;
    DraftedForm& drafted_;
    Timer pause_; ///< runs for a second after the file was written
    Values at_begin_;
    std::string written_; ///< content of the file as far as it was written by this keeper
    bool offered_ = false;
};

} // namespace tarvello
