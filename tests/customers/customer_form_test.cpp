#include "customers/customer_form_fixture.h"
#include "fiscal_code/calculator_form.h"

#include <set>

namespace tarvello::testing {
namespace {

using namespace customer_box;
namespace command = customer_command;

struct CustomerForm : CustomerFormTest {
    /// What the user can press, by its caption.
    std::set<std::string> commands() {
        std::set<std::string> result;
        for (CommandButton& button : form().cmd) {
            if (button.reachable()) result.insert(button.caption() + button.picture());
        }
        if (form().cmdmail.reachable()) result.insert("mail");
        if (form().cmdCalcolaCF.reachable()) result.insert("CF");
        for (std::size_t i = 1; i <= 6; ++i) {
            if (form().Toolbar1.button(i).reachable()) {
                result.insert(form().Toolbar1.button(i).caption() + "+" +
                              form().Toolbar1.button(i).picture());
            }
        }
        return result;
    }
    const std::set<std::string> browsing{"Primoprimo",
                                         "freccia-sinistra",
                                         "freccia-destra",
                                         "Ultimoultimo",
                                         "Elimina Clienteelimina",
                                         "Cerca Clientecerca",
                                         "mail",
                                         "Nuovo Cliente+nuovo-cliente",
                                         "Modifica Dati+modifica",
                                         "e-mail+posta",
                                         "Annulla+annulla",
                                         "Elenco+elenco",
                                         "Chiudi+chiudi"};

