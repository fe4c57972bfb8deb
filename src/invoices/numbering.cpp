#include "failure.h"
#include "invoices/invoice_form.h"
#include "invoices/shared_results.h"
#include "text/numbers.h"

/// Numbers by year, and dates that run with the numbers. The years are those of the rows: the last row
/// entered, the one of highest key, decides.
namespace tarvello {
namespace {

/// Date of the row of a result on the invoices. One without a date counts as no row.
std::optional<Date> stored_date(const Recordset& invoices) {
    if (invoices.eof() || invoices.is_null("Data_Fattura")) return std::nullopt;
    return invoices.date("Data_Fattura");
}

/// Date of the first row of a SELECT on the invoices; nothing if there is none.
std::optional<Date> first_date(Database& database, const std::string& select) {
    database.rsFatture.open(select, database.dbConnection);
    const std::optional<Date> date = stored_date(database.rsFatture);
    database.rsFatture.close();
    return date;
}

} // namespace

void frmTarvello::propose_number() {
    Database& database = program_.database();
    const auto propose = [this](const Recordset& newest) {
        std::int16_t last = 0;
        if (newest.eof()) {
            program_.message(
                "Attenzione: inserire manualmente il numero di fattura da cui iniziare la numerazione.\n",
                BoxIcon::information);
            start_numbering_year();
            FrameData.set_enabled(false);
        } else {
            last = leading_int16(newest.text_or_empty("Numero_Fattura"));
        }
        txtNumeroFattura.set_text(std::to_string(to_int16(last + 1.0)));
        program_.AnnoCorrente = leading_int16(txtfield_CURRENT_YEAR.text());
    };
    with_result(database, database.rsFatture, newest_invoice, propose);
}

void frmTarvello::start_numbering_year() {
    cmdNuovoAnnoFatturazione.set_enabled(false);
    cmdNuovaFattura.set_enabled(true);
    txtNumeroFattura.set_locked(false);
    txtNumeroFattura.clear();
    txtNumeroFattura.set_focus();
}

void frmTarvello::date_changed() {
    // A result of its own: the date also changes while a row of rsFatture is being shown, which must not
    // move.
    Recordset newest;
    newest.open(newest_invoice, program_.database().dbConnection);
    const std::optional<Date> last = stored_date(newest);
    if (last) DTPicker_CURRENT_YEAR.set_date(*last);
    newest.close();
    program_.AnnoCorrente = to_int16(year_of(DTPicker_CURRENT_YEAR.date()));

    const bool new_mode = cmdNuovoAnnoFatturazione.enabled();
    if (!new_mode || !last || year_of(DTPicker1.date()) <= program_.AnnoCorrente) return;
    if (!program_.confirm("Si è selezionato un nuovo anno di fatturazione.\n"
                          "Si desidera iniziare un nuovo anno di fatturazione?")) {
        DTPicker1.set_date(with_year(DTPicker1.date(), program_.AnnoCorrente));
        DTPicker1.set_focus();
        return;
    }
    program_.message(
        "Inserire manualmente il numero di fattura da cui si desidera iniziare la numerazione "
        "delle fatture (normalmente n°1).\n"
        "Il calendiario verrà ora bloccato. Se si è indicata una data errata sarà necessario "
        "premere il comando 'Annulla' e quindi ripetere la procedura di fatturazione per il nuovo "
        "anno.",
        BoxIcon::information);
    start_numbering_year();
    FrameData.set_enabled(false);
}

bool frmTarvello::date_fits_new_invoice() {
    // While the first number of a year is being typed, no date is checked.
    if (!txtNumeroFattura.locked()) return true;
    ChiudiRecordset(program_.database());
    const std::optional<Date> last = first_date(program_.database(), newest_first);
    if (!last || DTPicker1.date() >= *last) return true;
    const RegionalSettings& regional = program_.regional();
    program_.message("ERRORE INSERIMENTO DATA.\n"
                     "La data indicata è precedente a quella dell'ultima fattura emessa.\n"
                     "Data ultima fattura emessa: " +
                         short_date_text(*last, regional) + "\nData inserita: " +
                         short_date_text(DTPicker1.date(), regional) + "\n\nModificare la data.",
                     BoxIcon::exclamation);
    return false;
}

bool frmTarvello::date_fits_changed_invoice() {
    if (!txtNumeroFattura.locked()) return true;
    const std::string id = std::to_string(leading_int16(txtCurrent_ID.text()));
    ChiudiRecordset(program_.database());
    Database& database = program_.database();
    std::optional<Date> previous =
        first_date(database, "SELECT * FROM Fatture WHERE ID<" + id + " ORDER BY ID DESC");
    if (!previous) {
        previous = first_date(database, "SELECT * FROM Fatture WHERE ID=" + id + " ORDER BY ID DESC");
    }
    const std::optional<Date> next =
        first_date(database, "SELECT * FROM Fatture WHERE ID >" + id + " ORDER BY ID ASC");
    // The newest invoice may take any date, also one before its predecessor.
    if (!previous || !next || (*previous <= DTPicker1.date() && DTPicker1.date() <= *next)) return true;
    const RegionalSettings& regional = program_.regional();
    program_.message("ERRORE INSERIMENTO DATA.\n"
                     "La data indicata deve essere compresa tra la precedente e la successiva.\n"
                     "Data fattura precedente: " +
                         short_date_text(*previous, regional) +
                         "\nData fattura successiva: " + short_date_text(*next, regional) +
                         "\nData inserita: " + short_date_text(DTPicker1.date(), regional) +
                         "\n\nModificare la data.",
                     BoxIcon::exclamation);
    return false;
}

} // namespace tarvello
