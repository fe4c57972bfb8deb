#include "documents/printed_texts.h"

#include "failure.h"
#include "program/program.h"
#include "text/numbers.h"

namespace tarvello {

const std::string& PrintedTexts::operator[](std::string_view column) const {
    const auto found = texts_.find(column);
    if (found == texts_.end()) {
        throw Failure(failure_number::no_such_element, "Stampa",
                      "La stampa non legge la colonna " + std::string(column) + ".");
    }
    return found->second;
}

PrintedTexts read_letterhead(Program& program) {
    const Recordset& row = program.database().rsIntestazione;
    PrintedTexts read;
    for (const char* column : {"Nome_Azienda", "Indirizzo", "Telefono", "Fax", "Codice_Fiscale",
                               "Partita_IVA", "email", "Descrizione_Attività"}) {
        read.add(column, row.text(column));
    }
    return read;
}

PrintedTexts read_invoice(Program& program, const std::string& id) {
    Database& database = program.database();
    database.close_results();
    Recordset& row = database.rsFatture;
    row.open("SELECT * FROM Fatture WHERE ID=" + plain_number(leading_number(id)), database.dbConnection);

    PrintedTexts read;
    for (const char* column :
         {"Codice_Fiscale", "Partita_IVA", "Nome", "Cognome_Ragione_Sociale", "Indirizzo", "CAP", "Provincia",
          "Città", "Numero_Fattura", "Anno", "Aliquota_IVA", "Articolo_Esenzione", "Percentuale_Rivalsa",
          "Importo_Rivalsa", "Imponibile", "Imposta_IVA", "Totale_Fattura", "Importo_Netto", "Pagamento"}) {
        read.add(column, row.text(column));
    }
    for (std::size_t i = 1; i <= PrintedTexts::lines; ++i) {
        for (const char* column : {"Prestazione", "Importo"}) {
            const std::string name = column + std::to_string(i);
            read.add(name, row.text(name));
        }
    }
    const std::string expenses = row.text_or_empty("Spese");
    read.add("Spese", expenses);
    read.add("Importo_Spese", expenses.empty() ? "" : row.text("Importo_Spese"));
    const std::string withholding = row.text_or_empty("Ritenuta");
    read.add("Ritenuta", withholding);
    read.add("Percentuale_Ritenuta", withholding.empty() ? "" : row.text_or_empty("Percentuale_Ritenuta"));
    for (const char* column : {"Ritenuta_Su", "Importo_Ritenuta"}) {
        read.add(column, withholding.empty() ? "" : row.text(column));
    }
    database.close_results();
    return read;
}

} // namespace tarvello
