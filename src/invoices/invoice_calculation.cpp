#include "failure.h"
#include "invoices/invoice_amounts.h"
#include "invoices/invoice_form.h"
#include "preferences/rates.h"
#include "program/session_fields.h"
#include "text/currency.h"

#include <algorithm>
#include <cmath>

/// The calculation on the form: which texts go into the steps of invoice_amounts and where their results go.
namespace tarvello {
invoice_amounts::Lines frmTarvello::line_amounts() const {
    invoice_amounts::Lines texts;
    for (std::size_t i = 0; i < lines; ++i) texts[i] = txtImportoPrestazioni[i].text();
    return texts;
}

void frmTarvello::Calcola() {
    if (!ready_to_calculate()) return;
    calculate_rivalsa();
    calculate_imponibile();
    calculate_iva();
    calculate_total();
    calculate_ritenuta();
    calculate_net();
}

bool frmTarvello::ready_to_calculate() {
    const auto refuse = [&](const char* message, Control& field) {
        program_.message(message, BoxIcon::exclamation);
        field.set_focus();
        return false;
    };
    if (CheckSpese.checked() && txtImportoSpeseAnticipate.empty()) {
        return refuse("Inserire l'importo relativo alle spese anticipate.", txtImportoSpeseAnticipate);
    }
    // An amount on the last line alone makes no invoice.
    if (std::all_of(txtImportoPrestazioni.begin(), txtImportoPrestazioni.end() - 1,
                    [](const TextBox& amount) { return amount.empty(); })) {
        return refuse("Inserire almeno un importo!", PrestazioneSingola[0]);
    }
    if (ComboIVAApplicata.empty()) {
        return refuse("Impossibile calcolare l'imposta IVA.Selezionare l'aliquota IVA", ComboIVAApplicata);
    }
    return true;
}

void frmTarvello::calculate_rivalsa() {
    if (!CheckRivalsa.checked()) return;
    try {
        txtImportoRivalsa.set_text(
            invoice_amounts::rivalsa(line_amounts(), ComboPercentualeRivalsa.text(), program_.regional()));
    } catch (const Failure&) {
        // The user is told where to look, and the later steps go on with what the field held.
        const std::string& wording = program_.session().txtProfessione.text();
        program_.message("Errore nell'inserimento dell'aliquota " + wording + ". Controllare l'aliquota " +
                             wording,
                         BoxIcon::exclamation);
    }
}

void frmTarvello::calculate_imponibile() {
    std::optional<std::string_view> rivalsa;
    if (CheckRivalsa.checked()) rivalsa = txtImportoRivalsa.text();
    const std::string base = invoice_amounts::imponibile(
        line_amounts(), rivalsa, program_.session().CheckEscludiRivalsaImponibile.checked(),
        program_.regional());
    txtImponibile.set_text(base);
    LabelImponibile.set_caption(base);
}

void frmTarvello::calculate_iva() {
    try {
        txtIVA.set_text(
            invoice_amounts::iva(txtImponibile.text(), ComboIVAApplicata.text(), program_.regional()));
    } catch (const Failure&) {
        // As for the surcharge.
        program_.message("Errore nell'inserimento dell'aliquota IVA. COntrollare l'aliquota IVA.",
                         BoxIcon::exclamation);
    }
}

void frmTarvello::calculate_total() {
    std::optional<std::string_view> spese;
    if (CheckSpese.checked()) spese = txtImportoSpeseAnticipate.text();
    txtTotaleFattura.set_text(
        invoice_amounts::totale(txtImponibile.text(), txtIVA.text(), spese, program_.regional()));
}

void frmTarvello::calculate_ritenuta() {
    if (!CheckRitenuta.checked()) {
        txtRitenutaAcconto.clear();
        return;
    }
    std::optional<std::string_view> rivalsa;
    if (rivalsa_enters_ritenuta(program_) && !program_.session().CheckEscludiRivalsaImponibile.checked() &&
        CheckRivalsa.checked() && ComboPercentualeRivalsa.text() == "4") {
        rivalsa = txtImportoRivalsa.text();
    }
    // Only an older invoice can carry expenses with VAT.
    std::optional<std::string_view> spese;
    if (CheckSpese.checked() && !ComboIVASpeseAnticipate.empty() && ComboIVASpeseAnticipate.text() != "0" &&
        !txtImportoSpeseAnticipate.empty()) {
        spese = txtImportoSpeseAnticipate.text();
    }
    const invoice_amounts::Ritenuta ritenuta = invoice_amounts::ritenuta(
        line_amounts(), rivalsa, spese, ComboRitenuta.text(), ComboRitenutaSu.text(), program_.regional());
    txtRitenutaAcconto.set_text(ritenuta.amount);
    LabelRitenuta.set_caption(ritenuta.base);
}

void frmTarvello::calculate_net() {
    try {
        txtImportoNetto.set_text(
            invoice_amounts::netto(txtTotaleFattura.text(), txtRitenutaAcconto.text(), program_.regional()));
    } catch (const Failure& failure) {
        // The last step: there is nothing to go on with, and the user is told what went wrong.
        program_.message(failure.description(), BoxIcon::critical);
    }
}

bool frmTarvello::can_be_shown(TextBox& field) {
    if (std::fabs(read_amount(field.text(), program_.regional())) <= invoice_amounts::largest) return true;
    program_.message("L'importo inserito è troppo grande: il massimo è " +
                         currency_text(invoice_amounts::largest, program_.regional()) + ".",
                     BoxIcon::exclamation);
    field.set_focus();
    return false;
}

void frmTarvello::leave_amount(std::size_t line) {
    TextBox& field = txtImportoPrestazioni[line];
    if (!field.empty() && !cancelling()) {
        try {
            if (!can_be_shown(field)) return;
            field.set_text(currency_text(field.text(), program_.regional()));
        } catch (const Failure&) {
            // No amount: the user types it again.
            program_.message("L'importo inserito non è valido!", BoxIcon::exclamation);
            field.clear();
            field.set_focus();
            ShapeImporto[line].set_visible(true); // it still has the focus
            return;
        }
    }
    ShapeImporto[line].set_visible(!field.empty());
}

void frmTarvello::leave_expenses() {
    TextBox& field = txtImportoSpeseAnticipate;
    if (!field.empty() && !cancelling()) {
        try {
            if (!can_be_shown(field)) return;
            field.set_text(
                currency_text(read_amount(field.text(), program_.regional()), program_.regional()));
        } catch (const Failure&) {
            // No amount: the user corrects it.
            program_.message("L'importo inserito non è valido", BoxIcon::exclamation);
            field.set_focus();
            return;
        }
    }
    ShapeImportoSpeseAnticipate.set_visible(!field.empty());
}

} // namespace tarvello
