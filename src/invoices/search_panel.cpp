#include "invoices/search_panel.h"

#include "invoices/invoice_list.h"
#include "invoices/invoice_results.h"
#include "invoices/shared_results.h"
#include "invoices/years.h"
#include "program/messages.h"
#include "program/program.h"
#include "text/letter_case.h"
#include "text/utf8.h"

namespace tarvello {
namespace {

/// Proper case that only raises letters: a capital A to Z of the original stays. rossi mario becomes Rossi
/// Mario, McDONALD stays as it is.
std::string capitalise(std::string_view text) {
    const std::u32string original = utf8::decode(text);
    std::u32string raised = utf8::decode(proper_case(text, invoice_separators));
    for (std::size_t i = 0; i < original.size(); ++i) {
        if (original[i] >= U'A' && original[i] <= U'Z') raised[i] = original[i];
    }
    return utf8::encode(raised);
}

bool is_code(const std::string& field) { return field == "Codice Fiscale" || field == "Partita IVA"; }

/// The column that a field of the search looks in. "Numero Fattura" has none of its own: its number is looked
/// for in the fiscal codes.
const char* column_of(const std::string& field) {
    if (field == "Partita IVA") return "Partita_IVA";
    if (field == "Nome") return "Nome";
    if (field == "Cognome/Ragione Sociale") return "Cognome_Ragione_Sociale";
    return "Codice_Fiscale";
}

} // namespace

SearchPanel::SearchPanel(Program& program, Form& form)
    : FrameRicerca(form, "FrameRicerca"), program_(program) {
    cmdCerca.set_caption("Cerca Fattura");
    cmdCerca.set_picture("cerca");
    Label7.set_caption("1. Anno");
    Label8.set_caption("2. Cerca in:");
    Label4.set_caption("3. Cosa?");
    add_years(Combo3);
    for (const char* item :
         {"Numero Fattura", "Codice Fiscale", "Partita IVA", "Nome", "Cognome/Ragione Sociale"}) {
        Combo1.add_item(item);
    }
    enable_entries(false);
    Text2.lead_enter_to(cmdCerca);
}

void SearchPanel::enable_entries(bool enabled) {
    Combo1.set_enabled(enabled);
    Combo3.set_enabled(enabled);
    Text2.set_enabled(enabled);
    // What is folded away must not be reached with Tab.
    for (Control* entry : std::initializer_list<Control*>{&Combo1, &Combo3, &Text2})
        entry->set_visible(enabled);
}

void SearchPanel::set_open(bool open) {
    enable_entries(open);
    if (open) add_years_of_archive(program_, Combo3);
    FrameRicerca.set_height(open ? open_height : closed_height);
}

bool SearchPanel::all_entries_given() {
    const auto given = [this](TextEntry& entry, const char* message) {
        if (!entry.empty()) return true;
        program_.message(message, BoxIcon::exclamation);
        entry.set_focus();
        return false;
    };
    return given(Combo3, "Selezionare l'anno.") && given(Combo1, messages::no_search_field) &&
           given(Text2, messages::no_search_text);
}

bool SearchPanel::list_matches(std::shared_ptr<InvoiceView> view) {
    if (!all_entries_given()) return false;
    const std::string& field = Combo1.text();
    const std::string text = is_code(field) ? upper_case(Text2.text()) : capitalise(Text2.text());
    bool any = false;
    Database& database = program_.database();
    with_result(database, database.rsFatture,
                "SELECT * FROM FATTURE WHERE " + std::string(column_of(field)) + " LIKE '%" + text +
                    "%' AND Anno=" + Combo3.text() + " ORDER BY ID DESC",
                [&](Recordset& rows) {
                    if (rows.eof()) return;
                    any = true;
                    auto& results = program_.form<frmRisultatiRicercaFatture>();
                    results.return_to(std::move(view));
                    const InvoiceRowWriter writer(rows, {"Importo_Rivalsa", "Importo_Ritenuta"},
                                                  MissingColumns::fail);
                    for (; !rows.eof(); rows.move_next()) writer.add(results.ListView1.fill());
                    results.ListView1.rows_added();
                    results.ListView1.set_selected(0); // so that "Visualizza" has a row from the start
                    results.txtAnnoDiRicerca.set_text(Combo3.text());
                    results.show_modal();
                });
    return any;
}

} // namespace tarvello
