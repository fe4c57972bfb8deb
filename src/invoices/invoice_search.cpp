#include "failure.h"
#include "invoices/invoice_form.h"
#include "invoices/invoice_results.h"
#include "invoices/invoice_rows.h"
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

void frmTarvello::search() {
    if (cmdCerca.caption() == "Cerca Fattura") {
        PulisciFattura();
        ImpostaStato("Cerca Fattura");
        cmdCerca.set_caption("OK");
        open_search_frame(true);
        return;
    }
    if (!list_matches()) {
        program_.message("Nessua fattura trovata.", BoxIcon::information);
        return;
    }
    open_search_frame(false);
    SbloccaAnagrafica();
    ImpostaStato("OK");
    cmdCerca.set_caption("Cerca Fattura");
}

void frmTarvello::set_search_state(std::string_view action) {
    const bool browsing = action == "OK";
    for (CommandButton& button : cmdNavigazione) button.set_enabled(browsing);
    for (CommandButton* button : {&cmdNuovaFattura, &cmdModificaDati, &cmdEliminaFattura, &cmdStampaFattura,
                                  &StampaWord, &CheckEmail, &cmdChiudi}) {
        button->set_enabled(browsing);
    }
    constexpr std::size_t cancel_button = 6;
    for (std::size_t place = 1; place <= Toolbar1.size(); ++place) {
        if (place != cancel_button) Toolbar1.button(place).set_visible(browsing);
    }
}

void frmTarvello::open_search_frame(bool open) {
    for (Control* entry :
         {static_cast<Control*>(&Combo1), static_cast<Control*>(&Combo3), static_cast<Control*>(&Text2)}) {
        entry->set_enabled(open);
    }
    FrameRicerca.set_height(open ? search_open_height : search_closed_height);
}

bool frmTarvello::list_matches() {
    const auto missing = [this](TextEntry& entry, const char* message) {
        if (!entry.empty()) return false;
        program_.message(message, BoxIcon::exclamation);
        entry.set_focus();
        return true;
    };
    if (missing(Combo3, "Selezionare l'anno.")) return false;
    if (missing(Combo1, "Selezionare il campo di ricerca")) return false;
    if (missing(Text2, "Inserire il testo da cercare o selezionare una voce dall'elenco.")) return false;

    const std::string& field = Combo1.text();
    const std::string text = is_code(field) ? upper_case(Text2.text()) : capitalise(Text2.text());
    Recordset& rsFatture = program_.database().rsFatture;
    ChiudiRecordset();
    rsFatture.open("SELECT * FROM FATTURE WHERE " + std::string(column_of(field)) + " LIKE '%" + text +
                       "%' AND Anno=" + Combo3.text() + " ORDER BY ID DESC",
                   program_.database().dbConnection);
    if (rsFatture.eof()) {
        ChiudiRecordset();
        return false;
    }

    auto& results = program_.form<frmRisultatiRicercaFatture>();
    const InvoiceRowWriter writer(rsFatture, {"Importo_Rivalsa", "Importo_Ritenuta"});
    for (; !rsFatture.eof(); rsFatture.move_next()) writer.add(results.ListView1.fill());
    results.ListView1.rows_added();
    results.ListView1.set_selected(0); // so that "Visualizza" has a row from the start
    results.txtAnnoDiRicerca.set_text(Combo3.text());
    results.show_modal();
    ChiudiRecordset();
    return true;
}

} // namespace tarvello
