#include "customers/customer_form.h"
#include "failure.h"
#include "program/program.h"
#include "text/numbers.h"

/// What frmClienti writes into the database.
namespace tarvello {

using namespace customer_box;

CustomerTexts frmClienti::texts() const {
    const auto text = [this](std::size_t box) { return txtfields[box].text(); };
    return {.cognome = text(cognome),
            .nome = text(nome),
            .codice_fiscale = text(codice_fiscale),
            .partita_iva = text(partita_iva),
            .indirizzo = text(indirizzo),
            .cap = text(cap),
            .provincia = text(provincia),
            .citta = text(citta),
            .telefono = text(telefono),
            .fax = text(fax),
            .email = text(email),
            .appunti = text(appunti)};
}

void frmClienti::SalvaCliente(const std::string& mode, std::int16_t number) {
    Database& database = program_.database();
    draft_.keep();
    try {
        if (mode == "Salva") {
            insert_customer(database, texts());
            draft_.drop();
            // The engine has given the number: the newest customer is the one with the highest.
            show_first_row(highest_customer);
        } else {
            open_customers(
                update_statement("Clienti", texts().all(), "Numero_Cliente=" + std::to_string(number)));
            draft_.drop();
        }
    } catch (const Failure& failure) {
        // The form goes on as if the save had worked: the text stays in the boxes, unsaved.
        tell(failure.description(), BoxIcon::critical);
    }
}

void frmClienti::AggiornaFattureCliente() {
    const std::int16_t number = leading_int16(txtfields[numero].text());
    try {
        ChiudiRecordsetClienti();
        program_.database().rsFatture.open(
            update_statement("Fatture", texts().on_invoices(), "Numero_Cliente=" + std::to_string(number)),
            program_.database().dbConnection);
        ChiudiRecordsetClienti();
        tell("Aggiornamento riuscito.", BoxIcon::information);
    } catch (const Failure& failure) {
        // The failure ends here: the customer's own row is still to be written. Error text, number,
        // description, source and help context, of which there is none, stand without a word between them.
        const std::string no_help = "0";
        program_.message(failure.description() + std::to_string(failure.number()) + failure.description() +
                             failure.source() + no_help,
                         BoxIcon::none);
    }
}

void frmClienti::EliminaCliente() {
    Recordset& customers = program_.database().rsClienti;
    Recordset& invoices = program_.database().rsFatture;
    Connection& connection = program_.database().dbConnection;
    const auto box = [this](std::size_t index) { return txtfields[index].text(); };

    std::string number = "0";
    // Where the invoices cannot be read nobody knows, and the customer stays.
    bool has_invoices = true;
    skip_failures([&] { number = std::to_string(leading_int16(box(numero))); },
                  // Fails if the result of an earlier refusal is still open. That one is then asked, and
                  // refuses this customer too.
                  [&] { invoices.open("SELECT * FROM Fatture WHERE Numero_Cliente=" + number, connection); },
                  [&] { has_invoices = !invoices.eof(); });
    if (has_invoices) {
        tell("Impossibile Eliminare il cliente\n\nSono presenti fatture in archivio a nome del cliente "
             "selezionato.",
             BoxIcon::information);
        return;
    }
    skip_failures([&] { invoices.close(); });
    if (!program_.confirm("Dati Cliente:\n" + box(nome) + " - " + box(codice_fiscale) + "\n" +
                              box(indirizzo) + " - " + box(cap) + " - " + box(provincia) + " - " +
                              box(citta) + "\n\nSei sicuro di voler cancellare questo Cliente?",
                          title)) {
        return;
    }
    skip_failures([&] { customers.open("DELETE * FROM Clienti WHERE Numero_Cliente=" + number, connection); },
                  [&] { SvuotaCampi(); }, [&] { customers.open(highest_customer, connection); },
                  [&] { CaricaCliente(); }, [&] { customers.close(); });
}

} // namespace tarvello
