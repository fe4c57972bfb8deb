#include "invoices/customer_block.h"

#include "customers/customer_table.h"
#include "failure.h"
#include "invoices/field_marker.h"
#include "invoices/shared_results.h"
#include "program/doors.h"
#include "program/messages.h"
#include "program/program.h"
#include "store/column_text.h"
#include "text/letter_case.h"

namespace tarvello {

CustomerBlock::CustomerBlock(Program& program, Form& form)
    : frameAnagrafica(form, "frameAnagrafica"), txtNuovoInserimento(form, "txtNuovoInserimento"),
      program_(program), boxes_{{{"Numero_Cliente", &ComboNumeroCliente},
                                 {"Codice_Fiscale", &txtAnagrafica[codice_fiscale]},
                                 {"Indirizzo", &txtAnagrafica[indirizzo]},
                                 {"CAP", &txtAnagrafica[cap]},
                                 {"Provincia", &txtAnagrafica[provincia]},
                                 {"Città", &txtAnagrafica[citta]},
                                 {"Cognome_Ragione_Sociale", &txtAnagrafica[cognome]},
                                 {"Nome", &txtNome},
                                 {"Partita_IVA", &txtAnagrafica[partita_iva]}}} {
    cmdCercaCliente.set_caption("Seleziona Cliente");
    cmdCercaCliente.set_picture("clienti");
    cmdCercaCliente.set_tool_tip("Seleziona Cliente / Inserisci Nuovo Cliente");
    cmdCalcolaCF.set_picture("calcolatrice");
    cmdCalcolaCF.set_tool_tip(messages::fiscal_code_tip);
    txtNuovoInserimento.set_visible(false);
    ComboNumeroCliente.set_locked(true); // the number comes from the customers
    for (Shape& shape : ShapeAnagrafica) shape.set_visible(false);
    ShapeNome.set_visible(false);

    cmdCalcolaCF.on_click = [this] { calculate_fiscal_code(); };
    txtAnagrafica.each([this](std::size_t i, TextBox& box) {
        mark(box, ShapeAnagrafica[i]);
        box.on_key_press = [this](int& key) {
            if (picks_instead()) key = 0;
        };
        box.on_query_edit = [this] { return picks_instead(); };
        box.on_lost_focus = [this, i] { leave(i); };
    });
    mark(txtNome, ShapeNome);
    txtNome.on_lost_focus = [this] { leave_name(); };
}

void CustomerBlock::set_locked(bool locked) {
    for (TextBox& box : txtAnagrafica) box.set_locked(locked);
    txtNome.set_locked(locked);
    cmdCalcolaCF.set_enabled(!locked);
}

void CustomerBlock::clear() {
    for (TextBox& box : txtAnagrafica) box.clear();
    txtNome.clear();
    ComboNumeroCliente.clear();
}

void CustomerBlock::end_new_customer() {
    ComboNumeroCliente.set_back_color(colors::white);
    ComboNumeroCliente.set_enabled(true);
    txtNuovoInserimento.clear();
}

// Picking and typing

void CustomerBlock::pick() {
    program_.doors().pick_customer(frameAnagrafica.form().share<CustomerTarget>(*this));
}

bool CustomerBlock::picks_instead() {
    // A customer who was picked cannot be typed over.
    if (is_new() || !cmdCercaCliente.enabled()) return false;
    pick();
    return true;
}

void CustomerBlock::expect_known_customer() { txtNuovoInserimento.clear(); }

void CustomerBlock::take_customer(const Recordset& row) {
    for (const auto& [column, box] : boxes_) box->set_text(row.text(column));
}

void CustomerBlock::announce_new_customer() {
    ComboNumeroCliente.set_back_color(colors::button_face);
    ComboNumeroCliente.set_enabled(false);
    txtNuovoInserimento.set_text("NEW");
    for (TextBox& box : txtAnagrafica) {
        box.clear();
        box.set_locked(false);
    }
    txtNome.clear();
    txtNome.set_locked(false);
}

void CustomerBlock::leave(std::size_t box) {
    TextBox& field = txtAnagrafica[box];
    const bool in_capitals = box == codice_fiscale || box == provincia || box == partita_iva;
    field.set_text(in_capitals ? upper_case(field.text()) : proper_case(field.text(), invoice_separators));
    ShapeAnagrafica[box].set_visible(!field.empty());
}

void CustomerBlock::leave_name() {
    txtNome.set_text(proper_case(txtNome.text(), invoice_separators));
    ShapeNome.set_visible(!txtNome.empty());
}

void CustomerBlock::calculate_fiscal_code() {
    try {
        program_.doors().calculate_fiscal_code("Fatture", txtAnagrafica[cognome].text(), txtNome.text(),
                                               frameAnagrafica.form().share(txtAnagrafica[codice_fiscale]));
    } catch (const Failure& failure) {
        // The invoice does without the calculator.
        program_.message(failure.description(), BoxIcon::critical);
    }
}

// The tables

void CustomerBlock::show(const Recordset& invoice) {
    for (const auto& [column, box] : boxes_) {
        skip_failures([&, &name = column, &to = box] { to->set_text(invoice.text(name)); });
    }
}

std::vector<ColumnText> CustomerBlock::columns() const {
    const auto text = [this](std::size_t box) { return trim(txtAnagrafica[box].text()); };
    return {{"Numero_Cliente", ComboNumeroCliente.text()},
            {"Codice_Fiscale", text(codice_fiscale)},
            {"Partita_IVA", text(partita_iva)},
            {"Nome", trim(txtNome.text())},
            {"Cognome_Ragione_Sociale", text(cognome)},
            {"Indirizzo", text(indirizzo)},
            {"CAP", text(cap)},
            {"Provincia", text(provincia)},
            {"Città", text(citta)}};
}

bool CustomerBlock::is_taken(const std::string& column, std::size_t box) {
    ChiudiRecordset(program_.database());
    return customer_exists(program_.database(), column, txtAnagrafica[box].text());
}

bool CustomerBlock::insert_if_new() {
    if (!is_new()) return true;
    const auto refuse = [&](const char* message) {
        program_.message(message, BoxIcon::information);
        txtAnagrafica[codice_fiscale].set_focus();
        return false;
    };
    if (is_taken("Codice_Fiscale", codice_fiscale)) {
        return refuse("ATTENZIONE\n\nIl Codice Fiscale utilizzato risulta già inserito nell'anagrafica. "
                      "Controllare il codice fiscale o selezionare un cliente con l'apposito pulsante.");
    }
    if (!txtAnagrafica[partita_iva].empty() && is_taken("Partita_IVA", partita_iva)) {
        return refuse("ATTENZIONE\n\nLa partita IVA utilizzata risulta già inserita nell'anagrafica. "
                      "Controllare la partita IVA o selezionare un cliente con l'apposito pulsante.");
    }

    const auto text = [this](std::size_t box) { return txtAnagrafica[box].text(); };
    const CustomerTexts customer{.cognome = text(cognome),
                                 .nome = txtNome.text(),
                                 .codice_fiscale = text(codice_fiscale),
                                 .partita_iva = text(partita_iva),
                                 .indirizzo = text(indirizzo),
                                 .cap = text(cap),
                                 .provincia = text(provincia),
                                 .citta = text(citta),
                                 .telefono = {},
                                 .fax = {},
                                 .email = {},
                                 .appunti = {}};
    Database& database = program_.database();
    ChiudiRecordset(database);
    insert_customer(database, customer);
    with_result(database, database.rsClienti, highest_customer,
                [this](const Recordset& row) { ComboNumeroCliente.set_text(row.text("Numero_Cliente")); });
    end_new_customer();
    return true;
}

} // namespace tarvello