    void expect_browsing() {
        EXPECT_EQ(commands(), browsing);
        for (TextBox& box : form().txtfields) EXPECT_TRUE(box.locked());
    }
    void expect_editing() {
        for (std::size_t i = 0; i < 13; ++i) EXPECT_EQ(form().txtfields[i].locked(), i == numero) << i;
    }
    std::string page(std::size_t to) {
        form().cmd[to].click();
        return text(numero);
    }
};

TEST_F(CustomerForm, OpensOnTheNewestAndPagesByNumber) {
    for (const char* name : {"A", "B", "C", "D"}) given_customer({{"Nome", name}});
    sql("DELETE * FROM Clienti WHERE Numero_Cliente=2");
    EXPECT_EQ(form().caption(), "Clienti");
    EXPECT_EQ(text(numero), "4");
    EXPECT_EQ(page(command::next), "4") << "past the end the record stays";
    EXPECT_EQ(page(command::previous), "3");
    EXPECT_EQ(page(command::previous), "1");
    EXPECT_EQ(page(command::previous), "1");
    EXPECT_EQ(page(command::next), "3");
    EXPECT_EQ(page(command::last), "4");
    EXPECT_EQ(page(command::first), "1");
    EXPECT_EQ(text(nome), "A");
    sql("DELETE * FROM Clienti WHERE Numero_Cliente=1");
    EXPECT_EQ(page(command::next), "4")
        << "the step goes to the second row: from a number that is gone it skips one";
    expect_browsing();
}

TEST_F(CustomerForm, ShowsItsCommandsAndTheirKeys) {
    expect_faces(
        form(),
        "cmd_0=Primo|Alt+Home|Visualizza primo cliente|primo; "
        "cmd_1=|Alt+Left|Cliente precedente|freccia-sinistra; "
        "cmd_2=|Alt+Right|Cliente successivo|freccia-destra; "
        "cmd_3=Ultimo|Alt+End|Visualizza ultimo cliente|ultimo; "
        "cmd_4=Elimina Cliente|Alt+E|Elimina il cliente corrente|elimina; "
        "cmd_8=Cerca Cliente|Ctrl+F||cerca; Toolbar1_1=Nuovo Cliente|Ctrl+N||nuovo-cliente; "
        "Toolbar1_2=Modifica Dati|Ctrl+M||modifica; Toolbar1_3=e-mail|Ctrl+I||posta; "
        "Toolbar1_4=Annulla|Alt+A||annulla; Toolbar1_5=Elenco|Ctrl+L||elenco; "
        "Toolbar1_6=Chiudi|Alt+C||chiudi; cmdmail=e-mail|Alt+I||; "
        "cmdCalcolaCF=CF|F8|Calcola il Codice Fiscale|; Label8=1. Selezionare una voce.; "
        "Label2=2. Inserisci il testo da cercare; lblLabels_0=Codice Fiscale; lblLabels_10=Cliente n°; "
        "lblLabels_11=Cognome /R.S.; lblLabels_12=Partita IVA");
    EXPECT_EQ(form().width(), 8235);
    EXPECT_EQ(form().height(), 7485);
    EXPECT_TRUE(form().txtCurrentClient.locked());
    form().Toolbar1.press("Nuovo Cliente");
    expect_faces(form(), "Toolbar1_1=Salva|Ctrl+S||salva");
    form().Toolbar1.press("Annulla");
    form().Toolbar1.press("Modifica Dati");
    expect_faces(form(),
                 "Toolbar1_1=Nuovo Cliente|Ctrl+N||nuovo-cliente; Toolbar1_2=Aggiorna Dati|Ctrl+S||salva");
    form().Toolbar1.press("Annulla");
    expect_faces(form(), "Toolbar1_2=Modifica Dati|Ctrl+M||modifica");
    form().cmd[command::search].click();
    form().Text1.press_key(keys::enter);
    EXPECT_EQ(form().focus(), &form().cmd[command::search]);
}

TEST_F(CustomerForm, EachModeLeavesItsOwnCommands) {
    given_valid_customer({});
    expect_browsing();
    form().Toolbar1.press("Nuovo Cliente");
    EXPECT_EQ(commands(), (std::set<std::string>{"Salva+salva", "Annulla+annulla", "CF"}));
    EXPECT_EQ(text(cognome), "");
    EXPECT_EQ(form().txtCurrentClient.text(), "");
    expect_editing();
    form().Toolbar1.press("Annulla");
    expect_browsing();
    EXPECT_EQ(text(cognome), "Rossi");

    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(commands(), (std::set<std::string>{"Aggiorna Dati+salva", "Annulla+annulla", "CF"}));
    EXPECT_EQ(form().focus(), &form().txtfields[cognome]);
    EXPECT_EQ(text(cognome), "Rossi");
    expect_editing();
    form().Toolbar1.press("Annulla");
    expect_browsing();

    form().cmd[command::search].click();
    EXPECT_EQ(commands(), (std::set<std::string>{"OKcerca", "Annulla+annulla", "CF"}));
    EXPECT_EQ(text(cognome), "");
    expect_editing();
    form().Toolbar1.press("Annulla");
    expect_browsing();
    form().Toolbar1.press("Annulla");
    expect_browsing();
}

TEST_F(CustomerForm, CancelShowsTheNewestOrAfterASearchTheFirst) {
    given_valid_customer({{"Nome", "A"}});
    given_valid_customer({{"Nome", "B"}});
    sql("INSERT INTO Clienti (Nome) VALUES ('C')");
    form().cmd[command::previous].click();
    form().Toolbar1.press("Modifica Dati");
    fill(nome, "changed");
    form().Toolbar1.press("Annulla");
    EXPECT_EQ(text(nome) + text(cap), "C") << "nothing of another stands where it has nulls";
    for (const char* mode : {"Modifica Dati", "Nuovo Cliente"}) {
        form().Toolbar1.press(mode);
        fill(telefono, "06");
        form().Toolbar1.press("Annulla");
        EXPECT_EQ(text(nome) + text(telefono), "C");
    }
    EXPECT_EQ(stored(2).at("Nome"), "B");
    form().cmd[command::search].click();
    form().Toolbar1.press("Annulla");
    EXPECT_EQ(text(nome), "A");
}

TEST_F(CustomerForm, ANewCustomerGetsTheNextNumberAndIsLoadedBack) {
    given_customer();
    form().Toolbar1.press("Nuovo Cliente");
    fill_valid_customer();
    fill(telefono, "06 1");
    fill(fax, "06 2");
    fill(email, "m@rossi.it");
    fill(appunti, "paga tardi");
    form().Toolbar1.press("Nuovo Cliente");
    EXPECT_EQ(text(numero), "2");
    EXPECT_EQ(form().txtCurrentClient.text(), "Mario Rossi");
    expect_browsing();
    const Row expected =
        as_row("Numero_Cliente=2; Cognome_Ragione_Sociale=Rossi; Nome=Mario; "
               "Codice_Fiscale=RSSMRA80A01H501U; Partita_IVA=; Indirizzo=Via Roma 1; CAP=00100; "
               "Provincia=RM; Città=Roma; Telefono=06 1; Fax=06 2; email=m@rossi.it; "
               "Appunti=Paga Tardi");
    EXPECT_EQ(stored(2), expected);
}

TEST_F(CustomerForm, AChangeIsCarriedIntoAllInvoicesOnYesOnly) {
    const int rossi = given_valid_customer({{"Telefono", "1"}});
    given_invoice(
        {{"Numero_Cliente", "1"}, {"Cognome_Ragione_Sociale", "Rossi"}, {"Prestazione1", "Parere"}});
    given_invoice({{"Numero_Cliente", "2"}, {"Cognome_Ragione_Sociale", "Bianchi"}});
    given_invoice({{"Numero_Cliente", "1"}, {"Data_Fattura", "31/12/2004"}});

    form().Toolbar1.press("Modifica Dati");
    fill(cognome, "De' Rossi");
    boxes().expect(propagation(), Answer::no);
    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(stored(rossi).at("Cognome_Ragione_Sociale"), "De' Rossi");
    EXPECT_EQ(sql("SELECT * FROM Fatture").at(0).at("Cognome_Ragione_Sociale"), "Rossi");

    form().Toolbar1.press("Modifica Dati");
    const std::pair<std::size_t, const char*> texts[] = {
        {nome, "Ugo"},  {codice_fiscale, "CF"}, {partita_iva, "123"}, {indirizzo, "Corso Q"},
        {cap, "20100"}, {provincia, "MI"},      {citta, "Milano"},    {telefono, "06 1"},
        {fax, "06 2"},  {email, "u@q.it"},      {appunti, "Nuovo"}};
    for (const auto& [box, text] : texts) fill(box, text);
    boxes().expect(propagation(), Answer::yes);
    boxes().expect(box("Aggiornamento riuscito.", BoxIcon::information));
    form().Toolbar1.press("Modifica Dati");
    const std::string copied =
        "Cognome_Ragione_Sociale=De' Rossi; Nome=Ugo; Codice_Fiscale=CF; Partita_IVA=123; "
        "Indirizzo=Corso Q; CAP=20100; Provincia=MI; Città=Milano";
    EXPECT_EQ(stored(rossi),
              as_row(copied + "; Numero_Cliente=1; Telefono=06 1; Fax=06 2; email=u@q.it; Appunti=Nuovo"));
    const auto invoices = sql("SELECT * FROM Fatture");
    for (const std::size_t own : {0u, 2u}) {
        for (const auto& [column, text] : as_row(copied)) EXPECT_EQ(invoices[own].at(column), text) << column;
    }
    EXPECT_EQ(invoices[0].at("Prestazione1"), "Parere");
    EXPECT_EQ(invoices[1].at("Cognome_Ragione_Sociale"), "Bianchi");
    expect_browsing();
}

TEST_F(CustomerForm, AFailedSaveIsShownAndTheFormGoesOn) {
    given_valid_customer({});
    form().Toolbar1.press("Modifica Dati");
    fill(nome, "Ugo");
    program->database().dbConnection.close();
    boxes().expect(propagation(), Answer::yes);
    boxes().expect(
        {"Nessun database è aperto.3704Nessun database è aperto.Archivio0", "Tarvello 4", BoxIcon::none});
    boxes().expect(box("Nessun database è aperto.", BoxIcon::critical));
    form().Toolbar1.press("Modifica Dati");
    EXPECT_EQ(text(nome), "Ugo");
    expect_browsing();
}

TEST_F(CustomerForm, InvoicesForbidADeletionAndTheNextOnesToo) {
    const int without = given_valid_customer({{"Cognome_Ragione_Sociale", "Senza"}, {"Nome", "Ugo"}});
    const int with = given_valid_customer({{"Cognome_Ragione_Sociale", "Con"}});
    given_invoice({{"Numero_Cliente", std::to_string(with)}});
    const MessageBox refusal =
        box("Impossibile Eliminare il cliente\n\nSono presenti fatture in archivio a nome del "
            "cliente selezionato.",
            BoxIcon::information);
    const MessageBox sure =
        question("Dati Cliente:\nUgo - RSSMRA80A01H501U\nVia Roma 1 - 00100 - RM - Roma\n\n"
                 "Sei sicuro di voler cancellare questo Cliente?");
    boxes().expect(refusal);
    form().cmd[command::remove].click();
    form().cmd[command::first].click();
    boxes().expect(refusal); // the result of the first refusal is still open
    form().cmd[command::remove].click();
    EXPECT_EQ(text(cognome), "Senza");

    form().cmd[command::previous].click(); // closes it
    boxes().expect(sure, Answer::no);
    form().cmd[command::remove].click();
    EXPECT_EQ(stored(without).at("Nome"), "Ugo");
    boxes().expect(sure, Answer::yes);
    form().cmd[command::remove].click();
    EXPECT_EQ(text(cognome), "Con");
    const auto left = sql("SELECT * FROM Clienti");
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].at("Cognome_Ragione_Sociale"), "Con");
}

