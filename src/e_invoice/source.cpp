#include "e_invoice/source.h"

#include "store/database.h"
#include "text/numbers.h"

namespace tarvello::e_invoice {

StoredInvoice read_stored_invoice(const Recordset& row) {
    StoredInvoice invoice;
    invoice.ID = static_cast<int>(leading_number(row.text("ID")));
    invoice.Numero_Fattura = row.text_or_empty("Numero_Fattura");
    if (!row.is_null("Data_Fattura")) invoice.Data_Fattura = row.date("Data_Fattura");
    invoice.Anno = row.text_or_empty("Anno");
    invoice.Numero_Cliente = static_cast<int>(leading_number(row.text_or_empty("Numero_Cliente")));
    invoice.Codice_Fiscale = row.text_or_empty("Codice_Fiscale");
    invoice.Partita_IVA = row.text_or_empty("Partita_IVA");
    invoice.Nome = row.text_or_empty("Nome");
    invoice.Cognome_Ragione_Sociale = row.text_or_empty("Cognome_Ragione_Sociale");
    invoice.Indirizzo = row.text_or_empty("Indirizzo");
    invoice.CAP = row.text_or_empty("CAP");
    invoice.Provincia = row.text_or_empty("Provincia");
    invoice.Citta = row.text_or_empty("Città");
    for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
        const std::string number = std::to_string(i + 1);
        invoice.Prestazione[i] = row.text_or_empty("Prestazione" + number);
        invoice.Importo[i] = row.text_or_empty("Importo" + number);
    }
    invoice.Rivalsa = row.text_or_empty("Rivalsa");
    invoice.Percentuale_Rivalsa = row.text_or_empty("Percentuale_Rivalsa");
    invoice.Importo_Rivalsa = row.text_or_empty("Importo_Rivalsa");
    invoice.Imponibile = row.text_or_empty("Imponibile");
    invoice.Aliquota_IVA = row.text_or_empty("Aliquota_IVA");
    invoice.Imposta_IVA = row.text_or_empty("Imposta_IVA");
    invoice.Spese = row.text_or_empty("Spese");
    invoice.IVA_Spese = row.text_or_empty("IVA_Spese");
    invoice.Importo_Spese = row.text_or_empty("Importo_Spese");
    invoice.Articolo_Esenzione = row.text_or_empty("Articolo_Esenzione");
    invoice.Totale_Fattura = row.text_or_empty("Totale_Fattura");
    invoice.Ritenuta = row.text_or_empty("Ritenuta");
    invoice.Importo_Ritenuta = row.text_or_empty("Importo_Ritenuta");
    invoice.Percentuale_Ritenuta = row.text_or_empty("Percentuale_Ritenuta");
    invoice.Ritenuta_Su = row.text_or_empty("Ritenuta_Su");
    invoice.Importo_Netto = row.text_or_empty("Importo_Netto");
    invoice.Check_Pagamento = row.text_or_empty("Check_Pagamento");
    invoice.Pagamento = row.text_or_empty("Pagamento");
    return invoice;
}

} // namespace tarvello::e_invoice
