#pragma once

#include "invoices/invoice_form.h"
#include "support/program_test.h"

#include <map>
#include <string>

namespace tarvello::testing {

/// An invoice with everything, a letterhead with everything, and the invoice form that shows the invoice.
struct PrintingTest : ProgramTest {
    static std::map<std::string, std::string> full_letterhead() {
        return as_row("Nome_Azienda=Studio Bianchi; Indirizzo=Via Roma 1 - 00100 Roma; "
                      "Telefono=06 1234; Fax=06 5678; Codice_Fiscale=BNCMRA80A01H501U; "
                      "Partita_IVA=01234567890; email=studio@bianchi.it; "
                      "Descrizione_Attività=Ingegneria civile");
    }
    static std::map<std::string, std::string> full_invoice() {
        return as_row("Numero_Fattura=7; Data_Fattura=05/03/2006; Anno=2006; "
                      "Codice_Fiscale=RSSLGU70B02F205X; Partita_IVA=09876543210; Nome=Luigi; "
                      "Cognome_Ragione_Sociale=Rossi; Indirizzo=Corso Italia 12; CAP=20100; "
                      "Provincia=MI; Città=Milano; Prestazione1=Progetto della struttura; "
                      "Importo1=€ 1.000,00; Prestazione2=Direzione dei lavori; Importo2=€ 234,56; "
                      "Prestazione3=Terza; Importo3=€ 3,00; Prestazione4=Quarta; Importo4=€ 4,00; "
                      "Prestazione5=Quinta; Importo5=€ 5,00; Percentuale_Rivalsa=2; "
                      "Importo_Rivalsa=€ 24,69; Imponibile=€ 1.259,25; Aliquota_IVA=20; "
                      "Imposta_IVA=€ 251,85; Spese=Sì; Importo_Spese=€ 14,62; "
                      "Articolo_Esenzione=art. 15; Totale_Fattura=€ 1.525,72; Ritenuta=Sì; "
                      "Percentuale_Ritenuta=20; Ritenuta_Su=100; Importo_Ritenuta=€ 246,91; "
                      "Importo_Netto=€ 1.278,81; Check_Pagamento=Sì; "
                      "Pagamento=Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123");
    }
    /// An invoice on which every optional thing is missing.
    static std::map<std::string, std::string> bare_invoice() {
        auto columns = full_invoice();
        for (const char* name : {"Percentuale_Rivalsa", "Importo_Rivalsa", "Spese", "Ritenuta", "Pagamento",
                                 "Partita_IVA", "Check_Pagamento"}) {
            columns[name] = "";
        }
        return columns;
    }

    PrintingTest() { program->session().txtProfessione.set_text("Rivalsa INPS"); }

    frmTarvello& form() { return program->form<frmTarvello>(); }
    /// Replaces the letterhead and adds an invoice, on which the form comes up.
    void given(const std::map<std::string, std::string>& letterhead,
               const std::map<std::string, std::string>& invoice) {
        sql("DELETE * FROM DatiIntestazione");
        if (!letterhead.empty()) insert("DatiIntestazione", letterhead);
        given_invoice(invoice);
        form();
    }
};

} // namespace tarvello::testing
