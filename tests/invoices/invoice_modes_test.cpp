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

    /// Nothing of an invoice is on view.
    void expect_cleared() {
        expect_shown("txtNome=; ComboNumeroCliente=; txtArticoloEsenzione=; ComboPercentualeRivalsa=; "
                     "txtImportoRivalsa=; txtImponibile=; txtIVA=; txtTotaleFattura=; txtRitenutaAcconto=; "
                     "txtImportoSpeseAnticipate=; txtImportoNetto=; txtPagamento=; LabelImponibile=; "
                     "LabelRitenuta=; CheckRivalsa=; CheckSpese=; CheckRitenuta=; CheckPagamento=; "
                     "ComboIVASpeseAnticipate=0");
        for (const TextBox& box : form().customer.txtAnagrafica) EXPECT_EQ(box.text(), "") << box.name();
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(form().PrestazioneSingola[i].text() + form().txtImportoPrestazioni[i].text(), "") << i;
            EXPECT_FALSE(form().ShapePrestazioneSingola[i].visible() || form().ShapeImporto[i].visible())
                << i;
        }
        EXPECT_FALSE(form().txtImportoSpeseAnticipate.visible());
    }
    /// An invoice with a text in every column.
    int given_full_invoice() {
        return given_invoice(as_row(
            "Numero_Fattura=57; Numero_Cliente=7; Codice_Fiscale=CF; Partita_IVA=PI; Nome=Ada; "
            "Cognome_Ragione_Sociale=Rossi; Indirizzo=Via; CAP=00100; Provincia=RM; Città=Roma; "
            "Prestazione1=Perizia; Importo1=€ 10,00; Prestazione2=P2; Importo2=€ 2,00; Prestazione3=P3; "
            "Importo3=€ 3,00; Prestazione4=P4; Importo4=€ 4,00; Prestazione5=P5; Importo5=€ 5,00; "
            "Rivalsa=Sì; "
            "Percentuale_Rivalsa=4; Importo_Rivalsa=€ 1,00; Imponibile=€ 24,00; Aliquota_IVA=20; "
            "Imposta_IVA=€ 4,80; Spese=Sì; IVA_Spese=; Importo_Spese=€ 7,00; Articolo_Esenzione=art. 15; "
            "Totale_Fattura=€ 35,80; Ritenuta=Sì; Importo_Ritenuta=€ 4,00; Percentuale_Ritenuta=20; "
            "Ritenuta_Su=100; Importo_Netto=€ 31,80; Check_Pagamento=Sì; Pagamento=Contanti"));
    }
};

