#pragma once

#include "customers/customer_target.h"
#include "platform/controls.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tarvello {

struct ColumnText;
class Program;

/// The customer block of the invoice form: the invoice's own copy of the customer's data, picked from the
/// customers or typed for one who is still new.
class CustomerBlock final : public CustomerTarget {
public:
    // Where the columns of a customer stand among the boxes txtAnagrafica.
    static constexpr std::size_t codice_fiscale = 0;
    static constexpr std::size_t indirizzo = 1;
    static constexpr std::size_t cap = 2;
    static constexpr std::size_t provincia = 3;
    static constexpr std::size_t citta = 4;
    static constexpr std::size_t cognome = 5;
    static constexpr std::size_t partita_iva = 6;

    CustomerBlock(Program& program, Form& form);

    Frame frameAnagrafica;
    CommandButton cmdCercaCliente{frameAnagrafica, "cmdCercaCliente"};
    /// Key of the customer.
    TextBox ComboNumeroCliente{frameAnagrafica, "ComboNumeroCliente"};
    ControlArray<TextBox, 7> txtAnagrafica{frameAnagrafica, "txtAnagrafica"};
    TextBox txtNome{frameAnagrafica, "txtNome"};
    CommandButton cmdCalcolaCF{frameAnagrafica, "cmdCalcolaCF"};
    ControlArray<Shape, 7> ShapeAnagrafica{frameAnagrafica, "ShapeAnagrafica"};
    Shape ShapeNome{frameAnagrafica, "ShapeNome"};
    /// "NEW" while the block holds a customer who is not in the table yet; never in view.
    TextBox txtNuovoInserimento;

    void set_locked(bool locked);
    void clear();
    /// The customer is no new one, and the number is there again.
    void end_new_customer();
    /// Shows the picker, which fills the block.
    void pick();
    /// Gives a box the letter case of its column, as leaving it does.
    void leave(std::size_t box);

    /// Copies the block's columns from a row of Fatture. What cannot be read stays as it was.
    void show(const Recordset& invoice);
    /// The block's columns as they go into a row of Fatture.
    std::vector<ColumnText> columns() const;
    /// Adds the customer to the table if the block is marked as new.
    /// @return false if a customer with that fiscal code or VAT number is there already: the user has been
    /// told
    /// @throws Failure if the table cannot be read or written, such as with an apostrophe in a code
    bool insert_if_new();

    // CustomerTarget
    void expect_known_customer() override;
    void take_customer(const Recordset& row) override;
    void announce_new_customer() override;

private:
    struct BoxColumn {
        const char* column;
        TextBox* box;
    };

    bool is_new() const { return txtNuovoInserimento.text() == "NEW"; }
    /// Opens the picker where a customer may only be picked. @return true if it did
    bool picks_instead();
    void leave_name();
    void calculate_fiscal_code();
    bool is_taken(const std::string& column, std::size_t box);

    Program& program_;
    /// In the order in which a picked customer is copied.
    std::array<BoxColumn, 9> boxes_;
};

} // namespace tarvello
