#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

namespace tarvello {

class Program;

/// A list of invoices: what a search found, or the register. Whoever opens it fills the list; the row that is
/// selected when it closes is put on view in the invoice form.
class frmRisultatiRicercaFatture : public Form {
public:
    explicit frmRisultatiRicercaFatture(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    /// The year in which the selected invoice is looked for.
    TextBox txtAnnoDiRicerca{*this, "txtAnnoDiRicerca"};
    CommandButton cmdVisualizza{*this, "cmdVisualizza"};

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override;

private:
    /// Looks for the selected invoice by year and number, from the oldest on, and puts it on view.
    void show_selected_invoice();

    Program& program_;
};

} // namespace tarvello
