#include "invoices/invoice_form_fixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarvello::testing {
namespace {

using ::testing::HasSubstr;

struct InvoiceDraft : InvoiceFormTest {
    const std::string folder = fake.program_directory + "/stato/bozze";

    InvoiceDraft() { given_invoice({{"Numero_Fattura", "7"}, {"Data_Fattura", "01/03/2006"}}); }

    std::string draft() {
        if (!std::filesystem::exists(folder)) return {};
        for (const auto& file : std::filesystem::directory_iterator(folder)) return file.path();
        return {};
    }
    std::string content() { return draft().empty() ? "" : fake.files.read(draft()); }
    Timer& pause() { return dynamic_cast<Timer&>(*form().find("TimerBozza")); }

    void start_typing() {
        press("Nuova Fattura");
        form().ComboIVAApplicata.set_text("20");
        form().customer.announce_new_customer();
        fill_customer(1);
        fill_line(0, "L'opera\\prima", "100");
    }
    /// The process ends where it stands, and the form is opened again.
    void stop_and_open() {
        program->keep_drafts();
        form().unload(UnloadReason::shut_down);
        form().show();
    }
};

TEST_F(InvoiceDraft, ANewInvoiceComesBackAsItWasTyped) {
    start_typing();
    form().DTPicker1.pick(make_date(2006, 3, 4));
    form().CheckPagamento.click();
    form().txtPagamento.set_text("a vista");
    form().FrameBloccaFattura.set_enabled(false); // without the dialog
    form().CheckSpese.set_checked(true);
    form().FrameBloccaFattura.set_enabled(true);
    form().txtImportoSpeseAnticipate.set_text("€ 5,00");
    form().txtArticoloEsenzione.set_text("15");
    boxes().expect_any(Answer::yes);
    stop_and_open();
    EXPECT_THAT(boxes().last().text, HasSubstr("Non è stato salvato quanto scritto in una fattura nuova ("));
    EXPECT_EQ(form().DTPicker1.date(), make_date(2006, 3, 4));
    EXPECT_EQ(form().txtNumeroFattura.text(), "8");
    EXPECT_TRUE(form().txtImportoSpeseAnticipate.visible());
    EXPECT_FALSE(form().customer.txtAnagrafica[5].locked());
    EXPECT_FALSE(draft().empty()) << "until it is saved";
    save();
    const Row row = newest();
    EXPECT_EQ(row.at("Prestazione1"), "L'opera\\prima");
    EXPECT_EQ(row.at("Pagamento"), "a vista");
    EXPECT_EQ(row.at("Importo_Spese") + row.at("Articolo_Esenzione"), "€ 5,0015");
    EXPECT_EQ(sql("SELECT * FROM Clienti").at(0).at("Cognome_Ragione_Sociale"), "Rossi");
    EXPECT_EQ(draft(), "");
    stop_and_open(); // nothing to offer
}

TEST_F(InvoiceDraft, IsWrittenWhenAFieldIsLeftAndOnceASecond) {
    press("Nuova Fattura");
    form().PrestazioneSingola[0].enter();
    form().PrestazioneSingola[0].leave();
    EXPECT_EQ(draft(), "") << "nothing typed";
    fill(form().PrestazioneSingola[0], "prima");
    EXPECT_THAT(content(), HasSubstr("prima"));
    EXPECT_EQ(std::filesystem::status(draft()).permissions(), std::filesystem::perms{0600});
    fill(form().PrestazioneSingola[1], "seconda");
    EXPECT_EQ(content().find("seconda"), std::string::npos);
    pause().tick();
    EXPECT_THAT(content(), HasSubstr("seconda"));
    pause().tick();
    EXPECT_FALSE(pause().enabled());
}

TEST_F(InvoiceDraft, GoesWithWhatTheUserGivesUp) {
    const MessageBox ask =
        question("La fattura non è stata salvata.\n\nChiudere la finestra e perdere quanto scritto?");
    start_typing();
    boxes().expect(ask, Answer::no);
    form().close_by_user();
    EXPECT_NE(content(), "");
    press("Annulla");
    EXPECT_EQ(draft(), "");
    start_typing();
    boxes().expect(ask, Answer::yes);
    form().close_by_user();
    EXPECT_EQ(program->loaded<frmTarvello>(), nullptr);
    EXPECT_EQ(draft(), "");
    start_typing();
    boxes().expect_any(Answer::no);
    stop_and_open();
    EXPECT_EQ(form().cmdNuovaFattura.caption(), "Nuova Fattura");
    EXPECT_EQ(draft(), "");
}

TEST_F(InvoiceDraft, WhatHasGotIntoTheArchiveIsNotOfferedAgain) {
    start_typing();
    form().Calcola();
    program->keep_drafts();
    const std::string path = draft();
    pause().tick();
    std::string kept = content();
    save();
    const std::string number = "ComboNumeroCliente\t1\n";
    ASSERT_THAT(kept, HasSubstr(number));
    fake.files.write(path, kept); // as if the process had ended behind the INSERT
    stop_and_open();
    EXPECT_EQ(draft(), "");
}

TEST_F(InvoiceDraft, AChangeComesBackOnItsOwnInvoice) {
    given_invoice({{"Numero_Fattura", "8"}, {"Data_Fattura", "02/03/2006"}});
    for (const bool there : {true, false}) {
        form().cmdNavigazione[invoice_move::first].click();
        press("Modifica Dati");
        fill(form().PrestazioneSingola[0], there ? "nuova" : "altra");
        if (!there) sql("DELETE * FROM Fatture WHERE ID=1");
        boxes().expect_any(Answer::yes);
        if (!there) boxes().expect_any();
        stop_and_open();
        EXPECT_EQ(form().cmdModificaDati.caption(), there ? "Aggiorna Dati" : "Modifica Dati");
        EXPECT_EQ(form().PrestazioneSingola[0].text(), there ? "nuova" : "");
        EXPECT_EQ(form().txtCurrent_ID.text(), there ? "1" : "2");
        if (there) press("Annulla");
    }
    EXPECT_THAT(boxes().last().text, HasSubstr(draft()));
    EXPECT_THAT(content(), HasSubstr("altra")) << "kept all the same";
}

} // namespace
} // namespace tarvello::testing
