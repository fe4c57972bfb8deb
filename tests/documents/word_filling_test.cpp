#include "documents/word_filling.h"

#include "documents/printing_test.h"
#include "documents/wait_form.h"

#include <filesystem>

namespace tarvello {
namespace {

struct WordFilling : testing::PrintingTest {
    std::string folder = fake.program_directory + "/modelli";
    std::string target = fake.program_directory + "/fattura.doc";
    const MessageBox failed{"Impossibile creare il file Word.", "Tarvello 4", BoxIcon::critical};

    /// Puts a template in force that holds the placeholders line by line.
    void given_template(const std::vector<std::string>& placeholders) {
        std::string text;
        for (const std::string& name : placeholders) text += "[" + name + "]\n";
        fake.files.write(folder + "/prova.rtf", text);
        fake.files.write(folder + "/print.conf", folder + "/prova.rtf\r\n");
    }
    void expect_done() {
        boxes().expect(
            {"File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" + target,
             "Tarvello 4", BoxIcon::information});
    }
    /// Makes the document and gives its lines.
    std::string filled() {
        fake.dialogs.answer_next(target);
        expect_done();
        form().StampaWord.click();
        return fake.files.read(target);
    }
};

TEST_F(WordFilling, ReplacesAllPlaceholdersInTheirOrder) {
    given(full_letterhead(), full_invoice());
    given_template({"%Data%", "%TelefonoDitta%", "%e-mail%", "%Sconosciuto%"});
    EXPECT_EQ(filled(), "[5/3/2006]\n[Tel. 06 1234]\n[e-mail: studio@bianchi.it]\n[%Sconosciuto%]\n");
    EXPECT_EQ(fake.dialogs.last().title, "Crea Documento di Microsoft Word");
    EXPECT_EQ(fake.dialogs.last().filters.at(0).pattern, "*.rtf ");
    EXPECT_EQ(fake.dialogs.last().filters.at(1).pattern, "*.doc");
    const std::vector<std::string> expected{
        "start",
        "open " + folder + "/prova.rtf",
        "replace %Data%=5/3/2006",
        "replace %NomeDitta%=Studio Bianchi",
        "replace %DescrizioneAttività%=Ingegneria civile",
        "replace %TelefonoDitta%=Tel. 06 1234",
        "replace %FaxDitta%=Fax. 06 5678",
        "replace %e-mail%=e-mail: studio@bianchi.it",
        "replace %IndirizzoDitta%=Via Roma 1 - 00100 Roma",
        "replace %CodiceFiscaleDitta%=C.F. BNCMRA80A01H501U",
        "replace %PIDitta%=P.I. 01234567890",
        "replace %NomeCliente%=Luigi",
        "replace %CogRagSoc%=Rossi",
        "replace %IndirizzoCliente%=Corso Italia 12",
        "replace %CAPCliente%=20100",
        "replace %Pro%=MI",
        "replace %CittàClt%=Milano",
        "replace %CodiceFiscaleCliente%=C.F. RSSLGU70B02F205X",
        "replace %PICliente%=P.I. 09876543210",
        "replace %NumeroFattura%=7",
        "replace %Anno%=2006",
        "replace %Descrizione1%=Progetto della struttura",
        "replace %Descrizione2%=Direzione dei lavori",
        "replace %Descrizione3%=Terza",
        "replace %Descrizione4%=Quarta",
        "replace %Descrizione5%=Quinta",
        "replace %Importo1%=€ 1.000,00",
        "replace %Importo2%=€ 234,56",
        "replace %Importo3%=€ 3,00",
        "replace %Importo4%=€ 4,00",
        "replace %Importo5%=€ 5,00",
        "replace %IVA%=20%",
        "replace %ArtEs%=esenti IVA art. 15",
        "replace %Rivalsa%=Rivalsa INPS",
        "replace %AliquotaRivalsa%=2%",
        "replace %ImportoRivalsa%=€ 24,69",
        "replace %Imponibile%=€ 1.259,25",
        "replace %ImpostaIVA%=€ 251,85",
        "replace %TotaleFattura%=€ 1.525,72",
        "replace %SpeseAnticipate%=Spese Anticipate",
        "replace %ImportoSpeseAnticipate%=€ 14,62",
        "replace %ImportoRitenutaAcconto%=€ 246,91",
        "replace %RitenutaAcconto%=Dedotta R.A.",
        "replace %PerRitenuta%=20% su 100% Imponibile",
        "replace %TotaleDovuto%=€ 1.278,81",
        "replace %Pagamento1%=Banca d'appoggio: ",
        "replace %Pagamento2%=Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123",
        "save " + target,
        "quit"};
    EXPECT_EQ(fake.word_processor.log, expected);
    EXPECT_EQ(fake.word_processor.running, 0);
    EXPECT_FALSE(program->loaded<frmAttesa>());
}

TEST_F(WordFilling, WhatIsEmptyVanishesWithItsPrefix) {
    auto letterhead = full_letterhead();
    for (const char* name : {"Telefono", "Fax", "email", "Codice_Fiscale", "Partita_IVA"})
        letterhead[name] = "";
    auto invoice = bare_invoice();
    invoice["Articolo_Esenzione"] = invoice["Aliquota_IVA"] = "";
    given(letterhead, invoice);
    given_template(
        {"%TelefonoDitta%%FaxDitta%%e-mail%%CodiceFiscaleDitta%%PIDitta%%PICliente%%ArtEs%",
         "%SpeseAnticipate%%ImportoSpeseAnticipate%%ImportoRitenutaAcconto%%PerRitenuta%%Pagamento1%",
         "%IVA%", "%Rivalsa%", "%AliquotaRivalsa%", "%RitenutaAcconto%"});
    EXPECT_EQ(filled(), "[]\n[]\n[%]\n[Rivalsa INPS]\n[%]\n[Dedotta R.A.]\n");
}

TEST_F(WordFilling, NullsInGuardedColumnsAreEmpty) {
    given(full_letterhead(), full_invoice());
    sql("DELETE * FROM Fatture");
    auto invoice = full_invoice();
    for (const char* name : {"Spese", "Importo_Spese", "Ritenuta", "Importo_Ritenuta", "Ritenuta_Su"})
        invoice.erase(name);
    insert("Fatture", invoice);
    form().unload();
    given_template({"%SpeseAnticipate%%PerRitenuta%"});
    EXPECT_EQ(filled(), "[]\n");
    sql("UPDATE Fatture SET Ritenuta='Sì' WHERE ID>0"); // now Ritenuta_Su must not be null
    fake.word_processor.log.clear();
    boxes().expect(failed);
    form().StampaWord.click();
    EXPECT_TRUE(fake.word_processor.log.empty());
}

TEST_F(WordFilling, AValueMayHoldALaterPlaceholder) {
    auto invoice = full_invoice();
    invoice["Cognome_Ragione_Sociale"] = "%Anno% %Data%";
    given(full_letterhead(), invoice);
    given_template({"%CogRagSoc%"});
    EXPECT_EQ(filled(), "[2006 %Data%]\n") << "an earlier one stays";
}

TEST_F(WordFilling, NeedsTheLetterhead) {
    given({}, full_invoice());
    boxes().expect({"Per eseguire la stampa è necessario inserire i dati di intestazione", "Tarvello 4",
                    BoxIcon::information});
    form().Toolbar1.press("Crea file Word");
    EXPECT_FALSE(program->database().rsIntestazione.is_open());
}

TEST_F(WordFilling, CancelEndsItWithoutAWord) {
    given(full_letterhead(), full_invoice());
    fake.dialogs.answer_next(std::nullopt);
    form().StampaWord.click();
    EXPECT_TRUE(fake.word_processor.log.empty());
}

TEST_F(WordFilling, WithoutATemplateTheLetterheadFormComes) {
    given(full_letterhead(), full_invoice());
    fake.dialogs.answer_next(target);
    boxes().expect(
        {"Il modello per la stampa delle fatture non è impostato correttamente.\nSelezionarne uno nella "
         "finesta 'Intestazione' e ripetere la stampa.",
         "Tarvello 4", BoxIcon::exclamation});
    windows().expect_modal("frmIntestazioneFatture",
                           [&](Form&) { EXPECT_FALSE(program->loaded<frmAttesa>()); });
    form().StampaWord.click();
    EXPECT_TRUE(fake.word_processor.log.empty());
}

TEST_F(WordFilling, EveryOtherFailureEndsInOneMessage) {
    given(full_letterhead(), full_invoice());
    given_template({"%Anno%"});
    const auto fails = [&](const char* why) {
        SCOPED_TRACE(why);
        fake.dialogs.answer_next(target);
        boxes().expect(failed);
        form().StampaWord.click();
        EXPECT_FALSE(program->loaded<frmAttesa>());
        EXPECT_FALSE(program->database().rsFatture.is_open());
        EXPECT_FALSE(fake.files.exists(target));
        EXPECT_EQ(fake.word_processor.running, 0);
    };
    fake.word_processor.failing = "save";
    fails("the document cannot be written");
    fake.word_processor.failing = "";
    fake.word_processor.installed = false;
    fails("no word processor");
    fake.word_processor.installed = true;
    fake.files.write(folder + "/print.conf", folder + "/pro\r\nva.rtf\r\n");
    EXPECT_EQ(filled(), "[2006]\n") << "the lines are joined with nothing between them";
    std::filesystem::remove(target);
    fake.files.write(folder + "/print.conf", folder + "/prova.rtf\r\n" + folder + "/prova.rtf\r\n");
    fails("two lines make a path that does not exist");
    fake.files.write(folder + "/print.conf", "");
    fails("no line");
    fake.files.write(folder + "/print.conf", std::string("\x00\xff\x80\r\r\n", 6));
    fails("no text at all");
    std::filesystem::remove_all(folder);
    fails("no folder of templates");
    fake.files.make_folder(folder);
    given_template({"%Anno%"});
    form().txtCurrent_ID.set_text("999");
    boxes().expect(failed);
    form().StampaWord.click();
}

TEST_F(WordFilling, TheNameOfTheDocument) {
    given(full_letterhead(), full_invoice());
    given_template({"%Anno%"});
    const std::string in_folder = fake.program_directory + "/";
    for (const auto& [chosen, saved] : {std::pair<std::string, std::string>{"fattura", "fattura.rtf"},
                                        {"Fattura 7.2006", "Fattura 7.2006.rtf"},
                                        {"dott.Rossi", "dott.Rossi.rtf"},
                                        {"n. 7", "n. 7.rtf"},
                                        {"fattura.doc", "fattura.doc"},
                                        {"fattura.odt", "fattura.odt"}}) {
        target = in_folder + saved;
        fake.dialogs.answer_next(in_folder + chosen);
        expect_done();
        form().StampaWord.click();
        EXPECT_TRUE(fake.files.exists(target)) << chosen;
    }
    fake.copy_dialog.answer_replace = false; // of a name that the dialog has not asked about
    fake.dialogs.answer_next(in_folder + "fattura");
    form().StampaWord.click();
    EXPECT_EQ(fake.copy_dialog.asked, std::vector{in_folder + "fattura.rtf"});
    for (const char* own : {"/prova.rtf", "/prova", "/../modelli/prova.rtf"}) {
        fake.dialogs.answer_next(folder + own);
        boxes().expect_any();
        form().StampaWord.click();
        EXPECT_TRUE(boxes().last().text.starts_with(
            "La fattura non può essere salvata al posto del modello in uso:\n" + folder));
        EXPECT_EQ(fake.files.read(folder + "/prova.rtf"), "[%Anno%]\n");
        EXPECT_FALSE(program->loaded<frmAttesa>());
    }
}

TEST_F(WordFilling, AReplacementThatFailsDropsTheApplication) {
    given(full_letterhead(), full_invoice());
    given_template({"%Anno%"});
    fake.word_processor.failing = "replace %Importo5%"; // place 29 of 45
    fake.dialogs.answer_next(target);
    boxes().expect({"Errore: Il programma di scrittura non risponde.462", "Tarvello 4", BoxIcon::critical});
    for (int i = 30; i <= 45; ++i)
        boxes().expect(
            {"Errore: Il programma di scrittura non è più in uso.91", "Tarvello 4", BoxIcon::critical});
    boxes().expect(failed);
    form().StampaWord.click();
    EXPECT_FALSE(fake.files.exists(target));
}

} // namespace
} // namespace tarvello
