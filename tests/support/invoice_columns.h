#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace tarvello::testing {

/// The columns of the table Fatture after ID, in the table's order.
inline const std::vector<std::string> invoice_columns = [] {
    std::istringstream names(
        "Numero_Fattura Data_Fattura Anno Numero_Cliente Codice_Fiscale Partita_IVA Nome "
        "Cognome_Ragione_Sociale Indirizzo CAP Provincia Città Prestazione1 Importo1 Prestazione2 "
        "Importo2 Prestazione3 Importo3 Prestazione4 Importo4 Prestazione5 Importo5 Rivalsa "
        "Dicitura_Rivalsa Percentuale_Rivalsa Importo_Rivalsa Imponibile Aliquota_IVA Imposta_IVA Spese "
        "IVA_Spese Importo_Spese Articolo_Esenzione Totale_Fattura Ritenuta Importo_Ritenuta "
        "Percentuale_Ritenuta Ritenuta_Su Importo_Netto Check_Pagamento Pagamento");
    return std::vector<std::string>(std::istream_iterator<std::string>(names), {});
}();

} // namespace tarvello::testing
