#include "documents/print_reports.h"

#include "documents/invoice_row.h"
#include "documents/letterhead.h"
#include "failure.h"
#include "invoices/invoice_form.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/version.h"
#include "text/currency.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvello {
namespace {

struct Value {
    std::string control;
    std::string text;
};

std::vector<Value> header_values(const std::string& date, const LetterheadRow& letterhead,
                                 const InvoiceRow& invoice) {
    return {
        {"NomeDitta", letterhead.nome_azienda},
        {"DescrizioneAttività", letterhead.descrizione_attivita},
        {"TelefonoDitta", letterhead.telefono},
        {"FaxDitta", letterhead.fax},
        {"EMail", letterhead.email},
        {"IndirizzoDitta", letterhead.indirizzo},
        {"CFDitta", letterhead.codice_fiscale},
        {"PIDitta", letterhead.partita_iva},
        {"Data", date},
        {"Cognome", invoice.cognome_ragione_sociale + " " + invoice.nome},
        {"IndirizzoCliente", invoice.indirizzo},
        {"Indirizzo2", invoice.cap + " - " + invoice.citta + " (" + invoice.provincia + ")"},
        {"CFCliente", invoice.codice_fiscale},
        {"PICliente", invoice.partita_iva},
    };
}

/// Nothing is left out for being empty: the fixed words stay whatever follows them.
std::vector<Value> body_values(const InvoiceRow& invoice, const std::string& rivalsa) {
    std::vector<Value> values{{"NumeroFattura", std::to_string(leading_int16(invoice.numero_fattura)) + "/" +
                                                    std::to_string(leading_int16(invoice.anno))}};
    for (std::size_t i = 0; i < InvoiceRow::lines; ++i) {
        values.push_back({"Descrizione" + std::to_string(i + 1), invoice.prestazione[i]});
        values.push_back({"Importo" + std::to_string(i + 1), invoice.importo[i]});
    }
    const Value rest[] = {
        {"Imponibile", invoice.imponibile},
        {"Rivalsa", rivalsa + " " + invoice.percentuale_rivalsa + "%"},
        {"ImportoRivalsa", invoice.importo_rivalsa},
        {"AliquotaIVA", "IVA " + invoice.aliquota_iva + "% su " + invoice.imponibile},
        {"ImpostaIVA", invoice.imposta_iva},
        {"SpeseAnticipate",
         (invoice.spese.empty() ? "" : "Spese Anticipate") + (" " + invoice.articolo_esenzione)},
        {"ImportoSpeseAnticipate", invoice.importo_spese},
        {"TotaleFattura", invoice.totale_fattura},
        {"RitenutaAcconto",
         "Dedotta R.A. " + invoice.percentuale_ritenuta + "% su " + invoice.ritenuta_su + "% Imponibile"},
        {"ImportoRitenuta", invoice.importo_ritenuta},
        {"TotaleDovuto", invoice.importo_netto},
        {"TitoloPagamento", invoice.pagamento.empty() ? "" : "Pagamento"},
        {"Pagamento", invoice.pagamento},
    };
    values.insert(values.end(), std::begin(rest), std::end(rest));
    return values;
}

bool logo_is_fitted(Program& program) {
    return program.platform().settings.read(application_name, "CheckAdattaLogo", "value") == "1";
}

void set_logo(Program& program, ReportImage& image) {
    const std::string path = program.session().txtPercorsoLogo.text();
    if (!path.empty())
        program.platform().pictures.size(path); // a file that is no picture ends the printing here
    image.path = path;
    image.size_mode = logo_is_fitted(program) ? ReportSizeMode::stretch : ReportSizeMode::clip;
}

void show_report(Program& program, Report report, const std::vector<Value>& header,
                 const std::vector<Value>& body) {
    Database& database = program.database();
    if (database.rsReport.is_open()) database.rsReport.close();
    // The report has rows behind it, though it prints none of them.
    database.rsReport.open("SELECT * FROM Fatture", database.dbConnection);
    set_logo(program, report.sections[0].image("ImageLogo"));
    for (const Value& value : header) report.sections[0].label(value.control).text = value.text;
    for (const Value& value : body) report.sections[1].label(value.control).text = value.text;
    std::string number = report.sections[1].label("NumeroFattura").text;
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

void print_invoice(Program& program) {
    if (!open_letterhead(program)) return;
    std::vector<Value> header;
    std::vector<Value> body;
    try {
        const std::string date =
            short_date_text(program.form<frmTarvello>().DTPicker1.date(), program.regional());
        const LetterheadRow letterhead = read_letterhead(program);
        const InvoiceRow invoice = read_invoice(program);
        header = header_values(date, letterhead, invoice);
        body = body_values(invoice, program.session().txtProfessione.text());
    } catch (const Failure& failure) {
        program.message(failure.description() + "\n", BoxIcon::critical);
        return close_all_results(program);
    }
    try {
        const double layout = read_amount(program.session().txtModelloReport.text(), program.regional());
        if (layout == 1) show_report(program, DataReport1(), header, body);
        if (layout == 2) show_report(program, DataReport2(), header, body);
    } catch (const Failure&) { // whatever it was, the user reads the same
        program.message("Impossibile eseguire la stampa.", BoxIcon::critical);
        close_all_results(program);
    }
}

} // namespace tarvello
