#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "text/numbers.h"

#include <algorithm>

/// What was typed and not saved, and how it comes back. The modes of a draft are those of the buttons.
namespace tarvello {
namespace {

const std::string mode_new = "nuova";
const std::string mode_change = "modifica";

} // namespace

std::string frmTarvello::draft_mode() const {
    if (cmdNuovaFattura.caption() == "Salva Fattura") return mode_new;
    return cmdModificaDati.caption() == "Aggiorna Dati" ? mode_change : std::string();
}

std::string frmTarvello::draft_words(const FormDraft& draft) const {
    return draft.mode == mode_new ? "in una fattura nuova"
                                  : "in una modifica della fattura di chiave " + draft.record;
}

bool frmTarvello::show_invoice(const std::string& id) {
    bool there = false;
    Database& database = program_.database();
    with_result(database, database.rsFatture,
                "SELECT * FROM Fatture WHERE ID=" + std::to_string(leading_int16(id)),
                [&](const Recordset& rows) {
                    there = !rows.eof();
                    if (there) MostraFattura();
                });
    return there;
}

bool frmTarvello::take_up(const FormDraft& draft) {
    const auto kept = [&](const Control& field) {
        const auto value = draft.values.find(field.name());
        return value == draft.values.end() ? std::string() : value->second;
    };
    if (draft.mode == mode_change) {
        if (!show_invoice(draft.record)) return false;
        start_change();
    } else {
        start_new_invoice();
        const bool typed = kept(customer.txtNuovoInserimento) == "NEW";
        if (typed) customer.announce_new_customer();
        if (typed || !kept(customer.ComboNumeroCliente).empty()) SbloccaAnagrafica();
    }
    const std::string number = kept(txtNumeroFattura);
    // As when a row is shown: boxes are ticked without their dialogs.
    FrameBloccaFattura.set_enabled(false);
    draft_.fill(draft);
    FrameBloccaFattura.set_enabled(true);
    show_expenses(CheckSpese.checked());
    if (!number.empty() && draft.mode == mode_new) {
        if (txtNumeroFattura.locked()) start_numbering_year();
        txtNumeroFattura.set_text(number);
    }
    return true;
}

bool frmTarvello::is_stored(const FormDraft& draft) {
    // On view is the row of the highest key.
    if (draft.mode != mode_new || txtCurrent_ID.empty()) return false;
    std::vector<const Control*> essential{&DTPicker1, &customer.ComboNumeroCliente, &txtTotaleFattura};
    for (const TextBox& box : PrestazioneSingola) essential.push_back(&box);
    for (const TextBox& box : txtImportoPrestazioni) essential.push_back(&box);
    return std::ranges::all_of(essential,
                               [&](const Control* field) { return DraftKeeper::has(draft, *field); });
}

} // namespace tarvello
