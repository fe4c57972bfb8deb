#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace tarvello {

class Program;

/// What both ways of printing take from the database: texts as they are stored. Columns that nothing guards
/// must not be null; what hangs on Spese or Ritenuta is read only where that flag is not empty.
struct LetterheadRow {
    std::string nome_azienda, indirizzo, telefono, fax, codice_fiscale, partita_iva, email,
        descrizione_attivita;
};

struct InvoiceRow {
    static constexpr std::size_t lines = 5;

    std::string codice_fiscale, partita_iva, nome, cognome_ragione_sociale, indirizzo, cap, provincia, citta;
    std::string numero_fattura, anno;
    std::array<std::string, lines> prestazione, importo;
    std::string aliquota_iva, articolo_esenzione;
    std::string percentuale_rivalsa, importo_rivalsa, imponibile, imposta_iva;
    std::string spese, importo_spese;
    std::string totale_fattura;
    std::string ritenuta, percentuale_ritenuta, ritenuta_su, importo_ritenuta;
    std::string importo_netto, pagamento;
};

/// Reads the letterhead on which rsIntestazione stands. @throws Failure
LetterheadRow read_letterhead(Program& program);

/// Reads the stored row of the invoice on view, by rsFatture, and closes the shared results.
/// @throws Failure if there is no such row, or one of its unguarded columns is null
InvoiceRow read_invoice(Program& program);

} // namespace tarvello
