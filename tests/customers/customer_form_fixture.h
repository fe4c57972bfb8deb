#pragma once

#include "customers/customer_form.h"
#include "support/program_test.h"

#include <map>
#include <string>

namespace tarvello::testing {

/// The customer register, opened on the rows that the test has put into the table before its first use.
struct CustomerFormTest : ProgramTest {
    using Row = std::map<std::string, std::string>;

    frmClienti& form() { return program->form<frmClienti>(); }
    std::string text(std::size_t box) { return form().txtfields[box].text(); }

    /// Types over what stands in a box.
    void fill(std::size_t box, const std::string& text) {
        form().txtfields[box].enter();
        form().txtfields[box].place_caret(0, 1000);
        form().txtfields[box].press_delete();
        form().txtfields[box].type(text);
    }

    /// Fills in what a customer must have.
    void fill_valid_customer() {
        using namespace customer_box;
        fill(cognome, "Rossi");
        fill(nome, "Mario");
        fill(codice_fiscale, "RSSMRA80A01H501U");
        fill(indirizzo, "Via Roma 1");
        fill(cap, "00100");
        fill(provincia, "RM");
        fill(citta, "Roma");
    }

    /// A customer with everything that a change asks for. @return its number
    int given_valid_customer(Row columns) {
        for (const auto& [name, value] :
             as_row("Codice_Fiscale=RSSMRA80A01H501U; Cognome_Ragione_Sociale=Rossi; "
                    "Indirizzo=Via Roma 1; CAP=00100; Provincia=RM; Città=Roma")) {
            columns.try_emplace(name, value);
        }
        return given_customer(columns);
    }

    Row stored(int number) {
        return sql("SELECT * FROM Clienti WHERE Numero_Cliente=" + std::to_string(number)).at(0);
    }

    MessageBox box(const std::string& text, BoxIcon icon) {
        return {text, "Clienti", icon, BoxButtons::ok, 1};
    }
    MessageBox question(const std::string& text) {
        return {text, "Clienti", BoxIcon::information, BoxButtons::yes_no, 2};
    }
    MessageBox propagation() {
        return question("Apportare le modifiche anche a tutte le fatture emesse a nome del cliente?");
    }
};

} // namespace tarvello::testing
