#include "documents/word_filling.h"

#include "documents/letterhead.h"
#include "documents/letterhead_form.h"
#include "documents/template_in_force.h"
#include "documents/wait_form.h"
#include "failure.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "text/ascii.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tarvello {
namespace {

struct Variable {
    std::string name;
    std::string value;
};

WordApplication& running(const std::unique_ptr<WordApplication>& application) {
    if (application) return *application;
    throw Failure(failure_number::object_not_set, "Word", "Il programma di scrittura non è più in uso.");
}

std::string with_prefix(const std::string& prefix, const std::string& text) {
    return text.empty() ? std::string() : prefix + text;
}

/// Day, month and year as bare numbers, without leading zeros.
std::string bare_date(const Date& date) {
    return std::to_string(day_of(date)) + "/" + std::to_string(month_of(date)) + "/" +
           std::to_string(year_of(date));
}

std::string withholding_rate(const PrintedTexts& invoice) {
    if (invoice["Ritenuta"].empty() || invoice["Percentuale_Ritenuta"].empty()) return {};
    return invoice["Percentuale_Ritenuta"] + "% su " + invoice["Ritenuta_Su"] + "% Imponibile";
}

/// The placeholders with their values, in the order of replacement. A value that holds the text of a later
/// placeholder gets that one replaced in turn.
std::vector<Variable> variables(const std::string& date, const PrintedTexts& letterhead,
                                const PrintedTexts& invoice, const std::string& rivalsa) {
    std::vector<Variable> list{
        {"%Data%", date},
        {"%NomeDitta%", letterhead["Nome_Azienda"]},
        {"%DescrizioneAttività%", letterhead["Descrizione_Attività"]},
        {"%TelefonoDitta%", with_prefix("Tel. ", letterhead["Telefono"])},
        {"%FaxDitta%", with_prefix("Fax. ", letterhead["Fax"])},
        {"%e-mail%", with_prefix("e-mail: ", letterhead["email"])},
        {"%IndirizzoDitta%", letterhead["Indirizzo"]},
        {"%CodiceFiscaleDitta%", with_prefix("C.F. ", letterhead["Codice_Fiscale"])},
        {"%PIDitta%", with_prefix("P.I. ", letterhead["Partita_IVA"])},
        {"%NomeCliente%", invoice["Nome"]},
        {"%CogRagSoc%", invoice["Cognome_Ragione_Sociale"]},
        {"%IndirizzoCliente%", invoice["Indirizzo"]},
        {"%CAPCliente%", invoice["CAP"]},
        {"%Pro%", invoice["Provincia"]},
        {"%CittàClt%", invoice["Città"]},
        {"%CodiceFiscaleCliente%", with_prefix("C.F. ", invoice["Codice_Fiscale"])},
        {"%PICliente%", with_prefix("P.I. ", invoice["Partita_IVA"])},
        {"%NumeroFattura%", invoice["Numero_Fattura"]},
        {"%Anno%", invoice["Anno"]},
    };
    for (const auto& [word, column] :
         {std::pair{"%Descrizione", "Prestazione"}, std::pair{"%Importo", "Importo"}}) {
        for (std::size_t i = 1; i <= PrintedTexts::lines; ++i) {
            const std::string line = std::to_string(i);
            list.push_back({word + line + "%", invoice[column + line]});
        }
    }
    const Variable rest[] = {
        {"%IVA%", invoice["Aliquota_IVA"] + "%"},
        {"%ArtEs%", with_prefix("esenti IVA ", invoice["Articolo_Esenzione"])},
        {"%Rivalsa%", rivalsa},
        {"%AliquotaRivalsa%", invoice["Percentuale_Rivalsa"] + "%"},
        {"%ImportoRivalsa%", invoice["Importo_Rivalsa"]},
        {"%Imponibile%", invoice["Imponibile"]},
        {"%ImpostaIVA%", invoice["Imposta_IVA"]},
        {"%TotaleFattura%", invoice["Totale_Fattura"]},
        {"%SpeseAnticipate%", invoice["Spese"].empty() ? "" : "Spese Anticipate"},
        {"%ImportoSpeseAnticipate%", invoice["Importo_Spese"]},
        {"%ImportoRitenutaAcconto%", invoice["Importo_Ritenuta"]},
        {"%RitenutaAcconto%", "Dedotta R.A."},
        {"%PerRitenuta%", withholding_rate(invoice)},
        {"%TotaleDovuto%", invoice["Importo_Netto"]},
        {"%Pagamento1%", invoice["Pagamento"].empty() ? "" : "Banca d'appoggio: "},
        {"%Pagamento2%", invoice["Pagamento"]},
    };
    list.insert(list.end(), std::begin(rest), std::end(rest));
    return list;
}

/// Where the name of a file ends and its extension starts: a point with up to four letters and digits behind
/// it, not digits alone ("Fattura 7.2006" has none). The size of the path if there is no extension.
std::size_t extension_start(const std::string& path) {
    constexpr std::size_t longest = 4;
    const std::size_t point = path.rfind('.');
    if (point == path.npos || path.size() - point - 1 > longest) return path.size();
    const auto begin = path.begin() + static_cast<std::ptrdiff_t>(point) + 1;
    const bool extension = std::any_of(begin, path.end(), ascii::is_letter) &&
                           std::all_of(begin, path.end(), ascii::is_letter_or_digit);
    return extension ? point : path.size();
}

/// The path under which the document is saved: the one that the user chose, with the extension of the
/// template where it has none, as that is the format of the document.
/// @return nothing if a file of that name stays: it is the template itself, or the user wants to keep it
std::optional<std::string> path_of_document(Program& program, std::string chosen,
                                            const std::string& template_path) {
    Files& files = program.platform().files;
    const bool named_whole = extension_start(chosen) < chosen.size();
    if (!named_whole) chosen += template_path.substr(extension_start(template_path));
    if (files.full_path(chosen) == files.full_path(template_path)) {
        program.message("La fattura non può essere salvata al posto del modello in uso:\n" + chosen +
                            "\n\nScegliere un altro nome o un'altra cartella.",
                        BoxIcon::exclamation);
        return std::nullopt;
    }
    // The dialog has asked about the name as it was chosen.
    const bool asked = named_whole || !files.exists(chosen);
    if (!asked && !program.platform().copy_dialog.may_replace(chosen)) return std::nullopt;
    return chosen;
}

/// Everything from the save dialog on. @throws Failure
void fill_template(Program& program, const std::vector<Variable>& values) {
    const auto chosen =
        program.platform().dialogs.save_file({"Crea Documento di Microsoft Word",
                                              {{"Documenti di Microsoft Word (*.rtf)", "*.rtf "},
                                               {"Documenti di Microsoft Word (*.doc)", "*.doc"}},
                                              true});
    if (!chosen) return;

    auto& wait = program.form<frmAttesa>();
    wait.Label1.set_caption("Preparazione stampa su file in corso...attendere...");
    wait.show();
    constexpr int milliseconds = 60; // until the dialog has left the screen and the notice is drawn
    program.platform().windows.pause(milliseconds);

    const std::string configuration =
        existing_templates_folder(program) + program.platform().separator + print_conf;
    if (!program.platform().files.exists(configuration)) {
        program.message("Il modello per la stampa delle fatture non è impostato correttamente.\n"
                        "Selezionarne uno nella finesta 'Intestazione' e ripetere la stampa.",
                        BoxIcon::exclamation);
        wait.unload();
        program.show_modal(program.form<frmIntestazioneFatture>());
        return;
    }

    const std::string template_path = template_in_force(program.platform().files.read(configuration));
    const auto path = path_of_document(program, *chosen, template_path);
    if (!path) {
        wait.unload();
        return;
    }
    auto application = program.platform().word_processor.start();
    application->open_read_only(template_path);
    for (const Variable& variable : values) {
        InserisciVariabileWord(program, variable.name, variable.value, application);
    }
    running(application).save_as(*path);
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
        running(application).replace_all(name, value);
    } catch (const Failure& failure) {
        program.message("Errore: " + failure.description() + std::to_string(failure.number()),
                        BoxIcon::critical);
        application.reset();
    }
}

void create_word_document(Program& program, const InvoiceOnView& on_view) {
    if (!open_letterhead(program)) return;
    try {
        const std::string date = bare_date(on_view.date);
        const PrintedTexts letterhead = read_letterhead(program);
        const PrintedTexts invoice = read_invoice(program, on_view.id);
        fill_template(program, variables(date, letterhead, invoice, program.session().txtProfessione.text()));
    } catch (const Failure&) { // whatever it was, the user reads the same
        if (auto* wait = program.loaded<frmAttesa>()) wait->unload();
        program.message("Impossibile creare il file Word.", BoxIcon::critical);
        program.database().close_results();
    }
}

} // namespace tarvello
