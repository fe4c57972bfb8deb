#pragma once

#include "platform/controls.h"

#include <memory>

namespace tarvello {

class InvoiceView;
class Program;

/// The search of the invoice form: a panel that folds, with three entries. Which invoices match is shown in a
/// window of its own.
class SearchPanel final {
public:
    static constexpr int closed_height = 540; ///< twips, FrameRicerca
    static constexpr int open_height = 2580;

    SearchPanel(Program& program, Form& form);

    Frame FrameRicerca;
    /// Opens the search, or runs it: the caption, "Cerca Fattura" or "OK", says which.
    CommandButton cmdCerca{FrameRicerca, "cmdCerca"};
    Label Label7{FrameRicerca, "Label7"};
    ComboBox Combo3{FrameRicerca, "Combo3"};
    Label Label8{FrameRicerca, "Label8"};
    ComboBox Combo1{FrameRicerca, "Combo1"};
    Label Label4{FrameRicerca, "Label4"};
    TextBox Text2{FrameRicerca, "Text2"};

    /// Reaches the entries or locks them, and unfolds or folds the panel.
    void set_open(bool open);
    /// Lists what matches the entries in a window and waits until it has closed.
    /// @param view  where the invoice chosen there comes on view
    /// @return false if nothing matched or an entry is missing
    /// @throws Failure if the statement cannot run, such as with an apostrophe in the text
    bool list_matches(std::shared_ptr<InvoiceView> view);

private:
    void enable_entries(bool enabled);
    bool all_entries_given();

    Program& program_;
};

} // namespace tarvello
