#include "customers/customer_form.h"
#include "customers/customer_table.h"
#include "failure.h"
#include "program/messages.h"
#include "program/program.h"
#include "text/letter_case.h"
#include "text/utf8.h"

/// The record that frmClienti shows: read from its row, and checked before it is written.
namespace tarvello {

using namespace customer_box;

void frmClienti::CaricaCliente() {
    const Recordset& row = program_.database().rsClienti;
    const auto load = [&](const char* column, std::size_t box) {
        skip_failures([&] { txtfields[box].set_text(row.text(column)); });
    };
    load("Codice_Fiscale", codice_fiscale);
    load("Partita_IVA", partita_iva);
    load("Nome", nome);
    load("Indirizzo", indirizzo);
    load("CAP", cap);
    load("Provincia", provincia);
    load("Città", citta);
    load("Telefono", telefono);
    load("Fax", fax);
    load("email", email);
    load("Appunti", appunti);
    load("Numero_Cliente", numero);
    load("Cognome_Ragione_Sociale", cognome);
    txtCurrentClient.set_text(txtfields[nome].text() + " " + txtfields[cognome].text());
}

void frmClienti::AllUpperCase() {
    const auto upper = [this](std::size_t box) {
        txtfields[box].set_text(upper_case(txtfields[box].text()));
    };
    const auto proper = [this](std::size_t box) {
        txtfields[box].set_text(proper_case(txtfields[box].text()));
    };
    upper(codice_fiscale);
    upper(partita_iva);
    proper(indirizzo);
    upper(cap);
    upper(provincia);
    proper(citta);
    txtfields[codice_fiscale].set_enabled(true);
    txtfields[partita_iva].set_enabled(true);
    txtfields[cognome].set_focus();
    proper(appunti);
}

bool frmClienti::ControllaNuovoCliente() {
    if (txtfields[codice_fiscale].empty() && txtfields[partita_iva].empty()) return fault_no_code();
    if (CodiceFiscaleEsistente()) {
        return fault(codice_fiscale,
                     "Il Codice Fiscale che si sta cercando di inserire è già presente nel database.");
    }
    if (PartitaIvaEsistente()) {
        return fault(partita_iva,
                     "La Partita IVA che si sta cercando di inserire è già presente nel database.");
    }
    return name_and_address_complete();
}

bool frmClienti::ControllaModificaCliente() {
    if (blank(codice_fiscale) && blank(partita_iva)) return fault_no_code();
    return name_and_address_complete();
}

bool frmClienti::name_and_address_complete() {
    if (blank(cognome)) return fault(cognome, messages::no_surname);
    if (blank(indirizzo)) return fault(indirizzo, "Inserire l'Indirizzo.");
    if (blank(cap)) return fault(cap, messages::no_cap);
    if (utf8::length(txtfields[cap].text()) < 5) {
        return fault(cap, "Il CAP inserito non è valido. Controllare il CAP");
    }
    if (blank(provincia) || utf8::length(txtfields[provincia].text()) < 2) {
        return fault(provincia, "Inserire la Provincia.");
    }
    if (blank(citta)) return fault(citta, "Inserire la Città.");
    return true;
}

bool frmClienti::fault_no_code() {
    return fault(codice_fiscale, "Inserire Codice Fiscale o Partita IVA del Cliente.");
}

bool frmClienti::fault(std::size_t box, const std::string& message) {
    tell(message, BoxIcon::exclamation);
    txtfields[box].set_focus();
    return false;
}

bool frmClienti::blank(std::size_t box) const { return trim(txtfields[box].text()).empty(); }

bool frmClienti::CodiceFiscaleEsistente() { return is_taken("Codice_Fiscale", codice_fiscale); }

bool frmClienti::PartitaIvaEsistente() { return is_taken("Partita_IVA", partita_iva); }

bool frmClienti::is_taken(const char* column, std::size_t box) {
    return !txtfields[box].empty() && customer_exists(program_.database(), column, txtfields[box].text());
}

void frmClienti::filter_key(std::size_t box, int& key) const {
    const bool digit = key >= '0' && key <= '9';
    const bool control = key < ' ';
    const auto refuse_unless = [&](bool accepted) {
        if (!accepted) key = 0;
    };
    if (box == cap) refuse_unless(digit || control);
    // Backspace goes with the control keys: in the province only the Delete key removes text.
    if (box == provincia) refuse_unless(!digit && !control);
    // Eleven digits are a whole number. Nothing goes behind them, and Backspace neither until the caret has
    // moved.
    if (box == partita_iva) {
        refuse_unless((digit || control) && txtfields[partita_iva].selection_start() != 11);
    }
}

} // namespace tarvello
