#include "invoices/invoice_form_fixture.h"

namespace tarvello::testing {
namespace {

struct InvoiceSave : InvoiceFormTest {
    InvoiceSave() { given_invoice({{"Data_Fattura", "01/01/2006"}}); }
};

TEST_F(InvoiceSave, EveryColumnIsWritten) {
    settings().txtProfessione.set_text("Rivalsa INPS");
    start_invoice(3);
    form().customer.txtAnagrafica[0].enter();
    form().customer.txtAnagrafica[0].set_text(" rssmra80a01h501u ");
    form().customer.txtAnagrafica[6].set_text("01234567890");
    const std::string surname = "D'Amico & C. \"Il 100%\"; -- 😀";
    form().customer.txtAnagrafica[5].set_text(" " + surname);
    form().customer.txtNome.set_text("مريم");
    form().DTPicker1.pick(make_date(2006, 12, 31));
    for (std::size_t i = 0; i < 5; ++i) {
        fill_line(i, " L'opera n." + std::to_string(i + 1) + " ", "100," + std::to_string(i));
    }
    form().PrestazioneSingola[1].set_text("   "); // not empty, and stored as nothing
    form().CheckRivalsa.click();
    form().ComboPercentualeRivalsa.set_text("2");
    windows().expect_modal("frmArticoloEsenzione", [](Form& dialog) {
        auto& articles = dynamic_cast<frmArticoloEsenzione&>(dialog);
        articles.Option3.click();
        articles.OKButton.click();
    });
    form().CheckSpese.click();
    fill(form().txtImportoSpeseAnticipate, "14,62");
    form().CheckRitenuta.click();
    form().ComboRitenuta.set_text("20");
    form().ComboRitenutaSu.set_text("100");
    form().CheckPagamento.click();
    form().txtPagamento.set_text("Bonifico\nentro 30 giorni");
    save();

    Row row = newest();
    Row expected =
        as_row("Numero_Fattura=2; Data_Fattura=31/12/2006; Anno=2006; Numero_Cliente=3; "
               "Codice_Fiscale=RSSMRA80A01H501U; Partita_IVA=01234567890; Nome=مريم; "
               "Indirizzo=Via Roma 1; CAP=00100; Provincia=RM; Città=Roma; Prestazione1=L'opera n.1; "
               "Importo1=€ 100,00; Prestazione2=; Importo2=€ 100,10; Prestazione3=L'opera n.3; "
               "Importo3=€ 100,20; Prestazione4=L'opera n.4; Importo4=€ 100,30; Prestazione5=L'opera n.5; "
               "Importo5=€ 100,40; Rivalsa=Sì; Dicitura_Rivalsa=Rivalsa INPS; Percentuale_Rivalsa=2; "
               "Importo_Rivalsa=€ 10,02; Imponibile=€ 511,02; Aliquota_IVA=20; Imposta_IVA=€ 102,20; "
               "Spese=Sì; IVA_Spese=0; Importo_Spese=€ 14,62; Articolo_Esenzione=(Art. 74 D.p.r. 633/72); "
               "Totale_Fattura=€ 627,84; Ritenuta=Sì; Importo_Ritenuta=€ 100,20; Percentuale_Ritenuta=20; "
               "Ritenuta_Su=100; Importo_Netto=€ 527,64; Check_Pagamento=Sì; "
               "Pagamento=Bonifico\nentro 30 giorni");
    expected["Cognome_Ragione_Sociale"] = surname;
    expected["ID"] = form().txtCurrent_ID.text();
    EXPECT_EQ(row, expected);

    // The same row changed: its key stays, another row is left alone.
    const Row other = stored(1);
    press("Modifica Dati");
    form().CheckSpese.click();
    form().CheckRivalsa.click();
    form().CheckRitenuta.click();
    form().CheckPagamento.click();
    form().customer.txtAnagrafica[2].set_text("i-00199");
    form().ComboIVAApplicata.set_text("Esente");
    fill(form().txtImportoPrestazioni[4], "0,40");
    press("Modifica Dati");
    const Row changes =
        as_row("CAP=I-00199; Importo5=€ 0,40; Rivalsa=; Percentuale_Rivalsa=; Importo_Rivalsa=; "
               "Imponibile=€ 401,00; Aliquota_IVA=Esente; Imposta_IVA=€ 0,00; Spese=; "
               "Importo_Spese=; Articolo_Esenzione=; Totale_Fattura=€ 401,00; Ritenuta=; "
               "Importo_Ritenuta=; Importo_Netto=€ 401,00; Check_Pagamento=; Pagamento=");
    for (const auto& [column, text] : changes) row.at(column) = text;
    EXPECT_EQ(newest(), row);
    EXPECT_EQ(stored(1), other);
}

TEST_F(InvoiceSave, ChecksInTheirOrder) {
    frmTarvello& f = form();
    press("Nuova Fattura");
    f.SbloccaAnagrafica();
    f.customer.txtNuovoInserimento.set_text("NEW"); // the block may be typed
    f.txtNumeroFattura.set_text(" ");
    windows().expect_modal("frmArticoloEsenzione");
    f.CheckSpese.click();
    f.CheckRivalsa.click();
    f.CheckRitenuta.click();
    f.ComboIVASpeseAnticipate.set_text("");
    // All of it is wrong: each message names the first fault that is left.
    const auto refused = [&](const char* message, Control& focus, BoxIcon icon = BoxIcon::exclamation) {
        boxes().expect({message, "Tarvello 4", icon, BoxButtons::ok, 1});
        press("Nuova Fattura");
        boxes().expect_none_left();
        EXPECT_EQ(f.focus(), &focus) << message;
        EXPECT_EQ(f.cmdNuovaFattura.caption(), "Salva Fattura");
    };
    refused("Inserire il Numero della Fattura.", f.txtNumeroFattura);
    f.txtNumeroFattura.set_text("2");
    refused("Inserire il Cognome o Ragione Sociale del Cliente.", f.customer.txtAnagrafica[5]);
    f.customer.txtAnagrafica[5].set_text("Rossi");
    f.customer.txtAnagrafica[0].set_text("  ");
    refused("Inserire il Codice Fiscale o la Partita IVA.", f.customer.txtAnagrafica[0]);
    f.customer.txtAnagrafica[6].set_text("1");
    refused("Inserire l'indirizzo.", f.customer.txtAnagrafica[1]);
    f.customer.txtAnagrafica[1].set_text("Via Roma 1");
    refused("Inserire il CAP.", f.customer.txtAnagrafica[2]);
    f.customer.txtAnagrafica[2].set_text("00100");
    refused("Inserire la provincia.", f.customer.txtAnagrafica[3]);
    f.customer.txtAnagrafica[3].set_text("RM");
    refused("Inserire la città.", f.customer.txtAnagrafica[4]);
    f.customer.txtAnagrafica[4].set_text("Roma");
    f.PrestazioneSingola[0].set_text("   ");
    fill_line(2, "Consulenza", "");
    refused("Per completare la fattura è necessario inserire almeno una prestazione professionale.",
            f.PrestazioneSingola[0]);
    fill_line(0, "Consulenza", "100");
    fill(f.txtImportoPrestazioni[3], "10");
    f.PrestazioneSingola[1].set_text(" "); // blanks count as a description here
    refused("Inserire l'importo della prestazione.", f.txtImportoPrestazioni[1]);
    fill(f.txtImportoPrestazioni[1], "10");
    refused("Inserire l'importo della prestazione.", f.txtImportoPrestazioni[2]);
    fill(f.txtImportoPrestazioni[2], "10");
    refused("Inserire la descrizione.", f.PrestazioneSingola[3]);
    fill_line(3, "Consulenza", "10");
    refused("Selezionare l'aliquota IVA.", f.ComboIVAApplicata, BoxIcon::information);
    f.ComboIVAApplicata.set_text("20");
    refused("Impostare l'aliquota relativa alla rivalsa.", f.Toolbar1.button(1));
    f.ComboPercentualeRivalsa.set_text("4");
    refused("Impostare l'IVA relativa alle spese anticipate.", f.Toolbar1.button(1));
    f.ComboIVASpeseAnticipate.set_text("0");
    refused("Digitare l'importo relativo alle spese anticipate.", f.txtImportoSpeseAnticipate);
    fill(f.txtImportoSpeseAnticipate, "10");
    refused("Selezionare L'aliquota di Ritenuta.", f.ComboRitenuta);
    f.ComboRitenuta.set_text("20");
    boxes().expect(question("\nSalvare la fattura?"), Answer::no);
    press("Nuova Fattura");
    EXPECT_EQ(f.cmdNuovaFattura.caption(), "Salva Fattura");
    EXPECT_EQ(sql("SELECT * FROM Fatture").size(), 1U);
}

TEST_F(InvoiceSave, AStatementThatFailsEndsTheProgram) {
    const auto breaks = [&](TextBox& field, const std::string& text) {
        start_invoice();
        fill_line(0, "Consulenza", "100");
        field.set_text(text);
        boxes().expect_any(Answer::yes);
        expect_process_end([&] { press("Nuova Fattura"); });
        boxes().expect_none_left();
        EXPECT_EQ(sql("SELECT * FROM Fatture").size(), 1U);
        press("Annulla"); // the fake desktop goes on where the real one has ended
    };
    breaks(form().customer.ComboNumeroCliente, "nessuno");
}

TEST_F(InvoiceSave, AnApostropheIsStoredInEveryText) {
    start_invoice();
    fill_line(0, "Consulenza", "100");
    form().CheckRivalsa.set_caption("Contributo all'ente");
    form().txtArticoloEsenzione.set_text("dell'articolo 15");
    form().txtPagamento.set_text("all'ordine?");
    form().customer.txtAnagrafica[0].set_text("O'X");
    save();
    form().cmdModificaDati.click();
    form().customer.txtAnagrafica[6].set_text("1'2");
    press("Modifica Dati");
    const Row row = newest();
    EXPECT_EQ(row.at("Dicitura_Rivalsa"), "Contributo all'ente");
    EXPECT_EQ(row.at("Articolo_Esenzione"), "dell'articolo 15");
    EXPECT_EQ(row.at("Pagamento"), "all'ordine?");
    EXPECT_EQ(row.at("Codice_Fiscale"), "O'X");
    EXPECT_EQ(row.at("Partita_IVA"), "1'2");
}

TEST_F(InvoiceSave, TheInvoiceNumberMayBeTwiceInAYear) {
    given_invoice({{"Numero_Fattura", "7"}});
    start_invoice();
    form().cmdNuovoAnnoFatturazione.click();
    form().txtNumeroFattura.type("7 ter");
    fill_line(0, "Consulenza", "100");
    save();
    EXPECT_EQ(newest().at("Numero_Fattura"), "7");
    EXPECT_EQ(form().txtNumeroFattura.text(), "7 ter");
}

} // namespace
} // namespace tarvello::testing
