#include "invoices/invoice_form_fixture.h"

namespace tarvello::testing {
namespace {

struct InvoiceModes : InvoiceFormTest {
    /// What the mode decides: enabled, shown and locked, and the captions of the two buttons.
    std::map<std::string, std::string> state() {
        std::map<std::string, std::string> found;
        const auto note = [&](Control& control) {
            found[control.name()] = (control.enabled() ? "on" : "off");
            if (!control.visible()) found[control.name()] += ", hidden";
            if (auto* entry = dynamic_cast<TextEntry*>(&control); entry && entry->locked()) {
                found[control.name()] += ", locked";
            }
            if (auto* button = dynamic_cast<ToolButton*>(&control)) {
                found[control.name()] += ", " + button->caption() + ", " + button->picture();
            }
            if (auto* button = dynamic_cast<CommandButton*>(&control)) {
                found[control.name()] += ", " + button->caption();
            }
        };
        for (Control* control : form().controls()) {
            // The rates follow their boxes, the markers the focus.
            const bool by_mode = !dynamic_cast<Shape*>(control) && !dynamic_cast<ComboBox*>(control);
            if (by_mode) note(*control);
        }
        return found;
    }
    std::string state_of(Control& control) { return state().at(control.name()); }
};

TEST_F(InvoiceModes, OpensOnTheNewestInvoice) {
    given_invoice({{"Numero_Fattura", "11"}, {"Cognome_Ragione_Sociale", "Bianchi"}});
    const int newest = given_invoice({{"Numero_Fattura", "12"},
                                      {"Data_Fattura", "31/12/2005"},
                                      {"Numero_Cliente", "7"},
                                      {"Codice_Fiscale", "RSSMRA80A01H501U"},
                                      {"Partita_IVA", "01234567890"},
                                      {"Nome", "Mario"},
                                      {"Cognome_Ragione_Sociale", "D'angelo"},
                                      {"Indirizzo", "Via Roma 1"},
                                      {"CAP", "00100"},
                                      {"Provincia", "RM"},
                                      {"Città", "Roma"},
                                      {"Prestazione5", "Perizia 😀"},
                                      {"Importo5", "€ 5,00"}});
    settings().txtProfessione.set_text("Falso");
    EXPECT_EQ(form().caption(), "Fatture");
    EXPECT_EQ(form().width(), 11655);
    EXPECT_EQ(form().height(), 8865);
    EXPECT_EQ(form().txtCurrent_ID.text(), std::to_string(newest));
    EXPECT_EQ(form().txtNumeroFattura.text(), "12 - 2005");
    EXPECT_EQ(form().DTPicker1.date(), make_date(2005, 12, 31));
    EXPECT_EQ(form().customer.ComboNumeroCliente.text(), "7");
    EXPECT_EQ(form().customer.txtNome.text(), "Mario");
    const char* customer[] = {"RSSMRA80A01H501U", "Via Roma 1", "00100", "RM", "Roma",
                              "D'angelo",         "01234567890"};
    for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(form().customer.txtAnagrafica[i].text(), customer[i]);
    EXPECT_EQ(form().PrestazioneSingola[4].text(), "Perizia 😀");
    EXPECT_EQ(form().txtImportoPrestazioni[4].text(), "€ 5,00");
    EXPECT_TRUE(form().ShapeImporto[4].visible());
    EXPECT_FALSE(form().ShapeImporto[0].visible());
    EXPECT_EQ(form().txtfield_CURRENT_YEAR.text(), "2005");
    EXPECT_EQ(form().txtfield_CURRENT_MONTH.text(), "12");
    EXPECT_EQ(form().txtfield_CURRENT_DAY.text(), "31");
    EXPECT_FALSE(form().FrameBloccaFattura.enabled());
    EXPECT_FALSE(form().FrameData.enabled());
    EXPECT_FALSE(form().cmdNuovoAnnoFatturazione.enabled());
    EXPECT_TRUE(form().txtNumeroFattura.locked());
    EXPECT_TRUE(form().customer.txtAnagrafica[6].locked());
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

TEST_F(InvoiceModes, WordingOfTheSurcharge) {
    settings().txtProfessione.set_text("False");
    EXPECT_EQ(form().CheckRivalsa.caption(), "Rivalsa");
    boxes().expect_any();
    press("Nuova Fattura");
    EXPECT_EQ(form().CheckRivalsa.caption(), "False") << "a new invoice knows no fallback";
    press("Annulla");
    form().unload();
    settings().txtProfessione.set_text("Contributo");
    given_invoice({{"Dicitura_Rivalsa", "Rivalsa INPS"}});
    EXPECT_EQ(form().CheckRivalsa.caption(), "Rivalsa INPS");
    form().unload();
    given_invoice();
    EXPECT_EQ(form().CheckRivalsa.caption(), "Contributo");
}

TEST_F(InvoiceModes, NewInvoiceAndBack) {
    given_invoice({{"Numero_Fattura", "57"}, {"Prestazione1", "Perizia"}, {"Pagamento", "Contanti"}});
    settings().txt_IVA_default.set_text("22");
    const auto browse = state();
    const std::string shown = form().txtCurrent_ID.text();
    press("Nuova Fattura");
    EXPECT_EQ(form().cmdNuovaFattura.caption(), "Salva Fattura");
    EXPECT_EQ(state_of(form().Toolbar1.button(1)), "on, Salva Fattura, salva");
    for (const std::size_t place : {2, 3, 4, 5, 7, 8}) EXPECT_FALSE(form().Toolbar1.button(place).visible());
    EXPECT_TRUE(form().Toolbar1.button(6).visible());
    for (CommandButton* off :
         {&form().cmdNavigazione[0], &form().cmdNavigazione[5], &form().cmdEliminaFattura,
          &form().cmdModificaDati, &form().cmdStampaFattura, &form().cmdChiudi, &form().search.cmdCerca,
          &form().StampaWord, &form().CheckEmail}) {
        EXPECT_FALSE(off->enabled()) << off->name();
    }
    EXPECT_TRUE(form().cmdNuovoAnnoFatturazione.enabled());
    EXPECT_TRUE(form().cmdCalcola.enabled());
    EXPECT_TRUE(form().FrameBloccaFattura.enabled());
    EXPECT_FALSE(form().FrameData.enabled()) << "the date waits for the customer";
    EXPECT_EQ(form().focus(), &form().customer.cmdCercaCliente);
    EXPECT_EQ(form().txtNumeroFattura.text(), "58");
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "");
    EXPECT_EQ(form().ComboIVAApplicata.text(), "22");
    EXPECT_EQ(form().txtCurrent_ID.text(), shown);

    press("Annulla");
    EXPECT_EQ(state(), browse);
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia") << "the invoice shown before is back";
    EXPECT_EQ(form().txtNumeroFattura.text(), "57 - 2006");

    start_invoice();
    fill_line(0, "Consulenza", "100");
    save();
    EXPECT_EQ(state(), browse) << "the second flip restores what the first one turned";
    EXPECT_EQ(form().txtCurrent_ID.text(), newest().at("ID"));
}

TEST_F(InvoiceModes, ChangeAndBack) {
    given_invoice({{"Cognome_Ragione_Sociale", "Rossi"},
                   {"Codice_Fiscale", "RSSMRA80A01H501U"},
                   {"Indirizzo", "Via Roma 1"},
                   {"CAP", "00100"},
                   {"Provincia", "RM"},
                   {"Città", "Roma"},
                   {"Prestazione1", "Perizia"},
                   {"Importo1", "€ 10,00"},
                   {"Aliquota_IVA", "20"}});
    const auto browse = state();
    press("Modifica Dati");
    EXPECT_EQ(form().cmdModificaDati.caption(), "Aggiorna Dati");
    EXPECT_EQ(form().Toolbar1.button(2).caption(), "Aggiorna Dati");
    for (const std::size_t place : {1, 3, 4, 5, 7, 8}) EXPECT_FALSE(form().Toolbar1.button(place).visible());
    EXPECT_TRUE(form().cmdModificaDati.enabled());
    for (CommandButton* off : {&form().cmdNavigazione[1], &form().cmdNuovaFattura, &form().cmdEliminaFattura,
                               &form().cmdStampaFattura, &form().cmdChiudi, &form().search.cmdCerca,
                               &form().StampaWord, &form().CheckEmail, &form().cmdNuovoAnnoFatturazione}) {
        EXPECT_FALSE(off->enabled()) << off->name();
    }
    EXPECT_TRUE(form().FrameData.enabled());
    EXPECT_FALSE(form().customer.txtAnagrafica[0].locked());
    EXPECT_FALSE(form().PrestazioneSingola[0].locked());
    form().PrestazioneSingola[0].set_text("typed");
    press("Annulla");
    EXPECT_EQ(state(), browse);
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia");

    press("Modifica Dati");
    press("Modifica Dati"); // now "Aggiorna Dati"; no question is asked
    EXPECT_EQ(state(), browse);
    EXPECT_EQ(newest().at("Totale_Fattura"), "€ 12,00") << "calculated before it is written";
}

TEST_F(InvoiceModes, CancellingOnAnEmptyTableOrAVanishedRowClears) {
    boxes().expect_any();
    press("Nuova Fattura");
    form().PrestazioneSingola[0].set_text("Perizia");
    press("Annulla");
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "");
    EXPECT_EQ(form().txtCurrent_ID.text(), "");

