#include "documents/letterhead_form.h"

#include "documents/letterhead.h"
#include "documents/template_info_form.h"
#include "failure.h"
#include "fiscal_code/calculator_form.h"
#include "program/open_database.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "shell/help_form.h"
#include "shell/issuer_name_form.h"

namespace tarvello {

void RidimensionaImmagine(const Picture& origin, Picture& destination) {
    if (origin.picture().empty()) return;
    const float ratio = origin.width() / origin.height();
    float width = destination.width();
    float height = destination.height();
    if (width / height <= ratio) {
        height = width / ratio;
    } else {
        width = height * ratio;
    }
    destination.clear();
    destination.paint_picture(origin.picture(), {(destination.width() - width) / 2,
                                                 (destination.height() - height) / 2, width, height});
}

frmIntestazioneFatture::frmIntestazioneFatture(Program& program)
    : Form(program, "frmIntestazioneFatture"), program_(program) {
    set_caption("Intestazione");
    // Enter goes from field to field; buttons in between would be pressed by it.
    order_tabs({&Text1[0], &Text1[3], &Text1[6], &Text1[1], &Text1[4], &Text1[2], &Text1[7], &Text1[5],
                &txtDescrizione, &txtBanca[0], &txtBanca[1], &txtBanca[2], &txtBanca[3], &Command3,
                &Command2});

    Text1[0].set_locked(true);
    Text1[5].set_visible(false);
    Command3.set_caption("Modifica Nome / Ragione Sociale");
    Command2.set_caption("Calcola Codice Fiscale");
    FrameBanca.set_caption("Coordinate Bancarie per i pagamenti");

    FrameLogo.set_caption("Logo per la stampa");
    // The preview has the proportions, and at 96 dots to the inch the size, of the logo's box on paper.
    PicDest.set_size(2640, 2025);
    PicOrigine.set_visible(false);
    Command7.set_caption("Seleziona");
    Command8.set_caption("Elimina Logo");
    Command8.set_enabled(false);
    CheckAdattaLogo.set_caption("Adatta dimensione Immagine");
    CheckAdattaLogo.set_enabled(false);
    FrameStampa.set_caption("Impostazioni di Stampa");
    Label14.set_caption("Elenco modelli disponibili");
    Command6.set_caption("Salva");
    Command6.set_enabled(false);

    FrameWord.set_caption("Impostazioni file di Microsoft Word");
    Option1.set_caption("Rich Text Format (*.rtf)");
    Option2.set_caption("Word (*.doc)");
    txtModello.set_locked(true);
    txtModelloAttuale.set_locked(true);
    Command5.set_caption("Salva");
    Command5.set_enabled(false);
    cmdAnteprimaModelli.set_caption("Anteprima");
    cmdNuovoModello.set_caption("Nuovo Modello");
    ImportaModello.set_caption("Importa Modello");
    cmdInfoModelli.set_caption("Informazioni sui modelli");

    Command1[0].set_caption("Salva");
    Command1[0].set_enabled(false);
    Command1[1].set_caption("&Chiudi");
    Command1[2].set_caption("&Aiuto ?");

    connect();
}

void frmIntestazioneFatture::connect() {
    const KeyEvent changes = [this](int&) { Command1[0].set_enabled(true); };
    for (TextBox& box : Text1) box.on_key_press = changes;
    for (TextBox& box : txtBanca) box.on_key_press = changes;
    txtDescrizione.on_key_press = changes;
    Command3.on_click = [this] {
        Command1[0].set_enabled(true);
        program_.form<frmRegister>().show_modal();
    };
    Command2.on_click = [this] { program_.form<frmCalcolaCF>().show_modal(); };

    Command7.on_click = [this] { or_show_failure([this] { choose_logo(); }); };
    Command8.on_click = [this] { remove_logo(); };
    CheckAdattaLogo.on_click = [this] {
        fit_logo();
        SaveValueSetting(program_, CheckAdattaLogo);
    };
    ListModelliReport.on_click = [this] { choose_layout(); };
    Command6.on_click = [this] { save_layout(); };

    Option1.on_click = [this] { or_show_failure([this] { list_templates("*.rtf"); }); };
    Option2.on_click = [this] { or_show_failure([this] { list_templates("*.doc"); }); };
    File1.on_click = [this] {
        txtModello.set_text(File1.text());
        Command5.set_enabled(true);
    };
    Command5.on_click = [this] { save_template(); };
    cmdAnteprimaModelli.on_click = [this] { preview_template(); };
    cmdInfoModelli.on_click = [this] { program_.form<frmInfoModelli>().show_modal(); };
    cmdNuovoModello.on_click = [this] { start_template(); };
    ImportaModello.on_click = [this] { import_template(); };

    Command1[0].on_click = [this] { save_letterhead(); };
    Command1[1].on_click = [this] { unload(); };
    Command1[2].on_click = [this] { show_help(); };
}

void frmIntestazioneFatture::on_load() {
    Option1.set_selected(true);
    ListModelliReport.set_items({"Arial (modello-1)", "Thaoma (modello-2)"});

    const std::string logo = program_.session().txtPercorsoLogo.text();
    if (!logo.empty()) {
        Command8.set_enabled(true);
        CheckAdattaLogo.set_enabled(true);
        skip_failures([&] { load_logo(logo); }); // a logo that has gone leaves the boxes blank
        ReadValueSetting(program_, CheckAdattaLogo);
        fit_logo();
    }
    Text1[0].set_text(program_.NomeIntestatario);
    load_letterhead();
}

bool frmIntestazioneFatture::on_query_unload(UnloadReason) {
    if (!Command1[0].enabled()) return false;
    if (!program_.confirm("Le impostazioni sono state modificate.Salvare le modifiche?")) return false;
    // The user looks at what was saved, or at what is wrong with it, and closes again.
    save_letterhead();
    return true;
}

void frmIntestazioneFatture::or_show_failure(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        program_.message(failure.description(), BoxIcon::exclamation);
    }
}

