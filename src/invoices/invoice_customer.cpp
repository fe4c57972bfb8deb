#include "customers/customer_picker.h"
#include "failure.h"
#include "fiscal_code/calculator_form.h"
#include "invoices/invoice_form.h"
#include "text/letter_case.h"

/// The customer block of the invoice: picked from the register, or typed for a customer who is still new.
namespace tarvello {

void frmTarvello::pick_customer() {
    program_.show_modal(program_.form<frmCercaCliente>());
    SbloccaAnagrafica();
    DTPicker1.set_focus();
}

void frmTarvello::key_in_customer(int& key) {
    if (picks_customer_instead()) key = 0;
}

bool frmTarvello::picks_customer_instead() {
    // A customer who was picked cannot be typed over.
    if (txtNuovoInserimento.text() == "NEW" || !cmdCercaCliente.enabled()) return false;
    program_.show_modal(program_.form<frmCercaCliente>());
    return true;
}

void frmTarvello::leave_customer_field(std::size_t field) {
    TextBox& box = txtAnagrafica[field];
    const bool in_capitals = field == 0 || field == 3 || field == 6; // the two codes and the province
    box.set_text(in_capitals ? upper_case(box.text()) : proper_case(box.text(), invoice_separators));
    ShapeAnagrafica[field].set_visible(!box.empty());
}

void frmTarvello::leave_name() {
    txtNome.set_text(proper_case(txtNome.text(), invoice_separators));
    ShapeNome.set_visible(!txtNome.empty());
}

void frmTarvello::calculate_fiscal_code() {
    try {
        auto& calculator = program_.form<frmCalcolaCF>();
        calculator.txtNome.set_text(txtNome.text());
        calculator.txtCognome.set_text(txtAnagrafica[5].text());
        calculator.txtparam.set_text("Fatture");
        program_.show_modal(calculator);
    } catch (const Failure& failure) {
        // The invoice does without the calculator.
        program_.message(failure.description(), BoxIcon::critical);
    }
}

bool frmTarvello::is_in_register(const std::string& column, const std::string& value) {
    ChiudiRecordset();
    Recordset& rsClienti = program_.database().rsClienti;
    rsClienti.open("SELECT * FROM Clienti WHERE " + column + "='" + value + "'",
                   program_.database().dbConnection);
    const bool found = !rsClienti.eof();
    rsClienti.close();
    return found;
}

bool frmTarvello::insert_new_customer() {
    if (txtNuovoInserimento.text() != "NEW") return true;
    const auto refuse = [&](const char* message) {
        program_.message(message, BoxIcon::information);
        txtAnagrafica[0].set_focus();
        return false;
    };
    if (is_in_register("Codice_Fiscale", txtAnagrafica[0].text())) {
        return refuse("ATTENZIONE\n\nIl Codice Fiscale utilizzato risulta già inserito nell'anagrafica. "
                      "Controllare il codice fiscale o selezionare un cliente con l'apposito pulsante.");
    }
    if (!txtAnagrafica[6].empty() && is_in_register("Partita_IVA", txtAnagrafica[6].text())) {
        return refuse("ATTENZIONE\n\nLa partita IVA utilizzata risulta già inserita nell'anagrafica. "
                      "Controllare la partita IVA o selezionare un cliente con l'apposito pulsante.");
    }

    std::string values;
    for (const TextBox* box : {&txtAnagrafica[5], &txtNome, &txtAnagrafica[0], &txtAnagrafica[6],
                               &txtAnagrafica[1], &txtAnagrafica[2], &txtAnagrafica[3], &txtAnagrafica[4]}) {
        values += "'" + double_apostrophes(box->text()) + "',";
    }
    ChiudiRecordset();
    Database& database = program_.database();
    database.rsClienti.open("INSERT INTO Clienti(Cognome_Ragione_Sociale, Nome, Codice_Fiscale, Partita_IVA, "
                            "Indirizzo, CAP, Provincia, Città,Telefono,Fax,email,Appunti) VALUES(" +
                                values + "'','','','')",
                            database.dbConnection);
    ChiudiRecordset();
    // The new customer is the one with the highest number.
    database.rsClienti.open("SELECT * FROM Clienti ORDER BY Numero_Cliente DESC", database.dbConnection);
    ComboNumeroCliente.set_text(database.rsClienti.text("Numero_Cliente"));
    ChiudiRecordset();
    ComboNumeroCliente.set_back_color(colors::white);
    ComboNumeroCliente.set_enabled(true);
    txtNuovoInserimento.clear();
    return true;
}

} // namespace tarvello