    form().unload();
    given_invoice({{"Prestazione1", "Perizia"}});
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia");
    sql("DELETE * FROM Fatture WHERE ID=" + form().txtCurrent_ID.text());
    press("Annulla");
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "");
    form().txtCurrent_ID.set_text("32768");
    expect_process_end([&] { press("Annulla"); }, "Il numero 32768 è fuori dai limiti: il massimo è 32767.");
}

TEST_F(InvoiceModes, Deletion) {
    const int first = given_invoice({{"Data_Fattura", "31/12/2007"}});
    const int second = given_invoice({{"Prestazione1", "Perizia"}});
    boxes().expect(question("\nEliminare la fattura?"), Answer::no);
    form().cmdEliminaFattura.click();
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia");
    boxes().expect(question("\nEliminare la fattura?"), Answer::yes);
    form().cmdEliminaFattura.click();
    EXPECT_TRUE(sql("SELECT * FROM Fatture WHERE ID=" + std::to_string(second)).empty());
    EXPECT_EQ(form().txtCurrent_ID.text(), std::to_string(first)) << "the newest left, of whatever year";
    EXPECT_EQ(form().txtNumeroFattura.text(), "1 - 2007");

    form().txtCurrent_ID.set_text("32768");
    boxes().expect({"Errore nell'eliminazione della fattura.", "Tarvello 4", BoxIcon::critical});
    form().cmdEliminaFattura.click();
    form().txtCurrent_ID.set_text(std::to_string(first));
    boxes().expect_any(Answer::yes);
    form().cmdEliminaFattura.click();
    EXPECT_EQ(form().txtCurrent_ID.text() + form().txtNumeroFattura.text(), "");
    form().cmdEliminaFattura.click(); // nothing is left to ask about
    boxes().expect_none_left();
    boxes().expect({"Nessuna fattura da modificare. Per inserirne una premere \"Nuova Fattura\".",
                    "Tarvello 4", BoxIcon::information});
    form().cmdModificaDati.click();
    EXPECT_EQ(form().cmdModificaDati.caption(), "Modifica Dati");
    program->database().dbConnection.close();
    boxes().expect({"Errore nell'eliminazione della fattura.", "Tarvello 4", BoxIcon::critical});
    form().cmdEliminaFattura.click();
}