// The letterhead

void frmIntestazioneFatture::load_letterhead() {
    Database& database = program_.database();
    Recordset& row = database.rsIntestazione;
    if (row.is_open()) row.close();
    bool there = false;
    skip_failures([&] {
        row.open("SELECT * FROM DatiIntestazione", database.dbConnection);
        there = !row.eof();
    });
    if (!there) return;
    const auto show = [&](const char* column, TextBox& box) {
        skip_failures([&] { box.set_text(row.text(column)); }); // a null leaves its box as it is
    };
    show("Codice_Fiscale", Text1[3]);
    show("Partita_IVA", Text1[6]);
    show("Indirizzo", Text1[1]);
    show("email", Text1[4]);
    show("Telefono", Text1[2]);
    show("Fax", Text1[7]);
    show("Descrizione_Attività", txtDescrizione);
    show("Banca", txtBanca[0]);
    show("ABI", txtBanca[1]);
    show("CAB", txtBanca[2]);
    show("CC", txtBanca[3]);
    row.close();
    skip_failures([&] { read_template_in_force(); });
}

bool frmIntestazioneFatture::may_be_saved() {
    const auto refuse = [&](const char* message, TextBox& box) {
        program_.message(message, BoxIcon::exclamation);
        box.set_focus();
        return false;
    };
    if (Text1[0].empty()) return refuse("Inserire nome della Ditta", Text1[0]);
    if (Text1[1].empty()) return refuse("Inserire indirizzo della Ditta", Text1[1]);
    if (Text1[3].empty() && Text1[6].empty()) {
        return refuse("Inserire Codice Fiscale o Partita IVA", Text1[3]);
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
    std::string values = "'" + program_.NomeIntestatario + "'";
    for (const TextBox* box : {&Text1[1], &Text1[2], &Text1[7], &Text1[3], &Text1[6], &Text1[4],
                               &txtDescrizione, &txtBanca[0], &txtBanca[1], &txtBanca[2], &txtBanca[3]}) {
        values += ",'" + box->text() + "'";
    }
    database.rsIntestazione.open("INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Telefono,Fax,"
                                 "Codice_Fiscale,Partita_IVA,email,Descrizione_Attività,Banca,ABI,CAB,CC) "
                                 "VALUES (" +
                                     values + ")",
                                 database.dbConnection);
    database.close_results();
    program_.message("Dati Intestazione Salvati correttamente.", BoxIcon::information);
    Command1[0].set_enabled(false);
    ChiudiDatabase(program_);
    ApriDatabase(program_);
}

void frmIntestazioneFatture::show_help() {
    tarvello::show_help(
        program_, " Tarvello - Intestazione Fatture",
        "Per poter utilizzare le funzioni di stampa delle fatture è necessario impostare correttamente i "
        "dati di intestazione seguendo la seguente procedura:\n\n"
        "1) Inserire i propri dati personali. Questi dati saranno visualizzati nel campo di intestazione "
        "delle fatture stampate.\n"
        "2) Selezionare un modello di fattura tra quelli disponibili.\n"
        "3) Premere il pulsante 'Salva Dati'\n\n\n"
        "E' possibile inoltre creare modelli di fatture personalizzati o modificare quelli esistenti.");
}

// Logo and layout

void frmIntestazioneFatture::load_logo(const std::string& path) {
    const PictureSize size = program_.platform().pictures.size(path);
    PicOrigine.set_size(size.width, size.height);
    PicOrigine.set_picture(path);
}

void frmIntestazioneFatture::fit_logo() {
    if (CheckAdattaLogo.checked()) {
        PicDest.clear();
        RidimensionaImmagine(PicOrigine, PicDest);
    } else {
        PicDest.set_picture(PicOrigine.picture());
    }
}

void frmIntestazioneFatture::choose_logo() {
    const auto path = program_.platform().dialogs.open_file(
        {"Seleziona Logo", {{"Formato jpg (*.jpg)", "*.JPG"}, {"Formato GIF (*.gif)", "*.gif"}}});
    if (!path) return;
    program_.session().txtPercorsoLogo.set_text(*path);
    load_logo(*path);
    PicDest.set_picture(*path);
    CheckAdattaLogo.set_enabled(true);
    CheckAdattaLogo.set_checked(false);
    Command8.set_enabled(true);
}

void frmIntestazioneFatture::remove_logo() {
    program_.session().txtPercorsoLogo.clear();
    Command8.set_enabled(false);
    PicOrigine.clear();
    PicDest.clear();
    CheckAdattaLogo.set_enabled(false);
}

void frmIntestazioneFatture::choose_layout() {
    Command6.set_enabled(true);
    program_.session().txtModelloReport.set_text(ListModelliReport.list_index() == 0 ? "1" : "2");
}

void frmIntestazioneFatture::save_layout() {
    skip_failures([&] { SaveTextSetting(program_, program_.session().txtModelloReport); },
                  [&] { Command6.set_enabled(false); });
}

} // namespace tarvello
