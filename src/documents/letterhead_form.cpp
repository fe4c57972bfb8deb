#include "documents/letterhead_form.h"

#include "e_invoice/findings.h"
#include "failure.h"
#include "program/doors.h"
#include "program/open_database.h"
#include "program/program.h"
#include "store/column_text.h"

namespace tarvello {

frmIntestazioneFatture::frmIntestazioneFatture(Program& program)
    : Form(program, "frmIntestazioneFatture"), logo(program, *this), templates(program, *this),
      program_(program) {
    set_caption("Intestazione");
    // Enter goes from field to field; buttons in between would be pressed by it.
    order_tabs({&Text1[nome], &Text1[codice_fiscale], &Text1[partita_iva], &Text1[indirizzo], &Text1[email],
                &Text1[telefono], &Text1[fax], &Text1[unused], &txtDescrizione, &txtBanca[banca],
                &txtBanca[abi], &txtBanca[cab], &txtBanca[conto], &Command3, &Command2});

    Text1[nome].set_locked(true);
    Text1[unused].set_visible(false);
    Command3.set_caption("Modifica Nome / Ragione Sociale");
    Command2.set_caption("Calcola Codice Fiscale");
    FrameBanca.set_caption("Coordinate Bancarie per i pagamenti");

    Command1[save_button].set_caption("Salva");
    Command1[save_button].set_enabled(false);
    Command1[close_button].set_caption("&Chiudi");
    Command1[help_button].set_caption("&Aiuto ?");

    cmdElettronica.set_caption("Dati per la fattura &elettronica");

    connect();
}

void frmIntestazioneFatture::connect() {
    const auto saves_changes_of = [this](TextBox& box) {
        box.on_key_press = [this](int&) { Command1[save_button].set_enabled(true); };
        box.on_edit = [this] { Command1[save_button].set_enabled(true); };
    };
    for (TextBox& box : Text1) saves_changes_of(box);
    for (TextBox& box : txtBanca) saves_changes_of(box);
    saves_changes_of(txtDescrizione);
    Command3.on_click = [this] {
        Command1[save_button].set_enabled(true);
        program_.doors().ask_issuer_name();
    };
    Command2.on_click = [this] {
        const auto box = share(Text1[codice_fiscale]); // the letterhead lives as long as the calculator
        program_.doors().calculate_fiscal_code([this, box](const std::string& code) {
            box->set_text(code);
            Command1[save_button].set_enabled(true);
        });
    };

    Command1[save_button].on_click = [this] { save_letterhead(); };
    Command1[close_button].on_click = [this] { unload(); };
    set_keys(nullptr, &Command1[close_button]);
    Command1[help_button].on_click = [this] { show_help(); };
    cmdElettronica.on_click = [this] { program_.doors().edit_e_invoice_issuer(); };
}

void frmIntestazioneFatture::on_load() {
    templates.Option1.set_selected(true);
    logo.load();
    Text1[nome].set_text(program_.NomeIntestatario);
    load_letterhead();
}

bool frmIntestazioneFatture::on_query_unload(UnloadReason reason) {
    if (!Command1[save_button].enabled()) return false;
    const Answer answer = program_.ask_to_save("Le impostazioni sono state modificate.Salvare le modifiche?");
    // When the desktop has ended the answer is nobody's.
    const bool deserted = program_.platform().windows.deserted();
    if (answer == Answer::cancel && !deserted) return true;
    if (answer != Answer::yes) {
        draft_.form_closes(deserted ? reason : UnloadReason::user);
        return false;
    }
    // The user looks at what was saved, or at what is wrong with it, and closes again.
    save_letterhead();
    return true;
}

std::vector<std::pair<const char*, TextBox*>> frmIntestazioneFatture::column_boxes() {
    return {{"Indirizzo", &Text1[indirizzo]},
            {"Telefono", &Text1[telefono]},
            {"Fax", &Text1[fax]},
            {"Codice_Fiscale", &Text1[codice_fiscale]},
            {"Partita_IVA", &Text1[partita_iva]},
            {"email", &Text1[email]},
            {"Descrizione_Attività", &txtDescrizione},
            {"Banca", &txtBanca[banca]},
            {"ABI", &txtBanca[abi]},
            {"CAB", &txtBanca[cab]},
            {"CC", &txtBanca[conto]}};
}

void frmIntestazioneFatture::load_letterhead() {
    Database& database = program_.database();
    Recordset& row = database.rsIntestazione;
    if (row.is_open()) row.close();
    bool there = false;
    skip_failures([&] {
        row.open(select_letterhead, database.dbConnection);
        there = !row.eof();
    });
    if (!there) return;
    for (const auto& [column, box] : column_boxes()) {
        // A null leaves its box as it is.
        skip_failures([&, &name = column, &to = box] { to->set_text(row.text(name)); });
    }
    row.close();
    skip_failures([&] { templates.read_template_in_force(); });
}

Control& frmIntestazioneFatture::control_of(e_invoice::Field field) {
    using e_invoice::Field;
    switch (field) {
    case Field::issuer_codice_fiscale:
        return Text1[codice_fiscale];
    case Field::issuer_indirizzo:
        return Text1[indirizzo];
    case Field::issuer_telefono:
        return Text1[telefono];
    case Field::issuer_fax:
        return Text1[fax];
    case Field::issuer_email:
        return Text1[email];
    case Field::issuer_banca:
        return txtBanca[banca];
    default:
        return Text1[partita_iva];
    }
}

bool frmIntestazioneFatture::may_be_saved() {
    const auto refuse = [&](const char* message, TextBox& box) {
        program_.message(message, BoxIcon::exclamation);
        box.set_focus();
        return false;
    };
    if (Text1[nome].empty()) return refuse("Inserire nome della Ditta", Text1[nome]);
    if (Text1[indirizzo].empty()) return refuse("Inserire indirizzo della Ditta", Text1[indirizzo]);
    if (Text1[codice_fiscale].empty() && Text1[partita_iva].empty()) {
        return refuse("Inserire Codice Fiscale o Partita IVA", Text1[codice_fiscale]);
    }
    return true;
}

void frmIntestazioneFatture::save_letterhead() {
    if (!may_be_saved()) return;
    Database& database = program_.database();
    database.close_results();
    database.rsIntestazione.open("DELETE * FROM DatiIntestazione", database.dbConnection);
    database.close_results();

    // Values go in as they stand: an apostrophe breaks this statement, when the table is empty already.
    std::vector<ColumnText> row{{"Nome_Azienda", program_.NomeIntestatario}};
    for (const auto& [column, box] : column_boxes()) row.push_back({column, box->text()});
    database.rsIntestazione.open(insert_statement("DatiIntestazione", row), database.dbConnection);
    database.close_results();
    draft_.drop();
    program_.message("Dati Intestazione Salvati correttamente.", BoxIcon::information);
    Command1[save_button].set_enabled(false);
    ChiudiDatabase(program_);
    ApriDatabase(program_);
}

// The draft

std::string frmIntestazioneFatture::draft_mode() const {
    return Command1[save_button].enabled() ? "modifica" : "";
}

std::vector<Control*> frmIntestazioneFatture::draft_fields() {
    std::vector<Control*> fields;
    for (const auto& [column, box] : column_boxes()) fields.push_back(box);
    return fields;
}

bool frmIntestazioneFatture::take_up(const FormDraft& draft) {
    Command1[save_button].set_enabled(true);
    draft_.fill(draft);
    return true;
}

void frmIntestazioneFatture::show_help() {
    program_.doors().show_help(
        " Tarvello - Intestazione Fatture",
        "Per poter utilizzare le funzioni di stampa delle fatture è necessario impostare correttamente i "
        "dati di intestazione seguendo la seguente procedura:\n\n"
        "1) Inserire i propri dati personali. Questi dati saranno visualizzati nel campo di intestazione "
        "delle fatture stampate.\n"
        "2) Selezionare un modello di fattura tra quelli disponibili.\n"
        "3) Premere il pulsante 'Salva Dati'\n\n\n"
        "E' possibile inoltre creare modelli di fatture personalizzati o modificare quelli esistenti.");
}

} // namespace tarvello