TEST_F(InvoiceModes, PaymentBox) {
    sql("INSERT INTO DatiIntestazione (Nome_Azienda,Banca,ABI,CAB,CC) "
        "VALUES ('Studio','Banca di Roma','01005','03200','12345')");
    const std::string bank = "Banca di Roma\nABI: 01005\nCAB: 03200\nC/C: 12345";
    given_invoice({{"Check_Pagamento", "Sì"}, {"Pagamento", "Contanti"}});
    EXPECT_TRUE(form().CheckPagamento.checked());
    EXPECT_EQ(form().txtPagamento.text(), "Contanti") << "what is stored stands, without the bank";
    form().CheckPagamento.click();
    EXPECT_TRUE(form().CheckPagamento.checked()) << "out of reach while browsing";

    press("Nuova Fattura");
    EXPECT_EQ(form().txtPagamento.text(), "");
    EXPECT_EQ(form().txtPagamento.back_color(), colors::grey);
    form().CheckPagamento.click();
    EXPECT_EQ(form().txtPagamento.text(), bank);
    EXPECT_EQ(form().txtPagamento.back_color(), colors::white);
    form().CheckPagamento.click();
    EXPECT_EQ(form().txtPagamento.text(), "");
    form().txtPagamento.type("Entro 30 giorni. ");
    form().CheckPagamento.click();
    EXPECT_EQ(form().txtPagamento.text(), "Entro 30 giorni. " + bank);

    press("Annulla");
    sql("DELETE * FROM DatiIntestazione");
    press("Nuova Fattura");
    form().CheckPagamento.click();
    EXPECT_EQ(form().txtPagamento.text(), "");
}

