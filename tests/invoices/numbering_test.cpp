#include "invoices/invoice_form_fixture.h"

namespace tarvello::testing {
namespace {

const char* const first_number_message =
    "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n";
const char* const new_year_question = "Si è selezionato un nuovo anno di fatturazione.\n"
                                      "Si desidera iniziare un nuovo anno di fatturazione?";
const char* const new_year_message =
    "Inserire manualmente il numero di fattura da cui si desidera iniziare la numerazione delle fatture "
    "(normalmente n°1).\n"
    "Il calendiario verrà ora bloccato. Se si è indicata una data errata sarà necessario premere il comando "
    "'Annulla' e quindi ripetere la procedura di fatturazione per il nuovo anno.";

struct Numbering : InvoiceFormTest {
    void fill_rest() {
        fill_customer(1);
        form().ComboIVAApplicata.set_text("20");
        fill_line(0, "Consulenza", "100");
    }
};

TEST_F(Numbering, FirstInvoiceEver) {
    fake.clock.now = make_date(2008, 2, 29);
    EXPECT_EQ(form().DTPicker1.date(), make_date(2008, 2, 29));
    boxes().expect(information(first_number_message));
    press("Nuova Fattura");
    EXPECT_EQ(form().txtNumeroFattura.text(), "1");
    EXPECT_FALSE(form().txtNumeroFattura.locked());
    EXPECT_EQ(form().focus(), &form().txtNumeroFattura);
    EXPECT_FALSE(form().cmdNuovoAnnoFatturazione.enabled());
    EXPECT_FALSE(form().FrameData.enabled());
    EXPECT_EQ(program->AnnoCorrente, 2008);
    fill_rest();
    form().DTPicker1.pick(make_date(2030, 1, 1)); // no question: there is no year to be new after
    save();
    EXPECT_EQ(newest().at("Data_Fattura"), "01/01/2030");
    EXPECT_EQ(newest().at("Anno"), "2030");
}

TEST_F(Numbering, TheRowEnteredLastDecides) {
    given_invoice({{"Numero_Fattura", "99"}, {"Data_Fattura", "05/03/2006"}});
    given_invoice({{"Numero_Fattura", "57"}, {"Data_Fattura", "01/02/2005"}});
    press("Nuova Fattura");
    EXPECT_EQ(form().txtNumeroFattura.text(), "58");
    EXPECT_TRUE(form().txtNumeroFattura.locked());
    EXPECT_EQ(program->AnnoCorrente, 2005);
}

TEST_F(Numbering, NumbersEndAt32767) {
    given_invoice({{"Numero_Fattura", "32766"}});
    press("Nuova Fattura");
    EXPECT_EQ(form().txtNumeroFattura.text(), "32767");
    press("Annulla");
    given_invoice({{"Numero_Fattura", "32767"}});
    expect_process_end([&] { press("Nuova Fattura"); },
                       "Il numero 32768 è fuori dai limiti: il massimo è 32767.");
}

TEST_F(Numbering, NewYearByTheDate) {
    given_invoice({{"Numero_Fattura", "57"}, {"Data_Fattura", "15/12/2006"}});
    press("Nuova Fattura");
    fill_rest();
    form().DTPicker1.pick(make_date(2006, 12, 31));
    form().DTPicker1.pick(make_date(2005, 1, 1)); // an earlier year asks nothing either
    EXPECT_EQ(form().DTPicker_CURRENT_YEAR.date(), make_date(2006, 12, 15));

    boxes().expect(question(new_year_question), Answer::no);
    form().DTPicker1.pick(make_date(2008, 2, 29));
    EXPECT_EQ(form().DTPicker1.date(), make_date(2006, 2, 28)) << "only the year goes back, as far as it can";
    EXPECT_EQ(form().focus(), &form().DTPicker1);
    boxes().expect(question(new_year_question), Answer::no);
    form().DTPicker1.pick(make_date(2007, 5, 7));
    EXPECT_EQ(form().DTPicker1.date(), make_date(2006, 5, 7));

    boxes().expect(question(new_year_question), Answer::yes);
    boxes().expect(information(new_year_message));
    form().DTPicker1.pick(make_date(2007, 1, 2));
    EXPECT_EQ(form().txtNumeroFattura.text(), "");
    EXPECT_FALSE(form().txtNumeroFattura.locked());
    EXPECT_EQ(form().focus(), &form().txtNumeroFattura);
    EXPECT_FALSE(form().FrameData.enabled()) << "the calendar is locked";
    form().DTPicker1.pick(make_date(2009, 1, 1));
    EXPECT_EQ(form().DTPicker1.date(), make_date(2007, 1, 2));

    form().txtNumeroFattura.type("1");
    save();
    EXPECT_EQ(newest().at("Numero_Fattura"), "1");
    EXPECT_EQ(newest().at("Anno"), "2007");
    EXPECT_TRUE(form().txtNumeroFattura.locked());
    form().unload();
    press("Nuova Fattura");
    EXPECT_EQ(form().txtNumeroFattura.text(), "2");
}

TEST_F(Numbering, AFirstNumberByTheButtonIsNotChecked) {
    given_invoice({{"Numero_Fattura", "57"}});
    press("Nuova Fattura");
    form().cmdNuovoAnnoFatturazione.click();
    EXPECT_FALSE(form().cmdNuovoAnnoFatturazione.enabled());
    EXPECT_EQ(form().txtNumeroFattura.text(), "");
    fill_rest();
    form().txtNumeroFattura.type("40000 bis");
    form().DTPicker1.pick(make_date(1999, 12, 31)); // before the last invoice
    save();
    EXPECT_EQ(newest().at("Numero_Fattura"), "40000");
    expect_process_end([&] { press("Nuova Fattura"); },
                       "Il numero 40000 è fuori dai limiti: il massimo è 32767.");
}

TEST_F(Numbering, ANewestInvoiceWithoutADateHoldsNothingUp) {
    for (const char* number : {"57", ""}) {
        insert("Fatture",
               *number ? Row{{"Numero_Fattura", number}, {"Anno", "2006"}} : Row{{"Anno", "2006"}});
        form().unload();
        press("Nuova Fattura");
        EXPECT_EQ(form().txtNumeroFattura.text(), *number ? "58" : "1");
        fill_rest();
        form().DTPicker1.pick(make_date(2009, 1, 1)); // no question: there is no year to be new after
        save();
        EXPECT_EQ(newest().at("Data_Fattura"), "01/01/2009");
        press("Modifica Dati");
        form().DTPicker1.pick(make_date(2009, 1, 2));
        press("Modifica Dati");
        EXPECT_EQ(newest().at("Data_Fattura"), "02/01/2009") << "its neighbour has no date to compare with";
    }
}

TEST_F(Numbering, ANewInvoiceIsNotDatedBeforeTheLast) {
    given_invoice({{"Numero_Fattura", "1"}, {"Data_Fattura", "29/02/2008"}});
    press("Nuova Fattura");
    fill_rest();
    form().DTPicker1.pick(make_date(2008, 2, 28));
    boxes().expect(warning("ERRORE INSERIMENTO DATA.\n"
                           "La data indicata è precedente a quella dell'ultima fattura emessa.\n"
                           "Data ultima fattura emessa: 29/02/2008\n"
                           "Data inserita: 28/02/2008\n"
                           "\n"
                           "Modificare la data."));
    press("Nuova Fattura");
    EXPECT_EQ(form().cmdNuovaFattura.caption(), "Salva Fattura")
        << "still to be saved, with all that was typed";
    EXPECT_EQ(form().PrestazioneSingola[0].text(), "Consulenza");
    form().DTPicker1.pick(make_date(2008, 2, 29));
    save();
    EXPECT_EQ(newest().at("Data_Fattura"), "29/02/2008");
}

TEST_F(Numbering, AChangedInvoiceStaysBetweenItsNeighbours) {
    const auto invoice = [&](const std::string& date) {
        return given_invoice({{"Data_Fattura", date},
                              {"Cognome_Ragione_Sociale", "Rossi"},
                              {"Partita_IVA", "01234567890"},
                              {"Indirizzo", "Via Roma 1"},
                              {"CAP", "00100"},
                              {"Provincia", "RM"},
                              {"Città", "Roma"},
                              {"Prestazione1", "Perizia"},
                              {"Importo1", "€ 10,00"},
                              {"Aliquota_IVA", "20"}});
    };
    const int first = invoice("10/01/2006");
    const int middle = invoice("20/01/2006");
    const int last = invoice("31/12/2006");
    const auto change_date = [&](int id, const Date& date) {
        form().txtCurrent_ID.set_text(std::to_string(id));
        press("Annulla"); // shows that row
        press("Modifica Dati");
        form().DTPicker1.pick(date);
        press("Modifica Dati");
        const bool changed = form().cmdModificaDati.caption() == "Modifica Dati";
        press("Annulla");
        return changed;
    };
    const auto refusal = [&](const std::string& previous, const std::string& next, const std::string& date) {
        return warning("ERRORE INSERIMENTO DATA.\n"
                       "La data indicata deve essere compresa tra la precedente e la successiva.\n"
                       "Data fattura precedente: " +
                       previous + "\nData fattura successiva: " + next + "\nData inserita: " + date +
                       "\n\nModificare la data.");
    };
    boxes().expect(refusal("10/01/2006", "31/12/2006", "09/01/2006"));
    EXPECT_FALSE(change_date(middle, make_date(2006, 1, 9)));
    boxes().expect(refusal("10/01/2006", "31/12/2006", "01/01/2007"));
    EXPECT_FALSE(change_date(middle, make_date(2007, 1, 1)));
    EXPECT_TRUE(change_date(middle, make_date(2006, 1, 10)));
    EXPECT_TRUE(change_date(middle, make_date(2006, 12, 31)));
    // The first is bounded by its own stored date.
    boxes().expect(refusal("10/01/2006", "31/12/2006", "09/01/2006"));
    EXPECT_FALSE(change_date(first, make_date(2006, 1, 9)));
    EXPECT_TRUE(change_date(last, make_date(2005, 6, 1))) << "the newest takes any date";
    EXPECT_EQ(stored(last).at("Anno"), "2005");
    EXPECT_EQ(stored(middle).at("Data_Fattura"), "31/12/2006");
}

} // namespace
} // namespace tarvello::testing
