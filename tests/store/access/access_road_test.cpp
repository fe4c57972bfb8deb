// The road of an invoice through the windows of the program, on files that came from Access: a customer,
// invoices, changes, a deletion, the letterhead. Other programs must then read what the program reads.
#include "store/access/access_support.h"

#include "customers/customer_form.h"
#include "invoices/invoice_form.h"
#include "program/open_database.h"
#include "store/access/journal.h"
#include "support/program_test.h"

namespace tarvello::testing {
namespace {

constexpr const char* sample_names[] = {"vuoto", "archivio", "indici"};

struct AccessRoad : ProgramTest, ::testing::WithParamInterface<const char*> {
    AccessRoad() {
        path = folder.copy_of(std::string(GetParam()) + ".mdb");
        program->database().dbConnection.close();
        program->database().dbConnection.open(path);
        program->session().txtDatabaseRoute.set_text(path);
        given_invoice({{"Numero_Fattura", "41"},
                       {"Data_Fattura", "01/02/2012"},
                       {"Anno", "2012"},
                       {"Numero_Cliente", "9999"}});
    }

    static void fill(TextEntry& field, const std::string& text) {
        field.enter();
        field.place_caret(0, 1000);
        field.press_delete();
        field.type(text);
        field.leave();
    }

    /// Adds a customer through its form. @return the number
    std::string add_customer() {
        auto& form = program->form<frmClienti>();
        form.Toolbar1.press("Nuovo Cliente");
        using namespace customer_box;
        fill(form.txtfields[cognome], "D'Ambrosio e Nicolò");
        fill(form.txtfields[nome], "Niccolò");
        fill(form.txtfields[codice_fiscale], "DMBNCL70A01H501W");
        fill(form.txtfields[indirizzo], "Via dell'Orso 5");
        fill(form.txtfields[cap], "00184");
        fill(form.txtfields[provincia], "RM");
        fill(form.txtfields[citta], "Città di Castello");
        fill(form.txtfields[appunti], std::string(200, 'n'));
        form.Toolbar1.press("Nuovo Cliente");
        return form.txtfields[numero].text();
    }

    void add_invoice(const std::string& customer, int lines) {
        auto& form = program->form<frmTarvello>();
        form.Toolbar1.press("Nuova Fattura");
        form.customer.ComboNumeroCliente.set_text(customer);
        const char* const block[] = {"DMBNCL70A01H501W",  "Via dell'Orso 5",    "00184", "RM",
                                     "Città di Castello", "D'Ambrosio e Nicolò"};
        for (std::size_t i = 0; i < std::size(block); ++i) form.customer.txtAnagrafica[i].set_text(block[i]);
        form.customer.txtNome.set_text("Niccolò");
        form.SbloccaAnagrafica();
        form.ComboIVAApplicata.set_text("20");
        for (int line = 0; line < lines; ++line) {
            fill(form.PrestazioneSingola[static_cast<std::size_t>(line)],
                 "Consulenza " + std::string(30 * lines, 'c'));
            fill(form.txtImportoPrestazioni[static_cast<std::size_t>(line)], "1234,5" + std::to_string(line));
        }
        form.DTPicker1.pick(make_date(2012, 2, 29));
        boxes().expect({"\nSalvare la fattura?", "Tarvello 4", BoxIcon::information, BoxButtons::yes_no, 2},
                       Answer::yes);
        form.Toolbar1.press("Nuova Fattura");
        boxes().expect_none_left();
    }