TEST_F(CustomerForm, DeletingTheLastCustomerLeavesEmptyBoxes) {
    given_valid_customer({});
    boxes().expect_any(Answer::yes);
    form().cmd[command::remove].click();
    EXPECT_EQ(text(cognome), "");
    EXPECT_EQ(text(numero), "");
    EXPECT_EQ(page(command::first), "");
    EXPECT_EQ(page(command::next), "");
    form().Toolbar1.press("Modifica Dati");
    fill_valid_customer();
    boxes().expect(propagation(), Answer::no);
    form().Toolbar1.press("Modifica Dati");
    EXPECT_TRUE(sql("SELECT * FROM Clienti").empty());
}

TEST_F(CustomerForm, PagingWithoutADatabaseClosesTheForm) {
    for (const std::size_t to : {command::first, command::previous, command::next, command::last}) {
        program->session().mnuChiudiDatabase.set_enabled(true);
        form().show();
        program->session().mnuChiudiDatabase.set_enabled(false);
        boxes().expect(box("Nessun database connesso.", BoxIcon::information));
        form().cmd[to].click();
        EXPECT_EQ(program->loaded<frmClienti>(), nullptr);
        EXPECT_TRUE(windows().shown.empty());
    }
}

TEST_F(CustomerForm, CloseAsksNothingInAnyMode) {
    form().show();
    form().Toolbar1.press("Chiudi");
    EXPECT_EQ(program->loaded<frmClienti>(), nullptr);
    form().Toolbar1.press("Nuovo Cliente");
    fill(cognome, "Rossi");
    form().close_by_user();
    EXPECT_EQ(program->loaded<frmClienti>(), nullptr);
    EXPECT_TRUE(sql("SELECT * FROM Clienti").empty());
}

