#include "customers/customer_form.h"
#include "customers/customer_list.h"
#include "customers/customer_results.h"
#include "failure.h"
#include "program/messages.h"
#include "program/program.h"
#include "text/letter_case.h"
#include "text/utf8.h"

/// The search panel of frmClienti and the list of all customers.
namespace tarvello {
namespace {

// Heights of the panel in twips.
constexpr int folded = 600;
constexpr int unfolded = 4815;

} // namespace

void frmClienti::ApriPannelloRicerca() {
    Frame1.set_height(unfolded);
    show_search_fields(true);
    Combo1.set_enabled(true);
}

void frmClienti::ChiudiPannelloRicerca() {
    Combo1.set_enabled(false);
    show_search_fields(false);
    Frame1.set_height(folded);
}

void frmClienti::show_search_fields(bool visible) {
    // What is folded away must not be reached with Tab.
    Label8.set_visible(visible);
    Combo1.set_visible(visible);
    Label2.set_visible(visible);
    Text1.set_visible(visible);
}

void frmClienti::filter_search_key(int& key) {
    if (key != keys::backspace || Text1.selection_start() == 0) return;
    // Backspace takes everything right of the caret with it; the key itself goes on and takes one more.
    const std::size_t caret = Text1.selection_start();
    Text1.set_text(utf8::left(Text1.text(), caret));
    Text1.select(caret, 0);
}

void frmClienti::search() {
    CommandButton& button = cmd[customer_command::search];
    if (button.caption() == "Cerca Cliente") {
        SvuotaCampi();
        InvertiBlocchiCampi();
        ApriPannelloRicerca();
        InvertiComandi("Cerca Cliente");
        button.set_caption("OK");
        return;
    }
    if (!CercaClienti()) return;
    InvertiBlocchiCampi();
    ChiudiPannelloRicerca();
    InvertiComandi("OK");
    button.set_caption("Cerca Cliente");
}

bool frmClienti::CercaClienti() {
    if (Combo1.empty()) {
        tell(messages::no_search_field, BoxIcon::exclamation);
        Combo1.set_focus();
        return false;
    }
    if (Text1.empty()) {
        tell(messages::no_search_text, BoxIcon::exclamation);
        Text1.set_focus();
        return false;
    }
    std::string column = "Codice_Fiscale";
    std::string term = upper_case(Text1.text());
    if (Combo1.text() == "Partita IVA") {
        column = "Partita_IVA";
    } else if (Combo1.text() == "Nome") {
        column = "Nome";
        term = Text1.text();
    } else if (Combo1.text() == "Cognome/Ragione Sociale") {
        column = "Cognome_Ragione_Sociale";
        term = Text1.text();
    }
    Recordset& customers = open_customers("SELECT * FROM Clienti WHERE " + column + " LIKE '%" + term + "%'");
    auto& results = program_.form<frmRisultatiRicercaClienti>();
    customer_list::fill(results.ListView1, customers, customer_list::columns);
    customers.close();
    results.return_to(share<CustomerView>(*this));
    results.show_modal();
    return true;
}

void frmClienti::ElencaClienti() {
    Recordset& customers = program_.database().rsClienti;
    auto& results = program_.form<frmRisultatiRicercaClienti>();
    skip_failures([&] { customers.open("SELECT * FROM Clienti", program_.database().dbConnection); },
                  [&] { results.Label1.set_caption("Elenco Clienti"); },
                  [&] { results.set_caption("Elenco"); },
                  [&] { customer_list::fill(results.ListView1, customers, customer_list::columns); },
                  [&] { customers.close(); },
                  [&] {
                      results.return_to(share<CustomerView>(*this));
                      results.show_modal();
                  });
}

} // namespace tarvello
