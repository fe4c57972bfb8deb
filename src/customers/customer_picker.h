#pragma once

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/lists.h"

#include <string>

namespace tarvello {

class Program;

/// The list from which the invoice form gets its customer, or the word that it will be a new one. Writes
/// straight into the controls of frmTarvello.
class frmCercaCliente : public Form {
public:
    explicit frmCercaCliente(Program& program);

    Label Label1{*this, "Label1"};
    ListView ListView1{*this, "ListView1"};
    CommandButton cmdSelect{*this, "cmdSelect"};
    CommandButton cmdNuovoCliente{*this, "cmdNuovoCliente"};

    /// Number of the chosen customer.
    std::string NumeroClienteScelto;

    void CaricaElencoClienti();
    /// Copies the chosen customer into frmTarvello. A null stops the copy: what comes after it keeps its
    /// text.
    /// @throws Failure if the customer cannot be read
    void CompilaClienteFattura();

protected:
    void on_load() override;

private:
    void select();
    void announce_new_customer();

    Program& program_;
};

} // namespace tarvello
