#include "customers/customer_form.h"

#include "failure.h"
#include "program/doors.h"
#include "program/messages.h"
#include "program/net_functions.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "text/numbers.h"

namespace tarvello {
namespace {

using namespace customer_box;

/// The pictures of the tool bar by their numbers.
namespace tool_picture {
const char* const new_customer = "nuovo-cliente";
const char* const change = "modifica";
const char* const mail = "posta";
const char* const cancel = "annulla";
const char* const list = "elenco";
const char* const close = "chiudi";
const char* const save = "salva";
} // namespace tool_picture

/// The places of those tool bar buttons that a mode treats apart.
namespace tool {
constexpr std::size_t new_customer = 1;
constexpr std::size_t change = 2;
constexpr std::size_t cancel = 4;
} // namespace tool

namespace command = customer_command;

/// What was under way, in the form's drafts.
const char* const draft_new = "nuovo";
const char* const draft_change = "modifica";

/// What a button of the tool bar does in a mode.
void show_mode(ToolButton& button, const std::string& caption, const char* picture) {
    button.set_caption(caption);
    button.set_picture(picture);
    button.set_shortcut(caption == "Nuovo Cliente"   ? "Ctrl+N"
                        : caption == "Modifica Dati" ? "Ctrl+M"
                                                     : "Ctrl+S");
}

const char* const first_customer = "SELECT TOP 1 * FROM Clienti";

} // namespace

frmClienti::frmClienti(Program& program) : Form(program, "frmClienti"), program_(program) {
    connect_boxes();
    connect_commands();
    set_tab_order();
}

void frmClienti::connect_boxes() {
    const char* const labels[] = {"Codice Fiscale", "Nome",          "Indirizzo",  "CAP",    "Prov.",
                                  "Città",          "Telefono",      "Fax",        "e-mail", "Note",
                                  "Cliente n°",     "Cognome /R.S.", "Partita IVA"};
    txtfields.each([&](std::size_t i, TextBox& box) {
        lblLabels[i].set_caption(labels[i]);
        box.set_locked(true);
        if (i == numero) return;
        box.set_max_length(i == cap ? 5 : i == provincia ? 2 : 200);
        Shape& shape =
            ShapeAnagrafica.try_emplace(i, *this, "ShapeAnagrafica_" + std::to_string(i)).first->second;
        shape.set_visible(false);
        box.on_key_press = [this, i](int& key) { filter_key(i, key); };
        box.on_change = [&box, &shape] { shape.set_visible(!box.empty()); };
        box.on_got_focus = [&shape] { shape.set_visible(true); };
        box.on_lost_focus = [&box, &shape] {
            if (box.empty()) shape.set_visible(false);
        };
    });
    txtCurrentClient.set_locked(true);
    Text1.on_key_press = [this](int& key) { filter_search_key(key); };
    Label8.set_caption("1. Selezionare una voce.");
    Label2.set_caption("2. Inserisci il testo da cercare");
    for (const char* item : {"Codice Fiscale", "Partita IVA", "Cognome/Ragione Sociale", "Nome"}) {
        Combo1.add_item(item);
    }
}

void frmClienti::connect_commands() {
    Toolbar1.add_button("Nuovo Cliente", "Nuovo Cliente", tool_picture::new_customer);
    Toolbar1.add_button("Modifica Dati", "Modifica Dati", tool_picture::change);
    Toolbar1.add_button("Invia e-mail", "e-mail", tool_picture::mail);
    Toolbar1.add_button("Annulla", "Annulla", tool_picture::cancel);
    Toolbar1.add_button("Show", "Elenco", tool_picture::list);
    Toolbar1.add_button("Chiudi", "Chiudi", tool_picture::close);
    Toolbar1.on_button_click = [this](ToolButton& button) { press_tool(button.key()); };

    struct Text {
        const char* caption;
        const char* tool_tip;
        const char* picture;
    };
    const Text texts[] = {{"Primo", "Visualizza primo cliente", "primo"},
                          {"", "Cliente precedente", ""},
                          {"", "Cliente successivo", ""},
                          {"Ultimo", "Visualizza ultimo cliente", "ultimo"},
                          {"Elimina Cliente", "Elimina il cliente corrente", "elimina"},
                          {"Modifica Dati", "Modifica i dati del cliente corrente", ""},
                          {"Nuovo Cliente", "Inserisci un nuovo cliente", ""},
                          {"Annulla", "Annulla procedura corrente", ""},
                          {"Cerca Cliente", "", "cerca"},
                          {"Chiudi", "", ""},
                          {"don't delete", "Inserisci un nuovo cliente", ""},
                          {"don't delete", "Inserisci un nuovo cliente", ""}};
    cmd.each([&](std::size_t i, CommandButton& button) {
        button.set_caption(texts[i].caption);
        button.set_tool_tip(texts[i].tool_tip);
        button.set_picture(texts[i].picture);
        button.on_click = [this, i] { press(i); };
    });
    Frame3.set_visible(false);
    set_shortcuts();

    cmdCalcolaCF.set_caption("CF");
    cmdCalcolaCF.set_tool_tip(messages::fiscal_code_tip);
    cmdCalcolaCF.set_enabled(false);
    cmdCalcolaCF.on_click = [this] { compute_fiscal_code(); };
    cmdmail.set_caption("e-mail");
    cmdmail.on_click = [this] { send_mail(); };
    cmdSendmail.on_click = [this] { send_mail(); };
    cmdElettronica.set_caption("Fattura elettronica");
    cmdElettronica.set_tool_tip("Dove vanno le fatture elettroniche del cliente");
    cmdElettronica.on_click = [this] {
        if (txtfields[numero].empty()) return;
        program_.doors().edit_e_invoice_customer(leading_int16(txtfields[numero].text()),
                                                 txtCurrentClient.text());
    };
}

void frmClienti::set_shortcuts() {
    const char* const tools[] = {"Ctrl+N", "Ctrl+M", "Ctrl+I", "Alt+A", "Ctrl+L", "Alt+C"};
    for (std::size_t place = 1; place <= Toolbar1.size(); ++place)
        Toolbar1.button(place).set_shortcut(tools[place - 1]);
    const std::pair<std::size_t, const char*> commands[] = {
        {command::first, "Alt+Home"}, {command::previous, "Alt+Left"}, {command::next, "Alt+Right"},
        {command::last, "Alt+End"},   {command::remove, "Alt+E"},      {command::search, "Ctrl+F"}};
    for (const auto& [index, keys] : commands) cmd[index].set_shortcut(keys);
    cmdCalcolaCF.set_shortcut("F8");
    cmdmail.set_shortcut("Alt+I");
    cmdElettronica.set_shortcut("Ctrl+E");
    Text1.lead_enter_to(cmd[command::search]);
}

void frmClienti::set_tab_order() {
    // The boxes in the order of an address; the number, which nobody types, comes last of all.
    order_tabs({&txtfields[cognome],
                &txtfields[nome],
                &txtfields[codice_fiscale],
                &txtfields[partita_iva],
                &txtfields[indirizzo],
                &txtfields[cap],
                &txtfields[provincia],
                &txtfields[citta],
                &txtfields[telefono],
                &txtfields[fax],
                &txtfields[email],
                &txtfields[appunti],
                &cmdCalcolaCF,
                &cmdmail,
                &Toolbar1,
                &cmd[command::first],
                &cmd[command::previous],
                &cmd[command::next],
                &cmd[command::last],
                &cmd[command::remove],
                &cmdElettronica,
                &cmd[command::search],
                &Combo1,
                &Text1,
                &txtCurrentClient,
                &txtfields[numero]});
}

void frmClienti::on_load() {
    place_top_left();
    set_size(8235, 7485);
    cmd[command::previous].set_picture("freccia-sinistra");
    cmd[command::next].set_picture("freccia-destra");
    ChiudiPannelloRicerca();
    cmd[command::cancel].flip_enabled();
    set_caption(title);
    show_first_row(highest_customer);
}

void frmClienti::InvertiBlocchiCampi() {
    for (TextBox& box : txtfields) box.set_locked(!box.locked());
    cmdCalcolaCF.flip_enabled();
    txtfields[numero].set_locked(true);
}

void frmClienti::InvertiComandi(const std::string& mode) {
    const auto flip_all_but = [this](std::size_t kept, std::size_t kept_tool) {
        cmd.each([&](std::size_t i, CommandButton& button) {
            if (i != kept) button.flip_enabled();
        });
        cmdmail.flip_enabled();
        cmdSendmail.flip_enabled();
        cmdElettronica.flip_enabled();
        for (std::size_t place = 1; place <= Toolbar1.size(); ++place) {
            if (place != kept_tool && place != tool::cancel) Toolbar1.button(place).flip_visible();
        }
    };
    if (mode == "Salva") flip_all_but(command::new_customer, tool::new_customer);
    if (mode == "Modifica Dati") flip_all_but(command::change, tool::change);
    if (mode == "Cerca Cliente" || mode == "OK") flip_all_but(command::search, tool::cancel);
}

void frmClienti::SvuotaCampi() {
    for (TextBox& box : txtfields) box.clear();
    txtCurrentClient.clear();
}

void frmClienti::ChiudiRecordsetClienti() {
    skip_failures([this] { program_.database().rsClienti.close(); },
                  [this] { program_.database().rsFatture.close(); });
}

Recordset& frmClienti::open_customers(const std::string& statement) {
    Recordset& customers = program_.database().rsClienti;
    if (customers.is_open()) customers.close();
    customers.open(statement, program_.database().dbConnection);
    return customers;
}

void frmClienti::show_first_row(const std::string& statement) {
    Recordset& customers = open_customers(statement);
    CaricaCliente();
    customers.close();
}

void frmClienti::tell(const std::string& text, BoxIcon icon) { program_.message(text, icon, title); }

// Commands

void frmClienti::press_tool(const std::string& key) {
    if (key == "Nuovo Cliente") press(command::new_customer);
    if (key == "Modifica Dati") press(command::change);
    if (key == "Invia e-mail") send_mail();
    if (key == "Annulla") press(command::cancel);
    if (key == "Show") ElencaClienti();
    if (key == "Chiudi") press(command::close);
}

void frmClienti::press(std::size_t pressed) {
    AllUpperCase();
    const std::int16_t number = leading_int16(txtfields[numero].text());
    switch (pressed) {
    case command::first:
    case command::previous:
    case command::next:
    case command::last:
        page(pressed, number);
        break;
    case command::remove:
        EliminaCliente();
        break;
    case command::change:
        change_customer(number);
        break;
    case command::new_customer:
        new_customer(number);
        break;
    case command::cancel:
        cancel();
        break;
    case command::search:
        search();
        break;
    case command::close:
        unload();
        break;
    default: // the two commands without a function
        break;
    }
}

void frmClienti::page(std::size_t pressed, std::int16_t number) {
    if (!program_.session().mnuChiudiDatabase.enabled()) {
        tell(messages::no_database, BoxIcon::information);
        unload();
        return;
    }
    ChiudiPannelloRicerca();
    if (pressed == command::first) return show_first_row(first_customer);
    if (pressed == command::last) return show_first_row(highest_customer);

    const std::string n = std::to_string(number);
    if (pressed == command::previous) ChiudiRecordsetClienti();
    Recordset& customers =
        open_customers(pressed == command::previous ? "SELECT * FROM Clienti WHERE Numero_Cliente <=" + n +
                                                          " ORDER BY Numero_Cliente DESC"
                                                    : "SELECT * FROM Clienti WHERE Numero_Cliente>=" + n);
    // The first row is the customer on view, if it still exists. Past the last one nothing can be read, and
    // the record on view stays.
    if (!customers.eof()) customers.move_next();
    CaricaCliente();
    customers.close();
}

void frmClienti::new_customer(std::int16_t number) {
    CommandButton& button = cmd[command::new_customer];
    ToolButton& tool_button = Toolbar1.button(tool::new_customer);
    ChiudiPannelloRicerca();
    if (button.caption() == "Nuovo Cliente") {
        SvuotaCampi();
        InvertiBlocchiCampi();
        button.set_caption("Salva");
        show_mode(tool_button, "Salva", tool_picture::save);
    } else {
        if (!ControllaNuovoCliente()) return;
        SalvaCliente("Salva", number);
        InvertiBlocchiCampi();
        button.set_caption("Nuovo Cliente");
        show_mode(tool_button, "Nuovo Cliente", tool_picture::new_customer);
    }
    InvertiComandi("Salva");
    draft_.begin();
}

void frmClienti::change_customer(std::int16_t number) {
    CommandButton& button = cmd[command::change];
    ToolButton& tool_button = Toolbar1.button(tool::change);
    if (button.caption() == "Modifica Dati") {
        InvertiBlocchiCampi();
        txtfields[cognome].set_focus();
        InvertiComandi("Modifica Dati");
        button.set_caption("Aggiorna Dati");
        show_mode(tool_button, "Aggiorna Dati", tool_picture::save);
        draft_.begin();
        return;
    }
    if (!ControllaModificaCliente()) return;
    if (program_.confirm("Apportare le modifiche anche a tutte le fatture emesse a nome del cliente?",
                         title)) {
        AggiornaFattureCliente();
    }
    SalvaCliente("Modifica Dati", number);
    InvertiBlocchiCampi();
    InvertiComandi("Modifica Dati");
    button.set_caption("Modifica Dati");
    show_mode(tool_button, "Modifica Dati", tool_picture::change);
}

void frmClienti::cancel() {
    draft_.give_up();
    ToolButton& new_tool = Toolbar1.button(tool::new_customer);
    ToolButton& change_tool = Toolbar1.button(tool::change);
    show_mode(new_tool, "Nuovo Cliente", tool_picture::new_customer);
    show_mode(change_tool, "Modifica Dati", tool_picture::change);
    if (cmd[command::change].caption() == "Aggiorna Dati") {
        SvuotaCampi();
        InvertiBlocchiCampi();
        cmd[command::change].set_caption("Modifica Dati");
        InvertiComandi("Modifica Dati");
        show_first_row(highest_customer);
    }
    if (cmd[command::new_customer].caption() == "Salva") {
        SvuotaCampi();
        InvertiBlocchiCampi();
        cmd[command::new_customer].set_caption("Nuovo Cliente");
        InvertiComandi("Salva");
        show_first_row(highest_customer);
    }
    if (cmd[command::search].caption() == "OK") {
        SvuotaCampi();
        InvertiBlocchiCampi();
        ChiudiPannelloRicerca();
        InvertiComandi("OK");
        cmd[command::search].set_caption("Cerca Cliente");
        show_first_row(first_customer);
    }
}

// The draft

std::string frmClienti::draft_mode() const {
    if (cmd[command::new_customer].caption() == "Salva") return draft_new;
    return cmd[command::change].caption() == "Aggiorna Dati" ? draft_change : "";
}

std::vector<Control*> frmClienti::draft_fields() {
    std::vector<Control*> fields;
    for (TextBox& box : txtfields) {
        if (&box != &txtfields[numero]) fields.push_back(&box);
    }
    return fields;
}

std::string frmClienti::draft_words(const FormDraft& draft) const {
    return draft.mode == draft_new ? "nella scheda di un nuovo cliente"
                                   : "nella scheda del cliente n° " + draft.record;
}

bool frmClienti::take_up(const FormDraft& draft) {
    if (draft.mode == draft_change) {
        show_first_row("SELECT * FROM Clienti WHERE Numero_Cliente=" +
                       std::to_string(leading_int16(draft.record)));
        if (txtfields[numero].text() != draft.record) return false;
        change_customer(leading_int16(draft.record));
    } else {
        new_customer(0);
    }
    draft_.fill(draft);
    return true;
}

void frmClienti::compute_fiscal_code() {
    // A calculator that cannot be opened is not worth a message.
    skip_failures([this] {
        program_.doors().calculate_fiscal_code("Clienti", txtfields[cognome].text(), txtfields[nome].text(),
                                               share(txtfields[codice_fiscale]));
    });
}

void frmClienti::send_mail() {
    if (txtfields[email].empty()) return tell(messages::no_mail_address, BoxIcon::information);
    ApriMail(program_, txtfields[email].text());
}

} // namespace tarvello
