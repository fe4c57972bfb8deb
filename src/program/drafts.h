#pragma once

#include "text/dates.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {

class Form;
class Program;
class TextEntry;

/// What was typed in a form that went without having been saved. It is kept in the user's state folder, for
/// the archive that was open, until it is dropped.
struct Draft {
    std::optional<DateTime> kept;             ///< when
    std::map<std::string, std::string> texts; ///< by the name of the box
};

/// Keeps the texts of these boxes as the draft of their form, over an older one. A failure is silent: nobody
/// is left to be told.
void keep_draft(Program& program, const Form& form, const std::vector<TextEntry*>& boxes);

/// The draft of a form. @return nothing if there is none, or it is of another archive
std::optional<Draft> kept_draft(Program& program, const Form& form);

void drop_draft(Program& program, const Form& form);

} // namespace tarvello