TEST_F(InvoiceModes, OpensLockedOnTheNewestInvoice) {
    given_invoice({{"Numero_Fattura", "13"}});
    given_invoice({{"Numero_Fattura", "12"}, {"Data_Fattura", "31/12/2005"}, {"Importo5", "€ 5,00"}});
    EXPECT_EQ(form().caption(), "Fatture");
    EXPECT_EQ(form().width(), 11655);
    EXPECT_EQ(form().height(), 8865);
    EXPECT_EQ(form().txtNumeroFattura.text(), "12 - 2005");
    EXPECT_TRUE(form().ShapeImporto[4].visible());
    EXPECT_FALSE(form().ShapeImporto[0].visible());
    EXPECT_FALSE(form().FrameBloccaFattura.enabled());
    EXPECT_FALSE(form().FrameData.enabled());
    EXPECT_FALSE(form().cmdNuovoAnnoFatturazione.enabled());
    EXPECT_TRUE(form().txtNumeroFattura.locked());
    EXPECT_TRUE(form().customer.txtAnagrafica[6].locked());
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

TEST_F(InvoiceModes, ShowsItsCommandsAndTheirKeys) {
    expect_faces(
        form(),
        "cmdNavigazione_0=Prima|Alt+Home||; cmdNavigazione_3=Ultima|Alt+End||; "
        "cmdNavigazione_1=|Alt+Left|Fattura precedente|freccia-sinistra; "
        "cmdNavigazione_2=|Alt+Right|Fattura successiva|freccia-destra; "
        "cmdNavigazione_4=Anno Precedente|Alt+PgUp||; cmdNavigazione_5=Anno Successivo|Alt+PgDown||; "
        "cmdNuovoAnnoFatturazione=Nuovo Anno di Fatturazione|Alt+U|"
        "Permette di specificare un nuovo anno di emissione per le fatture.|; "
        "cmdEliminaFattura=Elimina Fattura|Alt+E||; cmdCalcola=Calcola|F9||calcolatrice; "
        "cmdStampaFattura=&Stampa Fattura||Visualizza anteprima di stampa / Stampa fattura|; "
        "StampaWord=Crea File Word||Crea fattura in formato Microsoft Word (crea file)|; "
        "cmdCercaCliente=Seleziona Cliente|F2|Seleziona Cliente / Inserisci Nuovo Cliente|clienti; "
        "cmdCalcolaCF=|F8|Calcola il Codice Fiscale|calcolatrice; "
        "cmdCerca=Cerca Fattura|Ctrl+F||cerca; cmdNota=|Alt+N|Aggiungi / Visualizza Nota|freccia-giu; "
        "Toolbar1_1=Nuova Fattura|Ctrl+N||nuova-fattura; Toolbar1_2=Modifica Dati|Ctrl+M||modifica; "
        "Toolbar1_3=Crea file Word|Ctrl+D||documento; Toolbar1_4=Stampa Fattura|Ctrl+P||stampa; "
        "Toolbar1_5=Invia e-mail|Ctrl+I||posta; Toolbar1_6=Annulla|Alt+A||annulla; "
        "Toolbar1_7=Show|Ctrl+L||elenco; Toolbar1_8=Chiudi|Alt+C||chiudi; Label7=1. Anno; "
        "Label8=2. Cerca in:; Label4=3. Cosa?; CheckSpese=Spese Anticipate es. IVA; "
        "CheckRitenuta=% R.A.; CheckPagamento=Pagamento");
    for (const char* hidden :
         {"txtCurrent_ID", "txtfield_CURRENT_YEAR", "txtNuovoInserimento", "xtConnected",
          "DTPicker_CURRENT_YEAR", "ComboIVASpeseAnticipate", "cmdDettagliPrestazioni", "Command1"}) {
        EXPECT_FALSE(form().find(hidden)->visible()) << hidden;
    }
    given_invoice();
    press("Nuova Fattura");
    expect_faces(form(), "Toolbar1_1=Salva Fattura|Ctrl+S||salva");
    for (TextBox* result : {&form().txtImportoRivalsa, &form().txtImponibile, &form().txtIVA,
                            &form().txtTotaleFattura, &form().txtRitenutaAcconto, &form().txtImportoNetto}) {
        EXPECT_TRUE(result->locked()) << result->name() << ": results come from the calculation alone";
    }
    // Into the boxes in the order of an address, and from each service to its amount.
    const char* const order[] = {"txtAnagrafica_5", "txtNome",         "txtAnagrafica_6", "txtAnagrafica_0",
                                 "txtAnagrafica_1", "txtAnagrafica_2", "txtAnagrafica_4", "txtAnagrafica_3"};
    form().find(order[0])->enter();
    for (std::size_t i = 1; i < std::size(order); ++i) {
        form().focus_next_field();
        EXPECT_EQ(form().focus()->name(), order[i]);
    }
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
    given_invoice({{"Numero_Fattura", "57"}, {"Prestazione1", "Perizia"}});
    settings().txt_IVA_default.set_text("22");
    const auto browse = state();
    const std::string shown = form().txtCurrent_ID.text();
    form().txtNumeroFattura.set_locked(false);
    press("Nuova Fattura");
    EXPECT_TRUE(form().txtNumeroFattura.locked());
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

TEST_F(InvoiceModes, ANewInvoiceAndASearchStartEmpty) {
    given_full_invoice();
    press("Nuova Fattura");
    expect_cleared();
    press("Annulla");
    EXPECT_EQ(form().txtArticoloEsenzione.text() + form().txtPagamento.text(), "art. 15Contanti");
    form().CheckPagamento.set_checked(false);
    form().txtPagamento.set_text("a vista"); // a text without the tick goes too
    form().search.cmdCerca.click();
    expect_cleared();
}

TEST_F(InvoiceModes, ChangeAndBack) {
    given_invoice(as_row("Cognome_Ragione_Sociale=Rossi; Codice_Fiscale=RSSMRA80A01H501U; "
                         "Indirizzo=Via Roma 1; CAP=00100; Provincia=RM; Città=Roma; "
                         "Prestazione1=Perizia; Importo1=€ 10,00; Aliquota_IVA=20"));
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
    expect_cleared();
    EXPECT_TRUE(form().txtNumeroFattura.locked()) << "the first one was to be typed";
    EXPECT_EQ(form().txtCurrent_ID.text(), "");

    form().unload();
    given_full_invoice();
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Perizia");
    sql("DELETE * FROM Fatture WHERE ID=" + form().txtCurrent_ID.text());
    press("Annulla");
    expect_cleared();
    form().txtCurrent_ID.set_text("32768");
    expect_process_end([&] { press("Annulla"); }, "Il numero 32768 è fuori dai limiti: il massimo è 32767.");
}

TEST_F(InvoiceModes, Deletion) {
    given_invoice();
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
    for (int left : {1, 0}) {
        boxes().expect_any(Answer::yes);
        form().cmdEliminaFattura.click();
        EXPECT_EQ(form().txtNumeroFattura.text(), left > 0 ? "1 - 2006" : "");
    }
    EXPECT_EQ(form().txtCurrent_ID.text(), "");
    expect_cleared();
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
