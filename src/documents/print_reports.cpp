#include "documents/print_reports.h"

#include "documents/letterhead.h"
#include "failure.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"
#include "text/currency.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvello {
namespace {

struct Value {
    std::string control;
    std::string text;
};

std::vector<Value> header_values(const std::string& date, const PrintedTexts& letterhead,
                                 const PrintedTexts& invoice) {
    return {
        {"NomeDitta", letterhead["Nome_Azienda"]},
        {"DescrizioneAttività", letterhead["Descrizione_Attività"]},
        {"TelefonoDitta", letterhead["Telefono"]},
        {"FaxDitta", letterhead["Fax"]},
        {"EMail", letterhead["email"]},
        {"IndirizzoDitta", letterhead["Indirizzo"]},
        {"CFDitta", letterhead["Codice_Fiscale"]},
        {"PIDitta", letterhead["Partita_IVA"]},
        {"Data", date},
        {"Cognome", invoice["Cognome_Ragione_Sociale"] + " " + invoice["Nome"]},
        {"IndirizzoCliente", invoice["Indirizzo"]},
        {"Indirizzo2", invoice["CAP"] + " - " + invoice["Città"] + " (" + invoice["Provincia"] + ")"},
        {"CFCliente", invoice["Codice_Fiscale"]},
        {"PICliente", invoice["Partita_IVA"]},
    };
}

/// Nothing is left out for being empty: the fixed words stay whatever follows them.
std::vector<Value> body_values(const PrintedTexts& invoice, const std::string& rivalsa) {
    std::vector<Value> values{{"NumeroFattura", std::to_string(leading_int16(invoice["Numero_Fattura"])) +
                                                    "/" + std::to_string(leading_int16(invoice["Anno"]))}};
    for (std::size_t i = 1; i <= PrintedTexts::lines; ++i) {
        const std::string line = std::to_string(i);
        values.push_back({"Descrizione" + line, invoice["Prestazione" + line]});
        values.push_back({"Importo" + line, invoice["Importo" + line]});
    }
    const Value rest[] = {
        {"Imponibile", invoice["Imponibile"]},
        {"Rivalsa", rivalsa + " " + invoice["Percentuale_Rivalsa"] + "%"},
        {"ImportoRivalsa", invoice["Importo_Rivalsa"]},
        {"AliquotaIVA", "IVA " + invoice["Aliquota_IVA"] + "% su " + invoice["Imponibile"]},
        {"ImpostaIVA", invoice["Imposta_IVA"]},
        {"SpeseAnticipate",
         (invoice["Spese"].empty() ? "" : "Spese Anticipate") + (" " + invoice["Articolo_Esenzione"])},
        {"ImportoSpeseAnticipate", invoice["Importo_Spese"]},
        {"TotaleFattura", invoice["Totale_Fattura"]},
        {"RitenutaAcconto", "Dedotta R.A. " + invoice["Percentuale_Ritenuta"] + "% su " +
                                invoice["Ritenuta_Su"] + "% Imponibile"},
        {"ImportoRitenuta", invoice["Importo_Ritenuta"]},
        {"TotaleDovuto", invoice["Importo_Netto"]},
        {"TitoloPagamento", invoice["Pagamento"].empty() ? "" : "Pagamento"},
        {"Pagamento", invoice["Pagamento"]},
    };
    values.insert(values.end(), std::begin(rest), std::end(rest));
    return values;
}

void set_logo(Program& program, ReportImage& image) {
    const std::string path = program.session().txtPercorsoLogo.text();
    if (!path.empty())
        program.platform().pictures.size(path); // a file that is no picture ends the printing here
    image.path = path;
    image.size_mode =
        stored_as_ticked(program, "CheckAdattaLogo") ? ReportSizeMode::stretch : ReportSizeMode::clip;
}

void show_report(Program& program, Report report, const std::vector<Value>& values) {
    Database& database = program.database();
    if (database.rsReport.is_open()) database.rsReport.close();
    // The report has rows behind it, though it prints none of them.
    database.rsReport.open("SELECT * FROM Fatture", database.dbConnection);
    set_logo(program, report.image("ImageLogo"));
    for (const Value& value : values) report.label(value.control).text = value.text;
    std::string number = report.label("NumeroFattura").text;
    std::replace(number.begin(), number.end(), '/', '-');
    report.document = "Fattura " + number;
    program.platform().reports.show_modal(report);
    database.rsReport.close();
}

void close_all_results(Program& program) {
    program.database().close_results();
    if (program.database().rsReport.is_open()) program.database().rsReport.close();
}

} // namespace

void print_invoice(Program& program, const InvoiceOnView& on_view) {
    if (!open_letterhead(program)) return;
    std::vector<Value> values;
    try {
        const std::string date = short_date_text(on_view.date, program.regional());
        const PrintedTexts letterhead = read_letterhead(program);
        const PrintedTexts invoice = read_invoice(program, on_view.id);
        values = header_values(date, letterhead, invoice);
        const std::vector<Value> body = body_values(invoice, program.session().txtProfessione.text());
        values.insert(values.end(), body.begin(), body.end());
    } catch (const Failure& failure) {
        program.message(failure.description() + "\n", BoxIcon::critical);
        return close_all_results(program);
    }
    try {
        const double layout = read_amount(program.session().txtModelloReport.text(), program.regional());
        if (layout == 1) show_report(program, DataReport1(), values);
        if (layout == 2) show_report(program, DataReport2(), values);
    } catch (const Failure&) { // whatever it was, the user reads the same
        program.message(cannot_print, BoxIcon::critical);
        close_all_results(program);
    }
}

} // namespace tarvello
