#include "customers/customer_form_fixture.h"
#include "customers/customer_results.h"

#include <functional>
#include <vector>

namespace tarvello::testing {
namespace {

using namespace customer_box;
namespace command = customer_command;

struct CustomerSearch : CustomerFormTest {
    using Results = frmRisultatiRicercaClienti;

    static std::vector<std::string> column(const ListView& list, std::size_t index) {
        std::vector<std::string> cells;
        for (std::size_t row = 0; row < list.rows().size(); ++row)
            cells.emplace_back(list.rows().cell(row, index));
        return cells;
    }

    /// Searches as a user does and does `act` in the window of the results. @return the surnames found
    std::vector<std::string> search(int field, const std::string& term,
                                    std::function<void(Results&)> act = {}) {
        std::vector<std::string> found;
        form().cmd[command::search].click();
        form().Combo1.choose(field);
        form().Text1.place_caret(0, 1000);
        form().Text1.press_delete();
        form().Text1.type(term);
        windows().expect_modal("frmRisultatiRicercaClienti", [&](Form& shown) {
            auto& results = dynamic_cast<Results&>(shown);
            found = column(results.ListView1, 1);
            if (act) act(results);
        });
        form().cmd[command::search].click();
        return found;
    }
    using Names = std::vector<std::string>;
};

enum Field { fiscal_code, vat_number, surname, first_name };

TEST_F(CustomerSearch, FindsAPieceOfOneFieldWhateverItsCase) {
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Zoé"}, {"Codice_Fiscale", "RSSMRA"}});
    given_customer(
        {{"Cognome_Ragione_Sociale", "Bianchi"}, {"Nome", "Mario"}, {"Partita_IVA", "12345678901"}});
    given_customer({{"Cognome_Ragione_Sociale", "Grossi & C."}, {"Codice_Fiscale", "GRS"}});
    EXPECT_EQ(form().Combo1.items(),
              (Names{"Codice Fiscale", "Partita IVA", "Cognome/Ragione Sociale", "Nome"}));
    EXPECT_EQ(search(surname, "ROSSI"), (Names{"Rossi", "Grossi & C."}));
    EXPECT_EQ(search(first_name, "oÉ"), (Names{"Rossi"}));
    EXPECT_EQ(search(fiscal_code, "ssmr"), (Names{"Rossi"}));
    EXPECT_EQ(search(vat_number, "678"), (Names{"Bianchi"}));
    EXPECT_EQ(search(surname, "g%s_i"), (Names{"Grossi & C."})) << "the wildcards of the engine";
    EXPECT_EQ(search(surname, "%"), (Names{"Rossi", "Bianchi", "Grossi & C."}));
    EXPECT_EQ(search(surname, "😀 \"; --"), Names{});
}

TEST_F(CustomerSearch, ThePanelOpensAndFolds) {
    EXPECT_EQ(form().Frame1.height(), 600);
    EXPECT_FALSE(form().Combo1.reachable());
    EXPECT_FALSE(form().Text1.reachable()) << "folded away";
    EXPECT_EQ(form().Combo1.list_index(), -1);
    form().cmd[command::search].click();
    EXPECT_EQ(form().Frame1.height(), 4815);
    EXPECT_TRUE(form().Combo1.reachable());
    boxes().expect(box("Selezionare il campo di ricerca", BoxIcon::exclamation));
    form().cmd[command::search].click();
    EXPECT_EQ(form().focus(), &form().Combo1);
    form().Combo1.choose(surname);
    boxes().expect(
        box("Inserire il testo da cercare o selezionare una voce dall'elenco.", BoxIcon::exclamation));
    form().cmd[command::search].click();
    EXPECT_EQ(form().focus(), &form().Text1);
    EXPECT_EQ(form().cmd[command::search].caption(), "OK");
    form().Toolbar1.press("Annulla");
    EXPECT_EQ(form().Frame1.height(), 600);
    EXPECT_FALSE(form().Combo1.enabled());
}

TEST_F(CustomerSearch, TheSelectedCustomerComesBackHoweverTheWindowCloses) {
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Ugo"}, {"Telefono", "1"}});
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Ugo"}, {"Telefono", "2"}});
    given_customer({{"Cognome_Ragione_Sociale", "Rossi"}, {"Nome", "Ada"}, {"Telefono", "3"}});
    search(surname, "ross", [](Results& results) {
        EXPECT_EQ(results.caption(), "Risultati Ricerca Clienti");
        EXPECT_EQ(results.Label1.caption(), "");
        results.ListView1.select_row(1);
        results.cmdVisualizza.click();
    });
    EXPECT_EQ(text(telefono), "2");
    EXPECT_EQ(form().txtCurrentClient.text(), "Ugo Rossi");
    EXPECT_EQ(form().cmd[command::search].caption(), "Cerca Cliente");
    EXPECT_EQ(form().Frame1.height(), 600);
    EXPECT_TRUE(form().txtfields[cognome].locked());

    search(surname, "ross", [](Results& results) { results.ListView1.double_click(2); });
    EXPECT_EQ(text(nome), "Ada");
    search(surname, "ross", [](Results& results) {
        results.ListView1.select_row(0);
        results.close_by_user();
    });
    EXPECT_EQ(text(telefono), "1");
    search(surname, "ross", [](Results& results) {
        results.ListView1.select_row(1);
        results.unload(UnloadReason::main_window);
    });
    EXPECT_EQ(text(telefono), "") << "not when the program ends";
}

TEST_F(CustomerSearch, WithNothingChosenTheBoxesStayEmpty) {
    given_customer({{"Nome", "A"}});
    given_customer({{"Nome", "B"}});
    search(first_name, "nobody");
    EXPECT_EQ(text(nome), "");
    EXPECT_EQ(text(numero), "");
    EXPECT_EQ(form().cmd[command::search].caption(), "Cerca Cliente");
    form().cmd[command::next].click();
    EXPECT_EQ(text(nome), "B") << "read as number 0, and the step goes to the second row";
}

TEST_F(CustomerSearch, ACustomerWithoutAFirstNameIsListedButDoesNotComeBack) {
    sql("INSERT INTO Clienti (Cognome_Ragione_Sociale, Città) VALUES ('Rossi', 'Roma')");
    search(surname, "rossi", [](Results& results) {
        EXPECT_EQ(column(results.ListView1, 8), Names{"Roma"});
        results.ListView1.double_click(0);
    });
    EXPECT_EQ(text(cognome), "");
}

TEST_F(CustomerSearch, AnApostropheInTheTermEndsTheProgram) {
    form().cmd[command::search].click();
    form().Combo1.choose(surname);
    form().Text1.type("d'angelo");
    expect_process_end([&] { form().cmd[command::search].click(); });
}

TEST_F(CustomerSearch, TheListOfAllCustomersHasAllColumns) {
    const char* const headers[] = {"n° cliente", "Cognome / Rag. Sociale",
                                   "Nome",       "C.F.",
                                   "P.I.",       "Indirizzo",
                                   "CAP",        "Provincia",
                                   "Città",      "Telefono",
                                   "Fax",        "e-mail",
                                   "Note"};
    const char* const cells[] = {"1",  "Rossi", "Ugo", "CF", "PI",         "Via", "00100",
                                 "RM", "Roma",  "06",  "07", "m@rossi.it", "note"};
    given_customer(as_row("Cognome_Ragione_Sociale=Rossi; Nome=Ugo; Codice_Fiscale=CF; Partita_IVA=PI; "
                          "Indirizzo=Via; CAP=00100; Provincia=RM; Città=Roma; Telefono=06; Fax=07; "
                          "email=m@rossi.it; Appunti=note"));
    given_customer({{"Cognome_Ragione_Sociale", "Bianchi"}});
    form().txtfields[indirizzo].set_text("via roma");
    windows().expect_modal("frmRisultatiRicercaClienti", [&](Form& shown) {
        auto& results = dynamic_cast<Results&>(shown);
        EXPECT_EQ(text(indirizzo), "via roma") << "it presses nothing that brings texts into their case";
        EXPECT_EQ(results.caption(), "Elenco");
        EXPECT_EQ(results.Label1.caption(), "Elenco Clienti");
        for (std::size_t i = 0; i < 13; ++i) {
            EXPECT_EQ(results.ListView1.columns().at(i).header, headers[i]);
            EXPECT_EQ(results.ListView1.rows().cell(0, i), cells[i]) << headers[i];
        }
        EXPECT_EQ(column(results.ListView1, 1), (Names{"Rossi", "Bianchi"}));
        results.ListView1.double_click(0);
    });
    form().Toolbar1.press("Show");
    EXPECT_EQ(text(cognome), "Rossi");

    program->database().dbConnection.close();
    windows().expect_modal("frmRisultatiRicercaClienti", [&](Form& shown) {
        EXPECT_EQ(dynamic_cast<Results&>(shown).ListView1.rows().size(), 0u);
    });
    form().Toolbar1.press("Show");
    EXPECT_EQ(text(cognome), "Rossi") << "what fails in the list is passed over";
}

TEST_F(CustomerSearch, BackspaceInTheTermTakesEverythingBehindTheCaret) {
    form().cmd[command::search].click();
    TextBox& term = form().Text1;
    term.type("abcdèfg");
    term.press_key(keys::backspace);
    EXPECT_EQ(term.text(), "abcdèf");
    term.place_caret(5);
    term.press_key(keys::backspace);
    EXPECT_EQ(term.text(), "abcd");
    EXPECT_EQ(term.selection_start(), 4u);
    term.place_caret(2, 1);
    term.press_key(keys::backspace);
    EXPECT_EQ(term.text(), "a") << "a selection goes with what stands behind its start";
    term.place_caret(0);
    term.press_key(keys::backspace);
    EXPECT_EQ(term.text(), "a");
}

} // namespace
} // namespace tarvello::testing
