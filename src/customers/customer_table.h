#pragma once

#include "store/column_text.h"

#include <string>
#include <vector>

namespace tarvello {

struct Database;

/// Its first row is the customer with the highest number, which is the newest one.
inline constexpr const char* highest_customer = "SELECT * FROM Clienti ORDER BY Numero_Cliente DESC";

/// A customer's columns, all but the number.
struct CustomerTexts {
    std::string cognome, nome, codice_fiscale, partita_iva, indirizzo, cap, provincia, citta;
    std::string telefono, fax, email, appunti;

    /// Those that every invoice keeps a copy of, with their apostrophes doubled.
    std::vector<ColumnText> on_invoices() const;
    /// All of them, likewise.
    std::vector<ColumnText> all() const;
};

/// Adds a customer by opening rsClienti, which must be closed. The engine gives the number.
void insert_customer(Database& database, const CustomerTexts& customer);

/// True if a customer has this text in a column; asked by rsClienti, which must be closed.
/// @throws Failure if the statement cannot run, such as with an apostrophe in the text
bool customer_exists(Database& database, const std::string& column, const std::string& text);

} // namespace tarvello
