#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

namespace tarvello {

class Program;

/// The customers that a search has found, or all of them. Whoever shows it fills the list first. When it is
/// closed, by whatever button, the customer of the selected row comes into frmClienti.
class frmRisultatiRicercaClienti : public Form {
public:
    explicit frmRisultatiRicercaClienti(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    CommandButton cmdVisualizza{*this, "cmdVisualizza"};

protected:
    void on_unload(UnloadReason reason) override;

private:
    void return_selected_row();

    Program& program_;
};

} // namespace tarvello
