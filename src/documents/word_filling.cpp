#include "documents/word_filling.h"

#include "documents/invoice_row.h"
#include "documents/letterhead.h"
#include "documents/letterhead_form.h"
#include "documents/wait_form.h"
#include "failure.h"
#include "invoices/invoice_form.h"
#include "program/program.h"
#include "program/session_fields.h"

#include <sstream>
#include <vector>

namespace tarvello {
namespace {

struct Variable {
    std::string name;
    std::string value;
};

std::string with_prefix(const std::string& prefix, const std::string& text) {
    return text.empty() ? std::string() : prefix + text;
}

/// Day, month and year as bare numbers, without leading zeros.
std::string bare_date(const Date& date) {
    return std::to_string(day_of(date)) + "/" + std::to_string(month_of(date)) + "/" +
           std::to_string(year_of(date));
}

std::string withholding_rate(const InvoiceRow& invoice) {
    if (invoice.ritenuta.empty() || invoice.percentuale_ritenuta.empty()) return {};
    return invoice.percentuale_ritenuta + "% su " + invoice.ritenuta_su + "% Imponibile";
}

/// The placeholders with their values, in the order of replacement. A value that holds the text of a later
/// placeholder gets that one replaced in turn.
std::vector<Variable> variables(const std::string& date, const LetterheadRow& letterhead,
                                const InvoiceRow& invoice, const std::string& rivalsa) {
    std::vector<Variable> list{
        {"%Data%", date},
        {"%NomeDitta%", letterhead.nome_azienda},
        {"%DescrizioneAttività%", letterhead.descrizione_attivita},
        {"%TelefonoDitta%", with_prefix("Tel. ", letterhead.telefono)},
        {"%FaxDitta%", with_prefix("Fax. ", letterhead.fax)},
        {"%e-mail%", with_prefix("e-mail: ", letterhead.email)},
        {"%IndirizzoDitta%", letterhead.indirizzo},
        {"%CodiceFiscaleDitta%", with_prefix("C.F. ", letterhead.codice_fiscale)},
        {"%PIDitta%", with_prefix("P.I. ", letterhead.partita_iva)},
        {"%NomeCliente%", invoice.nome},
        {"%CogRagSoc%", invoice.cognome_ragione_sociale},
        {"%IndirizzoCliente%", invoice.indirizzo},
        {"%CAPCliente%", invoice.cap},
        {"%Pro%", invoice.provincia},
        {"%CittàClt%", invoice.citta},
        {"%CodiceFiscaleCliente%", with_prefix("C.F. ", invoice.codice_fiscale)},
        {"%PICliente%", with_prefix("P.I. ", invoice.partita_iva)},
        {"%NumeroFattura%", invoice.numero_fattura},
        {"%Anno%", invoice.anno},
    };
    for (std::size_t i = 0; i < InvoiceRow::lines; ++i) {
        list.push_back({"%Descrizione" + std::to_string(i + 1) + "%", invoice.prestazione[i]});
    }
    for (std::size_t i = 0; i < InvoiceRow::lines; ++i) {
        list.push_back({"%Importo" + std::to_string(i + 1) + "%", invoice.importo[i]});
    }
    const Variable rest[] = {
        {"%IVA%", invoice.aliquota_iva + "%"},
        {"%ArtEs%", with_prefix("esenti IVA ", invoice.articolo_esenzione)},
        {"%Rivalsa%", rivalsa},
        {"%AliquotaRivalsa%", invoice.percentuale_rivalsa + "%"},
        {"%ImportoRivalsa%", invoice.importo_rivalsa},
        {"%Imponibile%", invoice.imponibile},
        {"%ImpostaIVA%", invoice.imposta_iva},
        {"%TotaleFattura%", invoice.totale_fattura},
        {"%SpeseAnticipate%", invoice.spese.empty() ? "" : "Spese Anticipate"},
        {"%ImportoSpeseAnticipate%", invoice.importo_spese},
        {"%ImportoRitenutaAcconto%", invoice.importo_ritenuta},
        {"%RitenutaAcconto%", "Dedotta R.A."},
        {"%PerRitenuta%", withholding_rate(invoice)},
        {"%TotaleDovuto%", invoice.importo_netto},
        {"%Pagamento1%", invoice.pagamento.empty() ? "" : "Banca d'appoggio: "},
        {"%Pagamento2%", invoice.pagamento},
    };
    list.insert(list.end(), std::begin(rest), std::end(rest));
    return list;
}

/// The path of the template in force: all lines of the file, with nothing between them.
std::string template_in_force(Program& program, const std::string& file) {
    std::istringstream lines(program.platform().files.read(file));
    std::string path;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        path += line;
    }
    return path;
}

/// Everything from the save dialog on. @throws Failure
void fill_template(Program& program, const std::vector<Variable>& values) {
    const auto path =
        program.platform().dialogs.save_file({"Crea Documento di Microsoft Word",
                                              {{"Documenti di Microsoft Word (*.rtf)", "*.rtf "},
                                               {"Documenti di Microsoft Word (*.doc)", "*.doc"}},
                                              true});
    if (!path) return;

    auto& wait = program.form<frmAttesa>();
    wait.Label1.set_caption("Preparazione stampa su file in corso...attendere...");
    wait.show();
    constexpr int milliseconds = 60; // until the dialog has left the screen and the notice is drawn
    program.platform().windows.pause(milliseconds);

    const std::string folder = templates_folder(program);
    if (!program.platform().files.folder_exists(folder)) {
        throw Failure(failure_number::file_not_found, "File", "La cartella \"" + folder + "\" non esiste.");
    }
    const std::string configuration = folder + program.platform().separator + print_conf;
    if (!program.platform().files.exists(configuration)) {
        program.message("Il modello per la stampa delle fatture non è impostato correttamente.\n"
                        "Selezionarne uno nella finesta 'Intestazione' e ripetere la stampa.",
                        BoxIcon::exclamation);
        wait.unload();
        program.show_modal(program.form<frmIntestazioneFatture>());
        return;
    }

    auto application = program.platform().word_processor.start();
    application->open_read_only(template_in_force(program, configuration));
    for (const Variable& variable : values) {
        InserisciVariabileWord(program, variable.name, variable.value, application);
    }
    if (!application) {
        throw Failure(failure_number::object_not_set, "Word", "Il programma di scrittura non è più in uso.");
    }
    application->save_as(*path);
    application->quit();
    wait.unload();
    program.message("File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" +
                        *path,
                    BoxIcon::information);
}

} // namespace

void InserisciVariabileWord(Program& program, const std::string& name, const std::string& value,
                            std::unique_ptr<WordApplication>& application) {
    try {
        if (!application) {
            throw Failure(failure_number::object_not_set, "Word",
                          "Il programma di scrittura non è più in uso.");
        }
        application->replace_all(name, value);
    } catch (const Failure& failure) {
        program.message("Errore: " + failure.description() + std::to_string(failure.number()),
                        BoxIcon::critical);
        application.reset();
    }
}

void create_word_document(Program& program) {
    if (!open_letterhead(program)) return;
    try {
        const std::string date = bare_date(program.form<frmTarvello>().DTPicker1.date());
        const LetterheadRow letterhead = read_letterhead(program);
        const InvoiceRow invoice = read_invoice(program);
        fill_template(program, variables(date, letterhead, invoice, program.session().txtProfessione.text()));
    } catch (const Failure&) { // whatever it was, the user reads the same
        if (auto* wait = program.loaded<frmAttesa>()) wait->unload();
        program.message("Impossibile creare il file Word.", BoxIcon::critical);
        program.database().close_results();
    }
}

} // namespace tarvello