TEST_F(InvoiceModes, NoteMailAndMarkers) {
    const int reachable = given_customer({{"email", "mario@example.it"}});
    const int silent = given_customer();
    given_invoice({{"Numero_Cliente", std::to_string(reachable)}});
    form().note.cmdNota.click();
    EXPECT_EQ(form().note.FrameNota.height(), 2655);
    form().note.Text1.type("Richiamare");
    form().note.cmdNota.click();
    EXPECT_EQ(form().note.FrameNota.height(), 580);
    form().note.FrameNota.set_height(1000);
    form().note.cmdNota.click();
    EXPECT_EQ(form().note.FrameNota.height(), 1000);

    press("Invia e-mail");
    EXPECT_EQ(fake.desktop.opened, std::vector<std::string>{"mailto:mario@example.it"});
    for (const std::string& customer : {std::to_string(silent), std::string("999"), std::string()}) {
        form().customer.ComboNumeroCliente.set_text(customer);
        boxes().expect(information("Indirizzo e-mail assente."));
        press("Invia e-mail");
    }

    press("Nuova Fattura");
    EXPECT_EQ(form().note.Text1.text(), "Richiamare") << "a note stays across invoices";
    form().PrestazioneSingola[2].enter();
    EXPECT_TRUE(form().ShapePrestazioneSingola[2].visible());
    form().PrestazioneSingola[2].press_key(keys::enter);
    EXPECT_EQ(form().focus(), &form().txtImportoPrestazioni[2]) << "Enter moves on";
    EXPECT_FALSE(form().ShapePrestazioneSingola[2].visible());
    form().PrestazioneSingola[2].type("x");
    form().customer.txtNome.enter();
    EXPECT_TRUE(form().ShapePrestazioneSingola[2].visible());
    EXPECT_TRUE(form().customer.ShapeNome.visible());
    form().PrestazioneSingola[2].press_key(keys::backspace);
    EXPECT_FALSE(form().customer.ShapeNome.visible());
}

TEST_F(InvoiceModes, ClosingLeavesNoResultOpen) {
    given_invoice();
    form();
    program->database().rsFatture.open("SELECT * FROM Fatture", program->database().dbConnection);
    press("Chiudi");
    EXPECT_EQ(program->loaded<frmTarvello>(), nullptr);
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

} // namespace
} // namespace tarvello::testing
