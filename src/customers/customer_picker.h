#pragma once

#include "customers/customer_target.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

#include <memory>
#include <string>

namespace tarvello {

class Program;

/// The list from which a form gets its customer, or the word that it will be a new one.
class frmCercaCliente : public Form {
public:
    explicit frmCercaCliente(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    CommandButton cmdSelect{*this, "cmdSelect"};
    CommandButton cmdNuovoCliente{*this, "cmdNuovoCliente"};

    /// Number of the chosen customer.
    std::string NumeroClienteScelto;

    /// Where the customer goes; before it is shown.
    void pick_for(std::shared_ptr<CustomerTarget> target) { target_ = std::move(target); }

    /// As the close box does.
    bool press_escape() override { return unload(UnloadReason::user); }

    void CaricaElencoClienti();
    /// Copies the chosen customer into the form that asked. A null stops the copy: what comes after it keeps
    /// its text, and rsClienti stays open.
    /// @throws Failure if the customer cannot be read
    void CompilaClienteFattura();

protected:
    void on_load() override;

private:
    void select();
    void announce_new_customer();

    Program& program_;
    std::shared_ptr<CustomerTarget> target_;
};

} // namespace tarvello
