#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

#include <memory>

namespace tarvello {

class Program;

/// Where a customer comes on view.
class CustomerView {
public:
    /// Shows the current row of rsClienti.
    virtual void CaricaCliente() = 0;

protected:
    ~CustomerView() = default;
};

/// The customers that a search has found, or all of them. Whoever shows it fills the list first and says
/// where the customer of the selected row comes on view when it is closed, by whatever button.
class frmRisultatiRicercaClienti : public Form {
public:
    explicit frmRisultatiRicercaClienti(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    CommandButton cmdVisualizza{*this, "cmdVisualizza"};

    void return_to(std::shared_ptr<CustomerView> view) { view_ = std::move(view); }

protected:
    void on_unload(UnloadReason reason) override;

private:
    void return_selected_row();

    Program& program_;
    std::shared_ptr<CustomerView> view_;
};

} // namespace tarvello
