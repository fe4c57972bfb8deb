#include "customers/customer_table.h"

#include "store/database.h"
#include "text/letter_case.h"

namespace tarvello {

std::vector<ColumnText> CustomerTexts::on_invoices() const {
    std::vector<ColumnText> columns{
        {"Cognome_Ragione_Sociale", cognome},
        {"Nome", nome},
        {"Codice_Fiscale", codice_fiscale},
        {"Partita_IVA", partita_iva},
        {"Indirizzo", indirizzo},
        {"CAP", cap},
        {"Provincia", provincia},
        {"Città", citta},
    };
    for (ColumnText& column : columns) column.text = double_apostrophes(column.text);
    return columns;
}

std::vector<ColumnText> CustomerTexts::all() const {
    std::vector<ColumnText> columns = on_invoices();
    columns.push_back({"Telefono", double_apostrophes(telefono)});
    columns.push_back({"Fax", double_apostrophes(fax)});
    columns.push_back({"email", double_apostrophes(email)});
    columns.push_back({"Appunti", double_apostrophes(appunti)});
    return columns;
}

void insert_customer(Database& database, const CustomerTexts& customer) {
    if (database.rsClienti.is_open()) database.rsClienti.close();
    database.rsClienti.open(insert_statement("Clienti", customer.all()), database.dbConnection);
}

bool customer_exists(Database& database, const std::string& column, const std::string& text) {
    Recordset& customers = database.rsClienti;
    if (customers.is_open()) customers.close(); // another window may have left it so
    customers.open("SELECT * FROM Clienti WHERE " + column + "='" + text + "'", database.dbConnection);
    const bool exists = !customers.eof();
    customers.close();
    return exists;
}

} // namespace tarvello
