#include "fiscal_code/calculator_form.h"

#include "customers/customer_form.h"
#include "invoices/invoice_form.h"
#include "places.h"
#include "support/program_test.h"

#include <filesystem>

namespace tarvello {
namespace {

const Color dark_red{128, 0, 0};

struct Calculator : testing::ProgramTest {
    Calculator() { std::filesystem::copy_file(TARVELLO_COMUNI_MDB, municipalities_path()); }

    std::string municipalities_path() const { return fake.program_directory + "/Comuni.mdb"; }
    frmCalcolaCF& form() { return program->form<frmCalcolaCF>(); }
    TextBox& comune() { return form().txtComune; }
    std::string selected() {
        return comune().text().substr(comune().selection_start(), comune().selection_length());
    }
};

TEST_F(Calculator, CompletesTheNameAsItIsTyped) {
    comune().type("R");
    EXPECT_EQ(comune().text(), "Rabbi");
    comune().type("OM");
    EXPECT_EQ(comune().text(), "Roma");
    EXPECT_EQ(selected(), "a") << "the next key replaces the rest";
    EXPECT_EQ(form().txtProvincia.text(), "RM");
    EXPECT_EQ(form().txtCodice.text(), "H501");
    EXPECT_EQ(comune().fore_color(), std::nullopt);

    comune().press_key(keys::backspace);
    EXPECT_EQ(comune().text(), "Rom") << "a deletion is not completed again";
    EXPECT_EQ(form().txtProvincia.text(), "RM");
    comune().press_key(keys::backspace);
    EXPECT_EQ(comune().text(), "Ro");
    comune().type("v");
    EXPECT_EQ(comune().text(), "Rovagnate");
    comune().select(0, 9);
    comune().press_delete();
    EXPECT_EQ(comune().text(), "");

    comune().type("sant'angelo li");
    EXPECT_EQ(comune().text(), "Sant'Angelo Limosano") << "letter case counts nothing";
    EXPECT_EQ(form().txtCodice.text(), "I289");
    comune().select(0, 20);
    comune().type("castro (l");
    EXPECT_EQ(form().txtCodice.text(), "M261") << "what shares a name is told apart by the province";
}

TEST_F(Calculator, NameAndCodeBelongTogetherHoweverTheNameCameThere) {
    const auto put = [this](const std::string& text) {
        comune().select(0, 40);
        comune().paste(text);
        return comune().text() + " " + form().txtCodice.text();
    };
    EXPECT_EQ(put("milano"), "Milano F205");
    EXPECT_EQ(put("Roma"), "Roma H501") << "a shorter text was put in all the same";
    comune().select(0, 40);
    comune().type("R");
    EXPECT_EQ(form().txtCodice.text(), "H146") << "Rabbi: typed over the name of which it is the beginning";
    put("Milano");
    comune().place_caret(3, 2);
    comune().press_delete();
    EXPECT_EQ(comune().text() + form().txtCodice.text(), "Milo") << "what is left begins another name";
}

TEST_F(Calculator, TellsOnceOfARunOfWrongKeys) {
    comune().type("Rom");
    boxes().expect({"Comune non in elenco.", "Tarvello 4", BoxIcon::exclamation});
    comune().type("x");
    EXPECT_EQ(comune().text(), "Romx");
    EXPECT_EQ(comune().fore_color(), dark_red);
    EXPECT_EQ(form().txtProvincia.text(), "?");
    EXPECT_EQ(form().txtCodice.text(), "?");
    EXPECT_EQ(form().focus(), &comune());
    comune().type("yz");
    boxes().expect_none_left();

    for (int i = 0; i < 3; ++i) comune().press_key(keys::backspace);
    EXPECT_EQ(comune().text(), "Rom");
    EXPECT_EQ(comune().fore_color(), std::nullopt);
    EXPECT_EQ(form().txtCodice.text(), "?") << "a deletion leaves the code";
    boxes().expect("Comune non in elenco.");
    comune().type("x");

    comune().select(0, 4);
    comune().press_delete();
    EXPECT_EQ(comune().fore_color(), dark_red) << "an emptied box is not searched: the run goes on";
    comune().type("1");
}

TEST_F(Calculator, PastTheLastNameThereIsNoMessage) {
    comune().type("Z");
    EXPECT_EQ(form().txtCodice.text(), "M138");
    comune().type("zz");
    EXPECT_EQ(comune().text(), "Zzz");
    EXPECT_EQ(comune().fore_color(), std::nullopt);
    EXPECT_EQ(form().txtCodice.text(), "") << "no code without its name";
    comune().select(0, 3);
    comune().type("roma");
    comune().select(0, 4);
    comune().type("  ");
    EXPECT_EQ(form().txtCodice.text(), "");
    EXPECT_EQ(comune().text(), "  ") << "blanks are no name";
}

TEST_F(Calculator, WhatIsTypedWrongCanBeComputedAllTheSame) {
    boxes().expect("Comune non in elenco.");
    comune().type("Romx");
    form().txtCognome.type("Rossi");
    form().txtNome.type("Mario");
    form().DTPicker1.pick(make_date(1980, 1, 1));
    form().cmdElabora.click();
    EXPECT_EQ(form().txtCodiceFiscale.text(), "RSSMRA80A01?D");
    comune().select(0, 4);
    comune().type("Roma");
    form().cmdElabora.click();
    EXPECT_EQ(form().txtCodiceFiscale.text(), "RSSMRA80A01H501U");
    form().cboSesso.choose(1);
    form().DTPicker1.pick(make_date(1899, 12, 31));
    form().cmdElabora.click();
    EXPECT_EQ(form().txtCodiceFiscale.text().substr(6, 5), "99T71");
}

TEST_F(Calculator, AButtonThatFollowsTheFields) {
    EXPECT_FALSE(form().cmdElabora.enabled());
    EXPECT_EQ(form().cboSesso.text(), "Maschio");
    EXPECT_EQ(form().DTPicker1.date(), fake.clock.now);
    form().txtCognome.set_text("Rossi");
    EXPECT_TRUE(form().cmdElabora.enabled()) << "a text set by the caller counts";
    boxes().expect({"Indicare il comune di nascita", "Tarvello 4", BoxIcon::exclamation});
    form().cmdElabora.click();
    EXPECT_TRUE(form().cmdElabora.enabled());

    comune().type("Roma");
    form().cmdElabora.click();
    EXPECT_FALSE(form().cmdElabora.enabled());
    form().DTPicker1.pick(make_date(1970, 1, 1));
    EXPECT_FALSE(form().cmdElabora.enabled()) << "a date alone enables nothing";
    form().cboSesso.choose(1);
    EXPECT_TRUE(form().cmdElabora.enabled());
    form().cmdElabora.click();
    form().txtNome.type("A");
    EXPECT_TRUE(form().cmdElabora.enabled());

    form().cmdExit.click();
    EXPECT_EQ(program->loaded<frmCalcolaCF>(), nullptr);
    EXPECT_EQ(form().txtCodiceFiscale.text(), "") << "the next use starts afresh";
    EXPECT_EQ(form().cboSesso.list_index(), 0);
}

TEST_F(Calculator, WritesTheCodeIntoTheBoxOfItsCaller) {
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Mario"}});
    auto& customers = program->form<frmClienti>();
    const auto compute = [this](Form&) {
        form().DTPicker1.pick(make_date(1980, 1, 1));
        comune().type("Roma");
        form().cmdElabora.click();
        form().cmdExit.click();
    };
    customers.Toolbar1.press("Modifica Dati");
    windows().expect_modal("frmCalcolaCF", compute);
    customers.cmdCalcolaCF.click();
    EXPECT_EQ(customers.txtfields[0].text(), "RSSMRA80A01H501U");

    given_invoice({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Mario"}});
    auto& invoices = program->form<frmTarvello>();
    invoices.Toolbar1.press("Modifica Dati");
    windows().expect_modal("frmCalcolaCF", compute);
    invoices.customer.cmdCalcolaCF.click();
    EXPECT_EQ(invoices.customer.txtAnagrafica[0].text(), "RSSMRA80A01H501U");
}

TEST_F(Calculator, WithoutMunicipalitiesTellsAtTheLoadAndAtEveryKey) {
    std::filesystem::remove(municipalities_path());
    const std::string missing = "FasMsg: 53 Il file \"" + municipalities_path() + "\" non esiste.";
    boxes().expect({missing, "Tarvello 4", BoxIcon::none});
    form();
    boxes().expect(missing);
    boxes().expect(missing);
    comune().type("Ro");
    EXPECT_EQ(comune().text(), "Ro");
    form().txtCognome.type("Rossi");
    form().cmdElabora.click();
    EXPECT_EQ(form().txtCodiceFiscale.text().substr(0, 6), "RSSXXX");
}

} // namespace
} // namespace tarvello
