#include "documents/invoice_row.h"

#include "invoices/invoice_form.h"
#include "program/program.h"
#include "text/numbers.h"

namespace tarvello {

LetterheadRow read_letterhead(Program& program) {
    const Recordset& row = program.database().rsIntestazione;
    LetterheadRow read;
    read.nome_azienda = row.text("Nome_Azienda");
    read.indirizzo = row.text("Indirizzo");
    read.telefono = row.text("Telefono");
    read.fax = row.text("Fax");
    read.codice_fiscale = row.text("Codice_Fiscale");
    read.partita_iva = row.text("Partita_IVA");
    read.email = row.text("email");
    read.descrizione_attivita = row.text("Descrizione_Attività");
    return read;
}

InvoiceRow read_invoice(Program& program) {
    Database& database = program.database();
    database.close_results();
    const double id = leading_number(program.form<frmTarvello>().txtCurrent_ID.text());
    Recordset& row = database.rsFatture;
    row.open("SELECT * FROM Fatture WHERE ID=" + plain_number(id), database.dbConnection);

    InvoiceRow read;
    read.codice_fiscale = row.text("Codice_Fiscale");
    read.partita_iva = row.text("Partita_IVA");
    read.nome = row.text("Nome");
    read.cognome_ragione_sociale = row.text("Cognome_Ragione_Sociale");
    read.indirizzo = row.text("Indirizzo");
    read.cap = row.text("CAP");
    read.provincia = row.text("Provincia");
    read.citta = row.text("Città");
    read.numero_fattura = row.text("Numero_Fattura");
    read.anno = row.text("Anno");
    for (std::size_t i = 0; i < InvoiceRow::lines; ++i) {
        const std::string number = std::to_string(i + 1);
        read.prestazione[i] = row.text("Prestazione" + number);
        read.importo[i] = row.text("Importo" + number);
    }
    read.aliquota_iva = row.text("Aliquota_IVA");
    read.articolo_esenzione = row.text("Articolo_Esenzione");
    read.percentuale_rivalsa = row.text("Percentuale_Rivalsa");
    read.importo_rivalsa = row.text("Importo_Rivalsa");
    read.imponibile = row.text("Imponibile");
    read.imposta_iva = row.text("Imposta_IVA");
    read.spese = row.text_or_empty("Spese");
    if (!read.spese.empty()) read.importo_spese = row.text("Importo_Spese");
    read.totale_fattura = row.text("Totale_Fattura");
    read.ritenuta = row.text_or_empty("Ritenuta");
    if (!read.ritenuta.empty()) {
        read.percentuale_ritenuta = row.text_or_empty("Percentuale_Ritenuta");
        read.ritenuta_su = row.text("Ritenuta_Su");
        read.importo_ritenuta = row.text("Importo_Ritenuta");
    }
    read.importo_netto = row.text("Importo_Netto");
    read.pagamento = row.text("Pagamento");
    database.close_results();
    return read;
}

} // namespace tarvello
