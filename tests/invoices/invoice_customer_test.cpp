#include "invoices/invoice_form_fixture.h"

#include "customers/customer_picker.h"
#include "fiscal_code/calculator_form.h"

namespace tarvello::testing {
namespace {

struct InvoiceCustomer : InvoiceFormTest {
    InvoiceCustomer() { given_invoice(); }

    /// Opens a new invoice, or changes the one on view, and announces a new customer in the picker.
    void announce(const char* mode = "Nuova Fattura") {
        press(mode);
        windows().expect_modal("frmCercaCliente", [](Form& picker) {
            dynamic_cast<frmCercaCliente&>(picker).cmdNuovoCliente.click();
        });
        form().customer.cmdCercaCliente.click();
        form().ComboIVAApplicata.set_text("20");
    }

    void type_customer(const std::string& surname, const std::string& fiscal_code,
                       const std::string& vat = "") {
        fill(form().customer.txtAnagrafica[5], surname);
        fill(form().customer.txtNome, "LUCA maria");
        fill(form().customer.txtAnagrafica[0], fiscal_code);
        fill(form().customer.txtAnagrafica[6], vat);
        fill(form().customer.txtAnagrafica[1], "VIA DELL'ORSO 5");
        fill(form().customer.txtAnagrafica[2], "i-00100");
        fill(form().customer.txtAnagrafica[3], "rm");
        fill(form().customer.txtAnagrafica[4], "sant'angelo in vado");
    }
};

TEST_F(InvoiceCustomer, PickedFromTheRegister) {
    const int number =
        given_customer(as_row("Cognome_Ragione_Sociale=Rossi; Nome=Mario; Codice_Fiscale=RSSMRA80A01H501U; "
                              "Partita_IVA=01234567890; Indirizzo=Via Roma 1; CAP=00100; Provincia=RM; "
                              "Città=Roma"));
    press("Nuova Fattura");
    const auto pick = [](Form& picker) { dynamic_cast<frmCercaCliente&>(picker).ListView1.double_click(0); };
    windows().expect_modal("frmCercaCliente", pick);
    form().customer.cmdCercaCliente.click();
    EXPECT_EQ(form().focus(), &form().DTPicker1);
    EXPECT_FALSE(form().customer.txtAnagrafica[1].locked());
    EXPECT_EQ(form().customer.txtAnagrafica[5].text(), "Rossi");

    // A key in the block opens the picker again instead of writing.
    windows().expect_modal("frmCercaCliente");
    form().customer.txtAnagrafica[5].type("x");
    EXPECT_EQ(form().customer.txtAnagrafica[5].text(), "Rossi");
    windows().expect_modal("frmCercaCliente");
    form().customer.txtAnagrafica[5].paste("Bianchi");
    windows().expect_modal("frmCercaCliente");
    form().customer.txtAnagrafica[5].press_delete();
    EXPECT_EQ(form().customer.txtAnagrafica[5].text(), "Rossi");
    form().customer.txtNome.type("x");
    EXPECT_EQ(form().customer.txtNome.text(), "xMario") << "the first name is not guarded";

    fill_line(0, "Consulenza", "100");
    form().ComboIVAApplicata.set_text("20");
    save();
    EXPECT_EQ(newest().at("Numero_Cliente"), std::to_string(number));
    EXPECT_EQ(sql("SELECT * FROM Clienti").size(), 1U);
    EXPECT_EQ(sql("SELECT * FROM Clienti").at(0).at("Nome"), "Mario");
}

TEST_F(InvoiceCustomer, KeysPassWhileBrowsing) {
    form().customer.txtAnagrafica[5].type("x"); // no picker: the block is locked
    EXPECT_EQ(form().customer.txtAnagrafica[5].text(), "");
    press("Nuova Fattura");
    windows().expect_modal("frmCercaCliente"); // closed by its close box
    form().customer.txtAnagrafica[0].type("x");
    EXPECT_EQ(form().customer.txtAnagrafica[0].text(), "");
    windows().expect_none_left();
}

TEST_F(InvoiceCustomer, ANewOneIsAddedAtSaving) {
    given_customer({{"Codice_Fiscale", "AAA"}});
    announce();
    EXPECT_EQ(form().customer.txtNuovoInserimento.text(), "NEW");
    EXPECT_FALSE(form().customer.ComboNumeroCliente.enabled());
    type_customer("d'ANGELO", "vrdlcu70a01h501x", "it01234567890");
    expect_shown("txtAnagrafica_5=D'angelo; txtNome=Luca Maria; txtAnagrafica_2=I-00100; "
                 "txtAnagrafica_6=IT01234567890");
    fill_line(0, "Consulenza", "100");
    save();
    const auto customer = sql("SELECT * FROM Clienti ORDER BY Numero_Cliente DESC").at(0);
    const std::map<std::string, std::string> expected =
        as_row("Numero_Cliente=2; Cognome_Ragione_Sociale=D'angelo; Nome=Luca Maria; "
               "Codice_Fiscale=VRDLCU70A01H501X; Partita_IVA=IT01234567890; "
               "Indirizzo=Via Dell'orso 5; CAP=I-00100; Provincia=RM; "
               "Città=Sant'angelo In Vado; Telefono=; Fax=; email=; Appunti=");
    EXPECT_EQ(customer, expected);
    EXPECT_EQ(newest().at("Numero_Cliente"), "2");
    EXPECT_EQ(form().customer.txtNuovoInserimento.text(), "");
    EXPECT_TRUE(form().customer.ComboNumeroCliente.enabled());
    EXPECT_EQ(form().customer.ComboNumeroCliente.back_color(), colors::white);
}

TEST_F(InvoiceCustomer, ANewOneWhoIsThereAlreadyIsRefused) {
    given_customer({{"Codice_Fiscale", "VRDLCU70A01H501X"}, {"Partita_IVA", "11111111111"}});
    announce();
    type_customer("Verdi", "vrdlcu70a01h501x");
    fill_line(0, "Consulenza", "100");
    boxes().expect_any(Answer::yes);
    boxes().expect(information(
        "ATTENZIONE\n\nIl Codice Fiscale utilizzato risulta già inserito nell'anagrafica. Controllare il "
        "codice fiscale o selezionare un cliente con l'apposito pulsante."));
    press("Nuova Fattura");
    EXPECT_EQ(form().focus(), &form().customer.txtAnagrafica[0]);
    EXPECT_EQ(form().customer.txtNuovoInserimento.text(), "NEW");
    EXPECT_EQ(form().cmdNuovaFattura.caption(), "Salva Fattura");

    fill(form().customer.txtAnagrafica[0], "ALTRO");
    fill(form().customer.txtAnagrafica[6], "11111111111");
    boxes().expect_any(Answer::yes);
    boxes().expect(information("ATTENZIONE\n\nLa partita IVA utilizzata risulta già inserita "
                               "nell'anagrafica. Controllare la partita "
                               "IVA o selezionare un cliente con l'apposito pulsante."));
    press("Nuova Fattura");
    EXPECT_EQ(form().focus(), &form().customer.txtAnagrafica[0]) << "not the VAT number";
    EXPECT_EQ(sql("SELECT * FROM Fatture").size(), 1U);

    press("Annulla");
    EXPECT_EQ(form().customer.txtNuovoInserimento.text(), "");
    EXPECT_TRUE(form().customer.ComboNumeroCliente.enabled());
    EXPECT_EQ(form().customer.ComboNumeroCliente.back_color(), colors::white);
}

TEST_F(InvoiceCustomer, ANewOneOfAChangedInvoiceIsAddedAndAnEmptyVatNumberIsNobodys) {
    given_customer({{"Codice_Fiscale", "AAA"}});
    announce("Modifica Dati");
    type_customer("Verdi", "vrd");
    fill_line(0, "Consulenza", "100");
    press("Modifica Dati");
    EXPECT_EQ(sql("SELECT * FROM Clienti ORDER BY Numero_Cliente DESC").at(0).at("Codice_Fiscale"), "VRD");
    EXPECT_EQ(newest().at("Numero_Cliente") + newest().at("Codice_Fiscale"), "2VRD");
    EXPECT_EQ(form().customer.txtNuovoInserimento.text(), "");
}

TEST_F(InvoiceCustomer, AnEmptyFiscalCodeMeetsAnotherEmptyOne) {
    announce();
    type_customer("Verdi", "", "22222222222");
    fill_line(0, "Consulenza", "100");
    save();
    announce();
    type_customer("Bianchi", "", "33333333333");
    fill_line(0, "Consulenza", "100");
    boxes().expect_any(Answer::yes);
    boxes().expect_any();
    press("Nuova Fattura");
    EXPECT_EQ(boxes().last().text.substr(0, 30), "ATTENZIONE\n\nIl Codice Fiscale ");

    fill(form().customer.txtAnagrafica[0], "O'X");
    boxes().expect_any(Answer::yes);
    expect_process_end([&] { press("Nuova Fattura"); });
}

TEST_F(InvoiceCustomer, TheCalculatorGetsTheName) {
    press("Nuova Fattura");
    EXPECT_FALSE(form().customer.cmdCalcolaCF.enabled());
    fill_customer(1);
    boxes().expect_any(); // this program's folder has no municipalities
    windows().expect_modal("frmCalcolaCF", [](Form& calculator) {
        auto& fields = dynamic_cast<frmCalcolaCF&>(calculator);
        EXPECT_EQ(fields.txtCognome.text(), "Rossi");
        EXPECT_EQ(fields.txtNome.text(), "Mario");
        EXPECT_EQ(fields.txtparam.text(), "Fatture");
    });
    form().customer.cmdCalcolaCF.click();
}

} // namespace
} // namespace tarvello::testing
