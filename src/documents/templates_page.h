#pragma once

#include "platform/controls.h"
#include "platform/lists.h"

#include <string>

namespace tarvello {

class Program;

/// The page of the letterhead form that has to do with templates of word processor documents.
class TemplatesPage final {
public:
    TemplatesPage(Program& program, Form& form);

    Frame FrameWord;
    OptionButton Option1{FrameWord, "Option1"};
    OptionButton Option2{FrameWord, "Option2"};
    /// The templates of the format in force.
    ListBox File1{FrameWord, "File1"};
    TextBox txtModello{FrameWord, "txtModello"};
    CommandButton Command5{FrameWord, "Command5"};
    TextBox txtModelloAttuale{FrameWord, "txtModelloAttuale"};
    CommandButton cmdAnteprimaModelli{FrameWord, "cmdAnteprimaModelli"};
    CommandButton cmdNuovoModello{FrameWord, "cmdNuovoModello"};
    CommandButton ImportaModello{FrameWord, "ImportaModello"};
    CommandButton cmdInfoModelli{FrameWord, "cmdInfoModelli"};

    /// Shows which template is in force. @throws Failure if nothing says so
    void read_template_in_force();

private:
    std::string in_templates(const std::string& name) const;
    /// The path of a working copy, in a folder that exists when this returns.
    std::string working_copy(const std::string& name);
    void list_templates(const std::string& pattern);
    void save_template();
    void preview_template();
    void start_template();
    void import_template();

    Program& program_;
};

} // namespace tarvello
