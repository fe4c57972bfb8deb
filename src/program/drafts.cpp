#include "program/drafts.h"

#include "failure.h"
#include "platform/controls.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "text/escapes.h"

#include <sstream>

namespace tarvello {
namespace {

/// The name under which the draft says which archive it is of; no box has it.
const std::string archive = "archivio";

std::string folder_of_drafts(Program& program) {
    return program.platform().state_directory + program.platform().separator + "bozze";
}

std::string path_of(Program& program, const Form& form) {
    return folder_of_drafts(program) + program.platform().separator + form.name();
}

} // namespace

void keep_draft(Program& program, const Form& form, const std::vector<TextEntry*>& boxes) {
    const auto line = [](const std::string& name, const std::string& text) {
        return name + "\t" + escaped(text) + "\n";
    };
    std::string content = line(archive, program.session().txtDatabaseRoute.text());
    for (const TextEntry* box : boxes) content += line(box->name(), box->text());
    skip_failures([&] {
        program.platform().files.make_folder(folder_of_drafts(program));
        program.platform().files.write_private(path_of(program, form), content);
    });
}

std::optional<Draft> kept_draft(Program& program, const Form& form) {
    Files& files = program.platform().files;
    const auto facts = files.facts(path_of(program, form));
    if (!facts) return std::nullopt;
    Draft draft{facts->modified, {}};
    skip_failures([&] {
        std::istringstream lines(files.read(path_of(program, form)));
        for (std::string line; std::getline(lines, line);) {
            const auto tab = line.find('\t');
            if (tab == std::string::npos) continue;
            if (const auto text = unescaped(std::string_view(line).substr(tab + 1)))
                draft.texts[line.substr(0, tab)] = *text;
        }
    });
    if (draft.texts[archive] != program.session().txtDatabaseRoute.text()) return std::nullopt;
    draft.texts.erase(archive);
    return draft;
}

void drop_draft(Program& program, const Form& form) {
    skip_failures([&] { program.platform().files.remove({path_of(program, form)}); });
}

} // namespace tarvello