    ScratchFolder folder;
    std::string path;
};

TEST_P(AccessRoad, IsReadByOthersAsByTheProgram) {
    const std::string sample = access_sample(std::string(GetParam()) + ".mdb");
    const std::string customer = add_customer();
    for (int lines = 1; lines <= 5; ++lines) add_invoice(customer, lines);

    auto& invoices = program->form<frmTarvello>();
    const auto newest = sql("SELECT TOP 1 * FROM Fatture ORDER BY ID DESC").at(0);
    EXPECT_EQ(newest.at("Numero_Fattura"), "46");
    EXPECT_EQ(newest.at("Data_Fattura"), "29/02/2012");
    EXPECT_EQ(newest.at("Importo5"), "€ 1.234,54");
    EXPECT_EQ(newest.at("Cognome_Ragione_Sociale"), "D'Ambrosio e Nicolò");
    boxes().expect({"\nEliminare la fattura?", "Tarvello 4", BoxIcon::information, BoxButtons::yes_no, 2},
                   Answer::yes);
    invoices.cmdEliminaFattura.click();
    EXPECT_TRUE(sql("SELECT * FROM Fatture WHERE ID=" + newest.at("ID")).empty());

    auto& customers = program->form<frmClienti>();
    customers.Toolbar1.press("Modifica Dati");
    fill(customers.txtfields[customer_box::indirizzo], "Viale " + std::string(150, 'v'));
    boxes().expect_any(Answer::yes); // to carry the change into the invoices
    boxes().expect_any();            // which is done
    customers.Toolbar1.press("Modifica Dati");
    for (const auto& invoice : sql("SELECT * FROM Fatture WHERE Numero_Cliente=" + customer)) {
        EXPECT_EQ(invoice.at("Indirizzo").size(), 156U);
    }
    EXPECT_EQ(sql("SELECT * FROM Fatture WHERE Numero_Cliente=" + customer).size(), 4U);
    sql("DELETE * FROM DatiIntestazione");
    sql("INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Telefono,Fax,Codice_Fiscale,Partita_IVA,email,"
        "Descrizione_Attività,Banca,ABI,CAB,CC) VALUES ('Studio Ærø','Piazza 1','','','','','','Perché "
        "no','','','','1')");

    program->database().dbConnection.close();
    expect_sound(path, sample);
    const auto engine = open(path);
    expect_agreement(*engine, path);
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessRoad, ::testing::ValuesIn(sample_names),
                         [](const auto& sample) { return std::string(sample.param); });

struct AccessNotice : ProgramTest {};

TEST_F(AccessNotice, AJournalThatDoesNotGoWithTheFileIsToldOfWhenItIsOpened) {
    using namespace store::access;
    const ScratchFolder folder;
    const std::string path = folder.copy_of("archivio.mdb");
    {
        File file(path, File::Mode::read_write, nullptr);
        Journal journal(file, static_cast<PageNumber>(file.size() / testing::page_size), nullptr);
        journal.keep(file, {50}, {{50, std::make_shared<Page>()}});
        const std::uint8_t changed = 7; // by somebody else
        file.write(50 * testing::page_size + 16, {&changed, 1});
    }
    program->database().dbConnection.close();
    program->session().txtDatabaseRoute.set_text(path);
    boxes().expect_any();
    EXPECT_TRUE(ApriDatabase(*program));
    boxes().expect_none_left();
}

class AccessReaders : public ::testing::TestWithParam<const char*> {};

TEST_P(AccessReaders, ReadTheSampleAsTheProgramDoes) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of(std::string(GetParam()) + ".mdb");
    const auto engine = open(path);
    expect_agreement(*engine, path);
}

TEST_P(AccessReaders, ReadMovedRowsAndLongTextsAsTheProgramDoes) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of(std::string(GetParam()) + ".mdb");
    const auto engine = open(path);
    for (int i = 0; i < 40; ++i) {
        run(*engine, "INSERT INTO Clienti(Cognome_Ragione_Sociale,Appunti) VALUES('Righe " +
                         std::to_string(i) + "','" + std::string(static_cast<std::size_t>(i) * 300, 'm') +
                         "')");
    }
    run(*engine, "UPDATE Clienti SET Indirizzo='" + std::string(190, 'v') + "è',Appunti='€ " +
                     std::string(5000, 'a') + "' WHERE Cognome_Ragione_Sociale LIKE '%1%'");
    run(*engine, "DELETE * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '%2%'");
    expect_agreement(*engine, path);
    expect_sound(path, access_sample(std::string(GetParam()) + ".mdb"));
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessReaders, ::testing::ValuesIn(sample_names),
                         [](const auto& sample) { return std::string(sample.param); });

} // namespace
} // namespace tarvello::testing
