#include "e_invoice/courtesy_copy.h"
#include "e_invoice/delivery_state.h"
#include "e_invoice/e_invoice_list_form.h"
#include "e_invoice/receipt_intake.h"
#include "e_invoice/signed_file.h"
#include "failure.h"
#include "program/net_functions.h"
#include "program/program.h"

/// What the list of electronic invoices does with files and receipts.
namespace tarvello {

using namespace e_invoice;

namespace {

/// The address that takes the first file of every sender; its answer names the one for those that follow.
const char* const first_address_of_sdi = "sdi01@pec.fatturapa.it";

std::string last_name(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// Lines for a box, which has room for so many.
std::string in_lines(const std::vector<std::string>& words) {
    constexpr std::size_t most = 12;
    std::string text;
    for (std::size_t i = 0; i < words.size() && i < most; ++i) text += "\n- " + words[i];
    if (words.size() > most) text += "\n... e altre " + std::to_string(words.size() - most) + ".";
    return text;
}

} // namespace

void frmFattureElettroniche::create_all() {
    std::vector<const YearEntry*> entries;
    for (const std::size_t row : shown_) {
        const YearEntry& entry = list_->entries()[row];
        if (entry.state == DeliveryState::to_create) entries.push_back(&entry);
    }
    if (entries.empty()) {
        return program_.message("Nell'elenco non ci sono fatture da creare.", BoxIcon::information);
    }
    if (!program_.confirm("Creare i file di " + std::to_string(entries.size()) + " fatture?")) return;
    const std::string folder = desk_.need_folder();
    if (folder.empty()) return;

    std::size_t created = 0;
    std::vector<std::string> refused;
    FileCreator creator = desk_.creator(folder, desk_.records().issuer());
    CopyDialog& progress = program_.platform().copy_dialog;
    progress.begin("Creazione delle fatture elettroniche");
    for (std::size_t i = 0; i < entries.size() && progress.advance(i, entries.size()); ++i) {
        const YearEntry& entry = *entries[i];
        try {
            const auto invoice = desk_.invoice(entry.invoice);
            if (!invoice) continue;
            if (!desk_.records().is_customer_known(invoice->Numero_Cliente)) {
                refused.push_back("n. " + entry.cells[0] +
                                  ": mancano i dati del cliente per la fattura elettronica.");
                continue;
            }
            desk_.create(creator, desk_.source(*invoice));
            ++created;
        } catch (const Failure& failure) {
            // The others are created all the same.
            refused.push_back("n. " + entry.cells[0] + ": " + failure.description());
        }
    }
    progress.end();
    read_year();
    program_.message("Fatture elettroniche create: " + std::to_string(created) + "." +
                         (refused.empty()
                              ? std::string()
                              : "\nNon create: " + std::to_string(refused.size()) + "." + in_lines(refused)),
                     refused.empty() ? BoxIcon::information : BoxIcon::exclamation);
}

void frmFattureElettroniche::choose_signed(const YearEntry& entry) {
    const auto path = program_.platform().dialogs.open_file(
        {"File firmato", {{"File firmati (*.p7m;*.xml)", "*.p7m;*.xml"}}});
    if (!path) return;
    try {
        const std::string content = signed_content(program_.platform().files.read(*path));
        const bool by_xades = content.find("Signature") != std::string::npos;
        const bool same = content == desk_.records().xml(entry.file.id);
        if (file_key(last_name(*path)) != file_key(entry.file.file_name) || (!same && !by_xades)) {
            return program_.message("Questo non è il file firmato della fattura n. " + entry.cells[0] +
                                        ": il suo nome comincia con " + file_key(entry.file.file_name) + ".",
                                    BoxIcon::exclamation);
        }
        desk_.records().mark_signed(entry.file.id);
    } catch (const Failure& failure) {
        // Nothing has changed; the user can choose another one.
        return program_.message(failure.description(), BoxIcon::exclamation);
    }
    program_.message("Il file firmato è stato riconosciuto (firma non verificata). Ora si può inviare.",
                     BoxIcon::information);
}

void frmFattureElettroniche::mark_sent(const YearEntry& entry) {
    if (entry.state == DeliveryState::sent) {
        if (program_.confirm("La fattura n. " + entry.cells[0] + " non è stata inviata?")) {
            desk_.records().save_state(entry.file.id, DeliveryState::created, desk_.today());
        }
        return;
    }
    if (!desk_.is_up_to_date(entry.file) &&
        !program_.confirm(
            "Dopo la creazione del file " + entry.file.file_name +
            " la fattura, il cliente o i propri dati sono cambiati: il file ha ancora quelli di "
            "prima, e si può creare di nuovo.\n\nSegnarla come inviata così com'è?")) {
        return;
    }
    desk_.records().save_state(entry.file.id, DeliveryState::sent, desk_.today());
    prepare_mail(entry.file);
}

void frmFattureElettroniche::prepare_mail(const InvoiceFile& file) {
    if (!program_.confirm(
            "La fattura è segnata come inviata.\n\nPreparare il messaggio di posta certificata a " +
            std::string(first_address_of_sdi) + ", a cui allegare il file " + file.file_name +
            "?\nDopo il primo invio si usa l'indirizzo che SdI indica nella sua risposta. Chi usa "
            "il sito Fatture e Corrispettivi risponda No.")) {
        return;
    }
    ApriMail(program_, mail_address(first_address_of_sdi, file.file_name, "In allegato: " + file.file_name));
}

void frmFattureElettroniche::open_file(const YearEntry& entry) {
    const std::string path = path_of(entry.file);
    if (!program_.platform().files.exists(path)) {
        return program_.message("Il file non è più in:\n" + path, BoxIcon::exclamation);
    }
    program_.platform().desktop.open_address("file://" + path);
}

void frmFattureElettroniche::open_folder(const YearEntry& entry) {
    if (!program_.platform().files.folder_exists(entry.file.folder)) {
        return program_.message("La cartella non c'è più:\n" + entry.file.folder, BoxIcon::exclamation);
    }
    program_.platform().desktop.open_address("file://" + entry.file.folder);
}

void frmFattureElettroniche::take_receipt() {
    const std::string kinds = "*.xml;*.p7m;*.eml;*.zip";
    const auto path =
        program_.platform().dialogs.open_file({"Ricevuta di SdI", {{"Ricevute (" + kinds + ")", kinds}}});
    if (path) take_receipts({*path});
}

void frmFattureElettroniche::take_folder_of_receipts() {
    const auto folder = program_.platform().dialogs.open_file({"Cartella delle ricevute", {}, false, true});
    if (!folder) return;
    std::vector<std::string> paths;
    for (const char* kind : {"*.xml", "*.p7m", "*.eml", "*.zip"}) {
        for (const std::string& name : program_.platform().files.files_in(*folder, kind)) {
            paths.push_back(*folder + "/" + name);
        }
    }
    take_receipts(paths);
}

void frmFattureElettroniche::take_receipts(const std::vector<std::string>& paths) {
    constexpr std::uint64_t largest = 64 * 1024 * 1024; // an archive of receipts; each is bounded by itself
    std::vector<std::string> unread;
    ReceiptIntake intake(desk_.records(), desk_.records().issuer(), desk_.today(),
                         [this](const std::string& words, const KnownFile& file) {
                             return program_.confirm(words + "\n\nÈ la ricevuta della fattura n. " +
                                                     file.invoice_number + " (" + file.name + ")?");
                         });
    for (const std::string& path : paths) {
        try {
            const auto facts = program_.platform().files.facts(path);
            if (facts && facts->size > largest) {
                unread.push_back(last_name(path) + ": è troppo grande per una ricevuta.");
                continue;
            }
            intake.take(program_.platform().files.read(path), last_name(path));
        } catch (const Failure& failure) {
            // The others are read all the same.
            unread.push_back(last_name(path) + ": " + failure.description());
        }
    }
    if (list_) read_year();
    std::vector<std::string> words = intake.words();
    words.insert(words.end(), unread.begin(), unread.end());
    program_.message("Ricevute registrate: " + std::to_string(intake.taken()) + "." + in_lines(words),
                     BoxIcon::information);
}

} // namespace tarvello
