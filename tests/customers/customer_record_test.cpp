#include "customers/customer_form_fixture.h"
#include "text/utf8.h"

namespace tarvello::testing {
namespace {

using namespace customer_box;

struct CustomerRecord : CustomerFormTest {};

TEST_F(CustomerRecord, EveryColumnHasItsBox) {
    given_customer(as_row("Cognome_Ragione_Sociale=Rossi; Nome=Mario; Codice_Fiscale=CF; Partita_IVA=PI; "
                          "Indirizzo=Via; CAP=00100; Provincia=RM; Città=Roma; Telefono=06; Fax=07; "
                          "email=m@rossi.it; Appunti=note"));
    const char* const expected[] = {"CF", "Mario",      "Via",  "00100", "RM",    "Roma", "06",
                                    "07", "m@rossi.it", "note", "1",     "Rossi", "PI"};
    for (std::size_t i = 0; i < 13; ++i) EXPECT_EQ(text(i), expected[i]) << i;
    EXPECT_EQ(form().txtCurrentClient.text(), "Mario Rossi");
}

TEST_F(CustomerRecord, ANullKeepsTheTextOfThePreviousCustomer) {
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Mario"}, {"Appunti", "di rossi"}});
    sql("INSERT INTO Clienti (Cognome_Ragione_Sociale) VALUES ('Bianchi')");
    EXPECT_EQ(text(appunti), "") << "nothing stood there before";
    form().cmd[customer_command::first].click();
    form().cmd[customer_command::last].click();
    EXPECT_EQ(text(cognome), "Bianchi");
    EXPECT_EQ(text(appunti), "Di Rossi");
    EXPECT_EQ(form().txtCurrentClient.text(), "Mario Bianchi");
}

TEST_F(CustomerRecord, EveryPressBringsTheTextsIntoTheirCase) {
    form().Toolbar1.press("Nuovo Cliente");
    fill(cognome, "de rossi");
    fill(nome, "mArio");
    fill(codice_fiscale, "rssmra80a01h501u");
    fill(indirizzo, "VIA DELL'ORSO 5");
    fill(provincia, "re");
    fill(citta, "REGGIO NELL'EMILIA");
    fill(email, "Mario@Rossi.IT");
    form().txtfields[appunti].paste("prima RIGA\nÈ ancora-qui");
    form().txtfields[partita_iva].paste("it123");
    boxes().expect("Inserire il CAP.");
    form().Toolbar1.press("Nuovo Cliente");
    EXPECT_EQ(text(cognome), "de rossi");
    EXPECT_EQ(text(nome), "mArio");
    EXPECT_EQ(text(codice_fiscale), "RSSMRA80A01H501U");
    EXPECT_EQ(text(partita_iva), "IT123");
    EXPECT_EQ(text(indirizzo), "Via Dell'orso 5");
    EXPECT_EQ(text(provincia), "RE");
    EXPECT_EQ(text(citta), "Reggio Nell'emilia");
    EXPECT_EQ(text(email), "Mario@Rossi.IT");
    EXPECT_EQ(text(appunti), "Prima Riga\nÈ Ancora-qui");
    form().cmd[customer_command::last].click();
    EXPECT_EQ(form().focus(), &form().txtfields[cap]) << "a disabled command does nothing";
    form().Toolbar1.press("Annulla");
    form().cmd[customer_command::last].click();
    EXPECT_EQ(form().focus(), &form().txtfields[cognome]);
}

TEST_F(CustomerRecord, ANewCustomerIsCheckedStepByStep) {
    given_customer({{"Codice_Fiscale", "RSSMRA80A01H501U"}, {"Partita_IVA", "12345678901"}});
    form().Toolbar1.press("Nuovo Cliente");
    const auto refused = [&](const char* message, std::size_t at) {
        boxes().expect(box(message, BoxIcon::exclamation));
        form().Toolbar1.press("Nuovo Cliente");
        EXPECT_EQ(form().focus(), &form().txtfields[at]) << message;
        EXPECT_EQ(form().Toolbar1.button(1).caption(), "Salva");
    };
    refused("Inserire Codice Fiscale o Partita IVA del Cliente.", codice_fiscale);
    fill(codice_fiscale, "rssmra80a01h501u");
    refused("Il Codice Fiscale che si sta cercando di inserire è già presente nel database.", codice_fiscale);
    fill(codice_fiscale, " ");
    fill(partita_iva, "12345678901");
    refused("La Partita IVA che si sta cercando di inserire è già presente nel database.", partita_iva);
    fill(partita_iva, "");
    fill(cognome, "  ");
    refused("Inserire il Cognome o Ragione Sociale del Cliente.", cognome);
    fill(cognome, "Rossi");
    refused("Inserire l'Indirizzo.", indirizzo);
    fill(indirizzo, "Via Roma 1");
    refused("Inserire il CAP.", cap);
    fill(cap, "0010");
    refused("Il CAP inserito non è valido. Controllare il CAP", cap);
    fill(cap, "00100");
    refused("Inserire la Provincia.", provincia);
    fill(provincia, "r");
    refused("Inserire la Provincia.", provincia);
    fill(provincia, "rm");
    refused("Inserire la Città.", citta);
    fill(citta, "roma");
    form().Toolbar1.press("Nuovo Cliente");
    EXPECT_EQ(stored(2).at("Città"), "Roma");
    EXPECT_EQ(stored(2).at("Codice_Fiscale"), " ") << "blanks pass as a code of a new customer";
}

TEST_F(CustomerRecord, AChangeMayTakeAnothersCodesButNotBlanks) {
    given_valid_customer({{"Codice_Fiscale", "ALTRO"}});
    const int number = given_valid_customer({});
    form().Toolbar1.press("Modifica Dati");
    fill(codice_fiscale, "  ");
    fill(partita_iva, "");
    boxes().expect(box("Inserire Codice Fiscale o Partita IVA del Cliente.", BoxIcon::exclamation));
    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(form().focus(), &form().txtfields[codice_fiscale]);
    EXPECT_EQ(form().Toolbar1.button(2).caption(), "Aggiorna Dati");
    fill(codice_fiscale, "altro");
    fill(citta, "");
    boxes().expect(box("Inserire la Città.", BoxIcon::exclamation));
    form().Toolbar1.press("Modifica Dati");
    fill(citta, "Roma");
    boxes().expect(propagation(), Answer::no);
    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(stored(number).at("Codice_Fiscale"), "ALTRO");
}

TEST_F(CustomerRecord, TwoCustomersWithoutFiscalCodeAreNoDuplicates) {
    for (const char* vat : {"11111111111", "22222222222"}) {
        form().Toolbar1.press("Nuovo Cliente");
        fill_valid_customer();
        fill(codice_fiscale, "");
        fill(partita_iva, vat);
        form().Toolbar1.press("Nuovo Cliente");
    }
    EXPECT_EQ(sql("SELECT * FROM Clienti").size(), 2u);
}

TEST_F(CustomerRecord, KeysThatABoxRefuses) {
    form().Toolbar1.press("Nuovo Cliente");
    TextBox& postal_code = form().txtfields[cap];
    postal_code.type("a1-2 34567");
    EXPECT_EQ(postal_code.text(), "12345") << "five digits at most";
    postal_code.press_key(keys::backspace);
    EXPECT_EQ(postal_code.text(), "1234");

    TextBox& province = form().txtfields[provincia];
    province.type("r4m");
    province.press_key(keys::backspace);
    EXPECT_EQ(province.text(), "rm") << "Backspace is refused with the control keys";
    province.place_caret(0);
    province.press_delete();
    EXPECT_EQ(province.text(), "m");

    TextBox& vat = form().txtfields[partita_iva];
    vat.type("IT123456789012");
    EXPECT_EQ(vat.text(), "12345678901");
    vat.press_key(keys::backspace);
    EXPECT_EQ(vat.text(), "12345678901") << "not while the caret stands at the end";
    vat.place_caret(3);
    vat.type("9");
    EXPECT_EQ(vat.text(), "123945678901") << "in the middle it grows past eleven";
    vat.press_key(keys::backspace);
    EXPECT_EQ(vat.text(), "12345678901");
    vat.paste("'x");
    EXPECT_EQ(vat.text(), "123'x45678901") << "pasting passes the filter";
}

TEST_F(CustomerRecord, EnterWalksTheBoxesInTheOrderOfAnAddress) {
    form().Toolbar1.press("Nuovo Cliente");
    form().txtfields[cognome].enter();
    for (const std::size_t next : {nome, codice_fiscale, partita_iva, indirizzo, cap, provincia, citta,
                                   telefono, fax, email, appunti}) {
        dynamic_cast<TextBox*>(form().focus())->press_key(keys::enter);
        EXPECT_EQ(form().focus(), &form().txtfields[next]);
    }
    EXPECT_EQ(text(codice_fiscale), "") << "no line break in a box of several lines";
}

TEST_F(CustomerRecord, AMarkerShowsWhereTextOrFocusIs) {
    given_customer({{"Nome", "Mario"}});
    const auto marked = [this](std::size_t box) { return form().ShapeAnagrafica.at(box).visible(); };
    EXPECT_TRUE(marked(nome));
    EXPECT_FALSE(marked(cognome));
    form().txtfields[cognome].enter();
    EXPECT_TRUE(marked(cognome));
    form().txtfields[nome].enter();
    EXPECT_FALSE(marked(cognome));
    form().Toolbar1.press("Nuovo Cliente");
    EXPECT_FALSE(marked(nome));
    form().txtfields[numero].enter();
    form().txtfields[numero].leave();
    EXPECT_FALSE(form().ShapeAnagrafica.contains(numero));
}

TEST_F(CustomerRecord, AnyTextIsStoredAsItWasTyped) {
    const std::string two_hundred(200, 'x');
    const std::string names[] = {"D'Angelo", "l'\"Oca\"",  "100%; DROP TABLE Clienti",
                                 "x'); --",  "😀 Ünï çødé", "ישראל שלום",
                                 "''",       "[a-z]_%",    two_hundred};
    int number = 0;
    for (const std::string& name : names) {
        form().Toolbar1.press("Nuovo Cliente");
        fill_valid_customer();
        fill(codice_fiscale, "CODE" + std::to_string(number));
        fill(cognome, name);
        fill(telefono, name);
        form().Toolbar1.press("Nuovo Cliente");
        ++number;
        EXPECT_EQ(stored(number).at("Cognome_Ragione_Sociale"), name);
        EXPECT_EQ(stored(number).at("Telefono"), name);
        EXPECT_EQ(text(cognome), name) << "as it was loaded back";
        EXPECT_EQ(text(numero), std::to_string(number));
    }
    form().Toolbar1.press("Modifica Dati");
    fill(cognome, two_hundred + "y");
    EXPECT_EQ(utf8::length(text(cognome)), 200u);
    fill(indirizzo, "VIA DELL'\"ORSO\" 5/B -- 😀");
    boxes().expect(propagation(), Answer::no);
    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(stored(number).at("Indirizzo"), "Via Dell'\"orso\" 5/b -- 😀");
}

TEST_F(CustomerRecord, AnApostropheInACodeBreaksTheDuplicateTest) {
    form().Toolbar1.press("Nuovo Cliente");
    fill_valid_customer();
    fill(codice_fiscale, "A'B");
    expect_process_end([&] { form().Toolbar1.press("Nuovo Cliente"); });
    fill(codice_fiscale, "");
    form().txtfields[partita_iva].enter();
    form().txtfields[partita_iva].paste("1'2");
    expect_process_end([&] { form().Toolbar1.press("Nuovo Cliente"); });
    EXPECT_TRUE(sql("SELECT * FROM Clienti").empty());
    EXPECT_NE(boxes().last().text.find("\n\nUn apostrofo (') in ciò che si è scritto"), std::string::npos);

    // What was typed is there again.
    for (const Answer answer : {Answer::yes, Answer::no}) {
        form().unload(UnloadReason::main_window);
        boxes().expect_any(answer);
        form().show();
        EXPECT_EQ(text(partita_iva), answer == Answer::yes ? "1'2" : "");
        EXPECT_EQ(form().cmd[customer_command::new_customer].caption(),
                  answer == Answer::yes ? "Salva" : "Nuovo Cliente");
    }
    form().unload(UnloadReason::main_window);
    form().show(); // thrown away, it is gone
}

TEST_F(CustomerRecord, AChangeIsTakenUpOnItsCustomer) {
    const int first = given_customer({{"Cognome_Ragione_Sociale", "Rossi"}});
    given_customer({{"Cognome_Ragione_Sociale", "Verdi"}});
    form().cmd[customer_command::first].click();
    form().Toolbar1.press("Modifica Dati");
    fill(nome, "Anna");
    form().unload(UnloadReason::shut_down);
    boxes().expect_any(Answer::yes);
    form().show();
    EXPECT_EQ(text(cognome) + text(nome) + text(numero), "RossiAnna" + std::to_string(first));
    form().Toolbar1.press("Annulla");
    form().unload();
    form().show();
}

TEST_F(CustomerRecord, ANumberPast32767StopsEveryCommand) {
    sql("INSERT INTO Clienti (Numero_Cliente, Cognome_Ragione_Sociale) VALUES (32767, 'Rossi')");
    form().cmd[customer_command::first].click();
    EXPECT_EQ(text(cognome), "Rossi");
    sql("INSERT INTO Clienti (Numero_Cliente, Cognome_Ragione_Sociale) VALUES (32768, 'Verdi')");
    form().cmd[customer_command::last].click();
    EXPECT_EQ(text(numero), "32768");
    for (const std::size_t i : {customer_command::first, customer_command::previous, customer_command::next,
                                customer_command::last, customer_command::remove, customer_command::search}) {
        expect_process_end([&] { form().cmd[i].click(); });
    }
    for (const char* key : {"Nuovo Cliente", "Modifica Dati", "Annulla", "Chiudi"}) {
        expect_process_end([&] { form().Toolbar1.press(key); });
    }
    EXPECT_EQ(sql("SELECT * FROM Clienti").size(), 2u);
}

} // namespace
} // namespace tarvello::testing