TEST_F(CustomerForm, MailGoesToTheAddressInItsBox) {
    given_customer({{"email", "m.rossi@example.it"}});
    form().Toolbar1.press("Invia e-mail");
    form().cmdmail.click();
    EXPECT_EQ(fake.desktop.opened,
              (std::vector<std::string>{"mailto:m.rossi@example.it", "mailto:m.rossi@example.it"}));
    given_customer();
    form().cmd[command::last].click();
    boxes().expect(box("Indirizzo e-mail assente.", BoxIcon::information));
    form().cmdmail.click();
}

TEST_F(CustomerForm, TheCalculatorStartsWithTheName) {
    form().Toolbar1.press("Nuovo Cliente");
    fill(cognome, "Rossi");
    fill(nome, "Mario");
    windows().expect_modal("frmCalcolaCF", [](Form& shown) {
        auto& calculator = dynamic_cast<frmCalcolaCF&>(shown);
        EXPECT_EQ(calculator.txtCognome.text(), "Rossi");
        EXPECT_EQ(calculator.txtNome.text(), "Mario");
        EXPECT_EQ(calculator.txtparam.text(), "Clienti");
    });
    boxes().expect_any(); // the list of municipalities is not there
    form().cmdCalcolaCF.click();
}

} // namespace
} // namespace tarvello::testing
