#include "customers/customer_picker.h"

#include "customers/customer_form.h"
#include "invoices/invoice_form.h"
#include "support/program_test.h"

namespace tarvello::testing {
namespace {

struct CustomerPicker : ProgramTest {
    frmTarvello& invoice() { return program->form<frmTarvello>(); }
    frmCercaCliente& picker() {
        auto& picker = program->form<frmCercaCliente>();
        picker.pick_for(invoice().share<CustomerTarget>(invoice().customer));
        return picker;
    }

    /// The invoice holds an announced customer who is not wanted after all.
    void fill_invoice() {
        invoice().customer.txtNuovoInserimento.set_text("NEW");
        invoice().customer.ComboNumeroCliente.set_text("77");
        for (TextBox& box : invoice().customer.txtAnagrafica) box.set_text("old");
        invoice().customer.txtNome.set_text("old");
    }
    std::string block(std::size_t i) { return invoice().customer.txtAnagrafica[i].text(); }
    bool closed() { return program->loaded<frmCercaCliente>() == nullptr; }
};

TEST_F(CustomerPicker, ListsAllCustomersWithTheNotesUnderTheMailHeader) {
    given_customer(
        {{"Cognome_Ragione_Sociale", "Rossi"}, {"Fax", "07"}, {"email", "m@rossi.it"}, {"Appunti", "note"}});
    sql("INSERT INTO Clienti (Cognome_Ragione_Sociale, Appunti) VALUES ('Bianchi', 'b')");
    const ListView& list = picker().ListView1;
    EXPECT_EQ(picker().caption(), "Cerca Cliente");
    EXPECT_EQ(picker().Label1.caption(),
              "Selezionare un cliente dall'elenco oppure premere il tasto \"Nuovo Cliente\" "
              "per inserire un nuovo cliente non presente in elenco");
    ASSERT_EQ(list.rows().size(), 2u);
    EXPECT_EQ(list.columns().size(), 13u);
    EXPECT_EQ(list.rows().cell(0, 0), "1");
    EXPECT_EQ(list.rows().cell(0, 1), "Rossi");
    EXPECT_EQ(list.columns()[11].header, "e-mail");
    EXPECT_EQ(list.rows().cell(0, 10), "07");
    EXPECT_EQ(list.rows().cell(0, 11), "note");
    EXPECT_EQ(list.rows().cell(0, 12), "");
    EXPECT_EQ(list.rows().cell(1, 11), "b") << "a null is an empty cell and moves nothing";
}

TEST_F(CustomerPicker, TheChosenCustomerFillsTheInvoice) {
    given_customer({{"Cognome_Ragione_Sociale", "Altro"}});
    given_customer(as_row("Cognome_Ragione_Sociale=D'Angelo; Nome=Ada; Codice_Fiscale=CF; Partita_IVA=PI; "
                          "Indirizzo=Via; CAP=00100; Provincia=RM; Città=Roma"));
    const auto expect_filled = [this] {
        EXPECT_TRUE(closed());
        EXPECT_EQ(invoice().customer.txtNuovoInserimento.text(), "");
        EXPECT_EQ(invoice().customer.ComboNumeroCliente.text(), "2");
        const char* const expected[] = {"CF", "Via", "00100", "RM", "Roma", "D'Angelo", "PI"};
        for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(block(i), expected[i]);
        EXPECT_EQ(invoice().customer.txtNome.text(), "Ada");
        EXPECT_FALSE(program->database().rsClienti.is_open());
    };
    fill_invoice();
    picker().ListView1.select_row(1);
    picker().cmdSelect.click();
    expect_filled();
    fill_invoice();
    picker().ListView1.double_click(1);
    expect_filled();
}

TEST_F(CustomerPicker, WithNothingSelectedTheInvoiceKeepsWhatItHad) {
    given_customer();
    fill_invoice();
    picker().cmdSelect.click();
    EXPECT_TRUE(closed());
    EXPECT_EQ(invoice().customer.txtNuovoInserimento.text(), "NEW") << "who was announced stays so";
    EXPECT_EQ(invoice().customer.ComboNumeroCliente.text(), "77");
    EXPECT_EQ(block(0), "old");
    invoice().customer.ComboNumeroCliente.type("8");
    EXPECT_EQ(invoice().customer.ComboNumeroCliente.text(), "77") << "nobody types a number";
}

TEST_F(CustomerPicker, ANullStopsTheCopyAndLeavesTheResultOpen) {
    sql("INSERT INTO Clienti (Codice_Fiscale, Indirizzo, Nome) VALUES ('CF', 'Via', 'Ada')");
    fill_invoice();
    picker().ListView1.double_click(0);
    EXPECT_TRUE(closed());
    EXPECT_EQ(invoice().customer.ComboNumeroCliente.text(), "1");
    EXPECT_EQ(block(0), "CF");
    EXPECT_EQ(block(1), "Via");
    EXPECT_EQ(block(2), "old") << "the postal code is null";
    EXPECT_EQ(invoice().customer.txtNome.text(), "old");
    EXPECT_TRUE(program->database().rsClienti.is_open());
    EXPECT_EQ(program->form<frmClienti>().txtfields[0].text(), "CF") << "opens all the same";
}

TEST_F(CustomerPicker, ANewCustomerIsAnnouncedToTheInvoice) {
    fill_invoice();
    invoice().customer.txtNuovoInserimento.clear();
    invoice().BloccaAnagrafica();
    picker().cmdNuovoCliente.click();
    EXPECT_TRUE(closed());
    EXPECT_EQ(invoice().customer.txtNuovoInserimento.text(), "NEW");
    EXPECT_FALSE(invoice().customer.ComboNumeroCliente.enabled());
    EXPECT_EQ(invoice().customer.ComboNumeroCliente.back_color(), colors::button_face);
    for (TextBox& box : invoice().customer.txtAnagrafica) {
        EXPECT_EQ(box.text(), "");
        EXPECT_FALSE(box.locked());
    }
    EXPECT_EQ(invoice().customer.txtNome.text(), "");
    EXPECT_FALSE(invoice().customer.txtNome.locked());
    EXPECT_TRUE(sql("SELECT * FROM Clienti").empty());
}

TEST_F(CustomerPicker, TheCloseBoxChangesNothing) {
    given_customer();
    fill_invoice();
    picker().ListView1.select_row(0);
    picker().close_by_user();
    EXPECT_TRUE(closed());
    EXPECT_EQ(invoice().customer.txtNuovoInserimento.text(), "NEW");
    EXPECT_EQ(block(0), "old");
}

} // namespace
} // namespace tarvello::testing
