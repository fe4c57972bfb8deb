#include "invoices/invoice_form.h"

#include "documents/print_reports.h"
#include "documents/word_filling.h"
#include "failure.h"
#include "invoices/field_marker.h"
#include "invoices/list_by_year_form.h"
#include "invoices/shared_results.h"
#include "platform/platform.h"
#include "preferences/rates.h"
#include "program/messages.h"
#include "program/net_functions.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "text/numbers.h"

namespace tarvello {
namespace {

/// The caption of CheckRivalsa while no wording has been chosen in the preferences.
const char* const default_wording = "Rivalsa";

} // namespace

frmTarvello::frmTarvello(Program& program)
    : Form(program, "frmTarvello"), customer(program, *this), search(program, *this), note(*this),
      program_(program) {
    Toolbar1.add_button("Nuova Fattura", "Nuova Fattura", new_picture);
    Toolbar1.add_button("Modifica Dati", "Modifica Dati", change_picture);
    Toolbar1.add_button("Crea file Word", "Crea file Word", "documento");
    Toolbar1.add_button("Stampa Fattura", "Stampa Fattura", "stampa");
    Toolbar1.add_button("Invia e-mail", "Invia e-mail", "posta");
    Toolbar1.add_button("Annulla", "Annulla", "annulla");
    Toolbar1.add_button("Show", "Show", "elenco");
    Toolbar1.add_button("Chiudi", "Chiudi", "chiudi");
    Toolbar1.add_button("Fattura elettronica", "Fattura elettronica", "fattura-elettronica");
    set_captions();
    set_lists();
    set_first_state();
    connect_buttons();
    connect_fields();

    order_tabs({&Toolbar1});
    order_tabs({&cmdElettronica, &cmdChiudi});
    const auto block = [this](std::size_t box) { return &customer.txtAnagrafica[box]; };
    order_tabs({block(CustomerBlock::cognome), &customer.txtNome, block(CustomerBlock::partita_iva),
                block(CustomerBlock::codice_fiscale), &customer.cmdCalcolaCF, block(CustomerBlock::indirizzo),
                block(CustomerBlock::cap), block(CustomerBlock::citta), block(CustomerBlock::provincia)});
    std::vector<Control*> services;
    for (std::size_t i = 0; i < lines; ++i) {
        services.push_back(&PrestazioneSingola[i]);
        services.push_back(&txtImportoPrestazioni[i]);
    }
    order_tabs(services);
}

void frmTarvello::set_captions() {
    cmdNavigazione[invoice_move::first].set_caption("Prima");
    cmdNavigazione[invoice_move::previous].set_tool_tip("Fattura precedente");
    cmdNavigazione[invoice_move::previous].set_picture("freccia-sinistra");
    cmdNavigazione[invoice_move::next].set_tool_tip("Fattura successiva");
    cmdNavigazione[invoice_move::next].set_picture("freccia-destra");
    cmdNavigazione[invoice_move::last].set_caption("Ultima");
    cmdNavigazione[invoice_move::previous_year].set_caption("Anno Precedente");
    cmdNavigazione[invoice_move::next_year].set_caption("Anno Successivo");
    cmdNuovoAnnoFatturazione.set_caption("Nuovo Anno di Fatturazione");
    cmdNuovoAnnoFatturazione.set_tool_tip(
        "Permette di specificare un nuovo anno di emissione per le fatture.");
    cmdDettagliPrestazioni.set_caption("Dettagli");
    CheckRivalsa.set_caption(default_wording);
    CheckSpese.set_caption("Spese Anticipate es. IVA");
    CheckRitenuta.set_caption("% R.A.");
    CheckPagamento.set_caption("Pagamento");
    cmdCalcola.set_caption("Calcola");
    cmdCalcola.set_picture("calcolatrice");
    cmdNuovaFattura.set_caption("Nuova Fattura");
    cmdModificaDati.set_caption("Modifica Dati");
    cmdAnnulla.set_caption("Annulla");
    cmdAnnulla.set_cancels();
    Toolbar1.button(invoice_tool::cancel).set_cancels();
    cmdEliminaFattura.set_caption("Elimina Fattura");
    cmdStampaFattura.set_caption("&Stampa Fattura");
    cmdStampaFattura.set_tool_tip("Visualizza anteprima di stampa / Stampa fattura");
    StampaWord.set_caption("Crea File Word");
    StampaWord.set_tool_tip("Crea fattura in formato Microsoft Word (crea file)");
    CheckEmail.set_caption("Invia e-mail");
    cmdChiudi.set_caption("Chiudi");
    cmdElettronica.set_caption("Fattura elettronica");
    cmdElettronica.set_tool_tip("Crea e segue la fattura elettronica");
    set_shortcuts();
}

void frmTarvello::set_shortcuts() {
    const char* const tools[] = {"Ctrl+N", "Ctrl+M", "Ctrl+D", "Ctrl+P", "Ctrl+I",
                                 "Alt+A",  "Ctrl+L", "Alt+C",  "Ctrl+E"};
    CommandButton* const below[] = {&cmdNuovaFattura,  &cmdModificaDati, &StampaWord,
                                    &cmdStampaFattura, &CheckEmail,      &cmdAnnulla,
                                    nullptr,           &cmdChiudi,       &cmdElettronica};
    for (std::size_t place = 1; place <= Toolbar1.size(); ++place) {
        Toolbar1.button(place).set_shortcut(tools[place - 1]);
        if (below[place - 1]) below[place - 1]->tell_shortcut(tools[place - 1]);
    }
    const char* const moves[] = {"Alt+Home", "Alt+Left", "Alt+Right", "Alt+End", "Alt+PgUp", "Alt+PgDown"};
    cmdNavigazione.each([&](std::size_t i, CommandButton& move) { move.set_shortcut(moves[i]); });
    cmdEliminaFattura.set_shortcut("Alt+E");
    cmdCalcola.set_shortcut("F9");
    cmdNuovoAnnoFatturazione.set_shortcut("Alt+U");
    customer.cmdCercaCliente.set_shortcut("F2");
    customer.cmdCalcolaCF.set_shortcut("F8");
    search.cmdCerca.set_shortcut("Ctrl+F");
    note.cmdNota.set_shortcut("Alt+N");
}

void frmTarvello::set_lists() {
    for (const char* rate : rates::rivalsa) ComboPercentualeRivalsa.add_item(rate);
    for (const char* rate : rates::iva) ComboIVAApplicata.add_item(rate);
    ComboIVASpeseAnticipate.add_item("0");
    ComboIVASpeseAnticipate.set_list_index(0);
    for (const char* rate : rates::ritenuta) ComboRitenuta.add_item(rate);
    for (auto share = rates::ritenuta_shares.rbegin(); share != rates::ritenuta_shares.rend(); ++share) {
        ComboRitenutaSu.add_item(*share);
    }
}

void frmTarvello::add_rates() {
    const SessionFields& session = program_.session();
    add_rates_in_use(program_, {{ComboPercentualeRivalsa, "Percentuale_Rivalsa", session.txt_RIVALSA_default},
                                {ComboIVAApplicata, "Aliquota_IVA", session.txt_IVA_default},
                                {ComboRitenuta, "Percentuale_Ritenuta", session.txt_Ritenuta_default},
                                {ComboRitenutaSu, "Ritenuta_Su", session.txt_RitenutaSu_default}});
}

void frmTarvello::set_first_state() {
    DTPicker1.set_date(program_.platform().clock.today());
    DTPicker_CURRENT_YEAR.set_date(DTPicker1.date());
    for (Control* hidden :
         {static_cast<Control*>(&txtCurrent_ID), static_cast<Control*>(&txtfield_CURRENT_YEAR),
          static_cast<Control*>(&txtfield_CURRENT_MONTH), static_cast<Control*>(&txtfield_CURRENT_DAY),
          static_cast<Control*>(&xtConnected), static_cast<Control*>(&DTPicker_CURRENT_YEAR),
          static_cast<Control*>(&ComboIVASpeseAnticipate),
          // Two buttons without a task.
          static_cast<Control*>(&cmdDettagliPrestazioni), static_cast<Control*>(&Command1)}) {
        hidden->set_visible(false);
    }
    for (Shape& shape : ShapePrestazioneSingola) shape.set_visible(false);
    for (Shape& shape : ShapeImporto) shape.set_visible(false);
    ShapeImportoSpeseAnticipate.set_visible(false);
    // Results come from the calculation alone.
    for (TextBox* result : {&txtImportoRivalsa, &txtImponibile, &txtIVA, &txtTotaleFattura,
                            &txtRitenutaAcconto, &txtImportoNetto}) {
        result->set_locked(true);
    }
    rivalsa_changed();
    ritenuta_changed();
    show_expenses(false);
    txtPagamento.set_back_color(colors::grey);
}

void frmTarvello::connect_buttons() {
    Toolbar1.on_button_click = [this](ToolButton& button) { press_toolbar(button); };
    for (std::size_t i = 0; i < cmdNavigazione.size(); ++i) {
        cmdNavigazione[i].on_click = in_its_archive([this, i] { navigate(i); });
    }
    search.cmdCerca.on_click = [this] { run_search(); };
    cmdNuovaFattura.on_click = in_its_archive([this] {
        if (cmdNuovaFattura.caption() == "Nuova Fattura") {
            start_new_invoice();
        } else {
            save_new_invoice();
        }
    });
    cmdModificaDati.on_click = in_its_archive([this] {
        if (cmdModificaDati.caption() == "Modifica Dati") {
            start_change();
        } else {
            save_changed_invoice();
        }
    });
    cmdAnnulla.on_click = in_its_archive([this] { cancel(); });
    cmdEliminaFattura.on_click = in_its_archive([this] { delete_invoice(); });
    cmdCalcola.on_click = [this] { Calcola(); };
    cmdChiudi.on_click = [this] { unload(); };
    cmdElettronica.on_click = in_its_archive([this] { open_electronic(); });
    CheckEmail.on_click = in_its_archive([this] { write_mail(); });
    StampaWord.on_click = in_its_archive([this] { create_word_document(program_, on_view()); });
    cmdStampaFattura.on_click = in_its_archive([this] { print_invoice(program_, on_view()); });
    cmdNuovoAnnoFatturazione.on_click = [this] { start_numbering_year(); };
    customer.cmdCercaCliente.on_click = [this] {
        customer.pick();
        SbloccaAnagrafica();
        DTPicker1.set_focus();
    };
}

void frmTarvello::press_toolbar(const ToolButton& button) {
    const std::pair<const char*, const CommandButton*> same_as[] = {
        {"Nuova Fattura", &cmdNuovaFattura},
        {"Modifica Dati", &cmdModificaDati},
        {"Crea file Word", &StampaWord},
        {"Stampa Fattura", &cmdStampaFattura},
        {"Invia e-mail", &CheckEmail},
        {"Annulla", &cmdAnnulla},
        {"Chiudi", &cmdChiudi},
        {"Fattura elettronica", &cmdElettronica},
    };
    for (const auto& [key, command] : same_as) {
        if (button.key() == key && command->on_click) command->on_click();
    }
    if (button.key() != "Show") return;
    auto& list = program_.form<frmSelectYear>();
    list.return_to(share<InvoiceView>(*this));
    list.show_modal();
}

void frmTarvello::connect_fields() {
    DTPicker1.on_change = [this] { date_changed(); };
    CheckRivalsa.on_click = [this] { rivalsa_changed(); };
    CheckSpese.on_click = [this] { spese_changed(); };
    CheckRitenuta.on_click = [this] { ritenuta_changed(); };
    CheckPagamento.on_click = [this] { pagamento_changed(); };
    ComboIVASpeseAnticipate.on_click = [this] { expenses_rate_chosen(); };
    for (CheckBox* box : {&CheckRivalsa, &CheckSpese, &CheckRitenuta, &CheckPagamento}) {
        box->on_key_press = [box](int& key) {
            if (key != keys::enter) return;
            key = 0;
            box->set_checked(!box->checked());
        };
    }
    ComboRitenuta.on_key_press = [](int& key) {
        if (key >= ' ' && (key < '0' || key > '9')) key = 0;
    };

    for (std::size_t i = 0; i < lines; ++i) {
        mark(PrestazioneSingola[i], ShapePrestazioneSingola[i]);
        mark(txtImportoPrestazioni[i], ShapeImporto[i]);
        txtImportoPrestazioni[i].on_lost_focus = [this, i] { leave_amount(i); };
    }
    mark(txtImportoSpeseAnticipate, ShapeImportoSpeseAnticipate);
    txtImportoSpeseAnticipate.on_lost_focus = [this] { leave_expenses(); };
}

void frmTarvello::on_load() {
    set_caption("Fatture");
    place_top_left();
    set_size(11655, 8865);
    search.set_open(false);
    customer.expect_known_customer();
    BloccaFattura();
    txtNumeroFattura.set_locked(true);
    BloccaAnagrafica();
    cmdNuovoAnnoFatturazione.set_enabled(false);
    const std::string& wording = program_.session().txtProfessione.text();
    const bool none = wording.empty() || wording == missing_setting || wording == "Falso";
    CheckRivalsa.set_caption(none ? default_wording : wording);

    show_newest();
    add_rates();
    txtfield_CURRENT_YEAR.set_text(std::to_string(year_of(DTPicker1.date())));
    txtfield_CURRENT_MONTH.set_text(std::to_string(month_of(DTPicker1.date())));
    txtfield_CURRENT_DAY.set_text(std::to_string(day_of(DTPicker1.date())));
}

bool frmTarvello::on_query_unload(UnloadReason reason) {
    const bool by_hand = reason == UnloadReason::user || reason == UnloadReason::code;
    return by_hand && draft_.anything_typed() &&
           !program_.confirm(
               "La fattura non è stata salvata.\n\nChiudere la finestra e perdere quanto scritto?");
}

void frmTarvello::on_unload(UnloadReason reason) {
    draft_.form_closes(reason);
    ChiudiRecordset(program_.database());
}

void frmTarvello::rivalsa_changed() {
    const bool charged = CheckRivalsa.checked();
    ComboPercentualeRivalsa.clear();
    ComboPercentualeRivalsa.set_enabled(charged);
    ComboPercentualeRivalsa.set_back_color(charged ? colors::white : colors::grey);
    txtImportoRivalsa.set_enabled(charged);
    if (charged) {
        ComboPercentualeRivalsa.set_text(program_.session().txt_RIVALSA_default.text());
    } else {
        txtImportoRivalsa.clear();
    }
}

void frmTarvello::ritenuta_changed() {
    const bool charged = CheckRitenuta.checked();
    for (ComboBox* combo : {&ComboRitenuta, &ComboRitenutaSu}) {
        combo->set_enabled(charged);
        combo->set_back_color(charged ? colors::white : colors::grey);
    }
    if (charged) {
        ComboRitenuta.set_text(program_.session().txt_Ritenuta_default.text());
        ComboRitenutaSu.set_text(program_.session().txt_RitenutaSu_default.text());
    } else {
        txtRitenutaAcconto.clear();
        LabelRitenuta.set_caption({});
    }
}

void frmTarvello::show_expenses(bool part_of_invoice) {
    txtImportoSpeseAnticipate.set_enabled(part_of_invoice);
    txtImportoSpeseAnticipate.set_visible(part_of_invoice);
    ShapeImportoSpeseAnticipate.set_back_color(part_of_invoice ? colors::white : colors::grey);
    if (!part_of_invoice) ShapeImportoSpeseAnticipate.set_visible(false); // also of an amount that was empty
}

void frmTarvello::spese_changed() {
    // Outside of the new and modify modes a row is being shown: its expenses come from the row, no dialog.
    if (!FrameBloccaFattura.enabled()) return;
    if (!CheckSpese.checked()) {
        txtImportoSpeseAnticipate.clear();
        show_expenses(false);
        txtArticoloEsenzione.clear();
        return;
    }
    txtImportoSpeseAnticipate.set_enabled(true);
    ShapeImportoSpeseAnticipate.set_back_color(colors::white);
    txtArticoloEsenzione.set_enabled(true);
    auto& dialog = program_.form<frmArticoloEsenzione>();
    dialog.ask_for(share<ExemptionTarget>(*this));
    dialog.show_modal();
    // A cancelled dialog has taken the tick away, and with it the expenses.
    if (CheckSpese.checked()) txtImportoSpeseAnticipate.set_visible(true);
}

void frmTarvello::expenses_rate_chosen() {
    if (!FrameBloccaFattura.enabled()) return;
    if (ComboIVASpeseAnticipate.text() == "0") {
        auto& dialog = program_.form<frmArticoloEsenzione>();
        dialog.txtparam.set_text("1");
        dialog.ask_for(share<ExemptionTarget>(*this));
        dialog.show_modal();
    }
    txtArticoloEsenzione.clear();
}

void frmTarvello::exempt_expenses(const std::optional<std::string>& article) {
    if (article) txtArticoloEsenzione.set_text(*article);
    ShapeImportoSpeseAnticipate.set_visible(true);
}

void frmTarvello::drop_expenses() {
    CheckSpese.set_checked(false);
    txtArticoloEsenzione.clear();
}

void frmTarvello::pagamento_changed() {
    if (!CheckPagamento.checked()) {
        txtPagamento.set_back_color(colors::grey);
        txtPagamento.clear();
        return;
    }
    txtPagamento.set_back_color(colors::white);
    // Without a letterhead there is no bank to add: the box works all the same.
    Recordset& rsIntestazione = program_.database().rsIntestazione;
    skip_failures([&] { rsIntestazione.close(); },
                  [&] {
                      rsIntestazione.open(select_letterhead, program_.database().dbConnection);
                      if (rsIntestazione.eof()) return;
                      txtPagamento.set_text(txtPagamento.text() + rsIntestazione.text_or_empty("Banca") +
                                            "\nABI: " + rsIntestazione.text_or_empty("ABI") +
                                            "\nCAB: " + rsIntestazione.text_or_empty("CAB") +
                                            "\nC/C: " + rsIntestazione.text_or_empty("CC"));
                  },
                  [&] { rsIntestazione.close(); });
}

void frmTarvello::run_search() {
    if (search.cmdCerca.caption() == "Cerca Fattura") {
        PulisciFattura();
        ImpostaStato("Cerca Fattura");
        search.cmdCerca.set_caption("OK");
        search.set_open(true);
        return;
    }
    if (!search.list_matches(share<InvoiceView>(*this))) {
        program_.message("Nessua fattura trovata.", BoxIcon::information);
        return;
    }
    search.set_open(false);
    SbloccaAnagrafica();
    ImpostaStato("OK");
    search.cmdCerca.set_caption("Cerca Fattura");
}

InvoiceOnView frmTarvello::on_view() const { return {txtCurrent_ID.text(), DTPicker1.date()}; }

void frmTarvello::write_mail() {
    ChiudiRecordset(program_.database());
    Recordset& rsClienti = program_.database().rsClienti;
    rsClienti.open("SELECT * FROM Clienti WHERE Numero_Cliente=" +
                       plain_number(leading_number(customer.ComboNumeroCliente.text())),
                   program_.database().dbConnection);
    const std::string address = rsClienti.eof() ? std::string() : rsClienti.text_or_empty("email");
    rsClienti.close();
    if (address.empty()) {
        program_.message(messages::no_mail_address, BoxIcon::information);
    } else {
        ApriMail(program_, address);
    }
}

} // namespace tarvello
