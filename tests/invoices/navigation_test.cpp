#include "invoices/invoice_form.h"
#include "support/program_test.h"

namespace tarvello {
namespace {

enum Move : std::size_t { first, previous, next, last, earlier_year, later_year };

struct Navigation : testing::ProgramTest {
    frmTarvello& form() { return program->form<frmTarvello>(); }
    /// Presses a button. @return the number of the invoice on view afterwards
    std::string go(Move move) {
        form().cmdNavigazione[move].click();
        return form().txtNumeroFattura.text();
    }
    /// Three years, 2005 without invoices; the third of 2004 was dated into 2006 afterwards, its year not.
    void given_three_years() {
        given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "10/01/2003"}});
        given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "01/01/2004"}});
        given_invoice({{"Numero_Fattura", "2"}, {"Data_Fattura", "20/02/2004"}});
        given_invoice({{"Numero_Fattura", "3"}, {"Data_Fattura", "20/02/2006"}, {"Anno", "2004"}});
        given_invoice({{"Numero_Fattura", "4"}, {"Data_Fattura", "31/12/2004"}});
        given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "02/01/2006"}});
        given_invoice({{"Numero_Fattura", "2"}, {"Data_Fattura", "03/01/2006"}});
    }
};

TEST_F(Navigation, WalksByKeyAndStopsAtTheYear) {
    given_three_years();
    EXPECT_EQ(form().txtNumeroFattura.text(), "2 - 2006");
    EXPECT_EQ(go(next), "2 - 2006") << "nothing moves behind the last row";
    EXPECT_EQ(go(previous), "1 - 2006");
    EXPECT_EQ(go(previous), "1 - 2006") << "the row before it belongs to another year";
    EXPECT_EQ(go(last), "2 - 2006");
    EXPECT_EQ(go(first), "1 - 2006");
    EXPECT_EQ(go(later_year), "1 - 2006") << "there is no later year";
    EXPECT_EQ(go(earlier_year), "4 - 2004") << "an empty year is stepped over";
    EXPECT_EQ(go(previous), "4 - 2004") << "a row of another date blocks the walk in the midst of a year";
    EXPECT_EQ(go(first), "1 - 2004");
    EXPECT_EQ(go(next), "2 - 2004");
    EXPECT_EQ(go(next), "2 - 2004");
    EXPECT_EQ(go(previous), "1 - 2004");
    EXPECT_EQ(go(earlier_year), "1 - 2003");
    EXPECT_EQ(go(earlier_year), "1 - 2003");
    EXPECT_EQ(go(previous), "1 - 2003");
    EXPECT_EQ(go(later_year), "1 - 2004");
    EXPECT_EQ(go(last), "4 - 2004");
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

TEST_F(Navigation, TheYearIsThatOfTheDateOnView) {
    given_three_years();
    EXPECT_EQ(go(earlier_year), "4 - 2004");
    form().DTPicker1.set_date(make_date(2006, 6, 1));
    EXPECT_EQ(go(first), "1 - 2006") << "not of the row's own year";
}

TEST_F(Navigation, AnEmptyFormIgnoresEveryButton) {
    for (std::size_t i = 0; i < 6; ++i) {
        form().cmdNavigazione[i].click();
        EXPECT_EQ(form().txtCurrent_ID.text(), "") << i;
    }
    given_invoice();
    form().cmdNavigazione[last].click();
    EXPECT_EQ(form().txtCurrent_ID.text(), "") << "an invoice in the archive does not help";
}

TEST_F(Navigation, WithoutADatabaseTheFormCloses) {
    given_invoice();
    form();
    program->session().mnuChiudiDatabase.set_enabled(false);
    boxes().expect({"Nessun database connesso.", "Tarvello 4", BoxIcon::information});
    form().cmdNavigazione[next].click();
    EXPECT_EQ(program->loaded<frmTarvello>(), nullptr);
}

TEST_F(Navigation, AnOpenResultIsClosedByTheNeighbourButtonsOnly) {
    given_three_years();
    form();
    program->database().rsFatture.open("SELECT * FROM Fatture", program->database().dbConnection);
    EXPECT_EQ(go(previous), "1 - 2006");
    program->database().rsFatture.open("SELECT * FROM Fatture", program->database().dbConnection);
    expect_process_end([&] { go(last); });
}

TEST_F(Navigation, AKeyPastSixteenBitsEndsTheProgram) {
    given_invoice();
    form().txtCurrent_ID.set_text("40000");
    expect_process_end([&] { go(previous); });
}

TEST_F(Navigation, ARowWithoutADateIsNotTaken) {
    given_invoice({{"Numero_Fattura", "1"}});
    given_invoice({{"Numero_Fattura", "2"}});
    sql("INSERT INTO Fatture (Numero_Fattura,Anno) VALUES ('3','2006')");
    given_invoice({{"Numero_Fattura", "4"}});
    EXPECT_EQ(go(previous), "4 - 2006");
    EXPECT_EQ(go(first), "1 - 2006");
}

} // namespace
} // namespace tarvello
