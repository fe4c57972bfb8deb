#pragma once

#include "invoices/invoice_view.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

#include <memory>

namespace tarvello {

class Program;

/// A list of invoices: what a search found, all, or those of a year. Whoever opens it fills the list and says
/// where the invoice that is selected when it closes comes on view.
class frmRisultatiRicercaFatture : public Form {
public:
    explicit frmRisultatiRicercaFatture(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    /// The year in which the selected invoice is looked for.
    TextBox txtAnnoDiRicerca{*this, "txtAnnoDiRicerca"};
    CommandButton cmdVisualizza{*this, "cmdVisualizza"};

    void return_to(std::shared_ptr<InvoiceView> view) { view_ = std::move(view); }

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override;

private:
    /// Looks for the selected invoice by year and number, from the oldest on, and puts it on view.
    void show_selected_invoice();

    Program& program_;
    std::shared_ptr<InvoiceView> view_;
};

} // namespace tarvello
