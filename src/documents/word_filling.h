#pragma once

#include "documents/printed_texts.h"
#include "platform/word_processor.h"

#include <memory>
#include <string>

namespace tarvello {

class Program;

/// Makes a document of an invoice: the template in force, with every placeholder replaced by its
/// value, saved under a name that the user chooses. The template stays as it is.
/// @throws Failure only if the letterhead cannot be looked for; whatever fails after that is shown to the
/// user
void create_word_document(Program& program, const InvoiceOnView& on_view);

/// Replaces one placeholder in the open document. A failure is shown to the user and the application is
/// dropped, so that every further call fails too.
void InserisciVariabileWord(Program& program, const std::string& name, const std::string& value,
                            std::unique_ptr<WordApplication>& application);

} // namespace tarvello
