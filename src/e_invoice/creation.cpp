#include "e_invoice/creation.h"

#include "e_invoice/file_hash.h"
#include "e_invoice/file_name.h"
#include "e_invoice/from_row.h"
#include "e_invoice/xml_reader.h"
#include "e_invoice/xml_writer.h"
#include "failure.h"

#include <algorithm>
#include <utility>

namespace tarvello::e_invoice {
namespace {

struct Made {
    Draft draft;
    std::vector<Finding> findings;
};

Made make(Records& records, const Source& source, std::int32_t number, const Date& today,
          const RegionalSettings& regional) {
    Made made;
    made.draft = from_row(source.invoice, source.issuer, source.customer, source.decisions,
                          progressive_text(number), regional);
    made.findings = check(made.draft, records.circumstances(source.invoice.ID, made.draft.document, today));
    return made;
}

[[noreturn]] void refuse_creation(const std::string& words) {
    constexpr int not_possible = 5;
    throw Failure(not_possible, "Fattura elettronica", words);
}

/// A file that the exchange system has, and did not reject, is never created again.
void need_permission(Records& records, const Source& source) {
    const DeliveryAct act =
        source.customer.public_administration ? DeliveryAct::create_to_sign : DeliveryAct::create;
    const std::optional<InvoiceFile> last = records.newest(source.invoice.ID);
    if (last && !state_after(last->state, act)) {
        refuse_creation("La fattura elettronica " + last->file_name + " è già stata inviata (" +
                        std::string(state_text(last->state)) + "): non si può creare di nuovo.");
    }
}

InvoiceFile entry_of(const Source& source, const FatturaElettronicaType& document, const std::string& folder,
                     const std::string& name, const std::string& xml) {
    const DatiGeneraliDocumentoType& general =
        document.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento;
    InvoiceFile file;
    file.invoice = source.invoice.ID;
    file.decisions = source.decisions;
    file.decisions.TipoDocumento =
        general.TipoDocumento; // also where it followed from the issuer's usual kind
    file.file_name = name;
    file.folder = folder;
    file.number = general.Numero;
    file.year = year_of(general.Data);
    file.hash = file_hash(xml);
    return file;
}

DeliveryState state_when_written(const FatturaElettronicaType& document) {
    return document.versione == "FPA12" ? DeliveryState::to_sign : DeliveryState::created;
}

} // namespace

Preview preview(Records& records, const Source& source, const Date& today, const RegionalSettings& regional) {
    Made made = make(records, source, records.counter() + 1, today, regional);
    return {to_xml(made.draft.document), std::move(made.findings)};
}

FileCreator::FileCreator(Records& records, Files& files, std::string folder, std::string sender,
                         std::int32_t used_elsewhere)
    : records_(records), files_(files), folder_(std::move(folder)), sender_(std::move(sender)),
      last_(last_progressive_in(files.files_in(folder_, "*"), sender_)) {
    last_ = std::max({last_, used_elsewhere, records.counter()});
}

Creation FileCreator::create(const Source& source, const Date& today, const RegionalSettings& regional) {
    need_permission(records_, source);
    const std::int32_t number = last_ + 1;
    const std::string progressive = progressive_text(number);
    const Made made = make(records_, source, number, today, regional);
    for (const Finding& finding : made.findings) {
        if (finding.severity == Severity::refusal) refuse_creation(finding.words);
    }
    const FatturaElettronicaType& document = made.draft.document;
    const std::string xml = to_xml(document);
    InvoiceFile file = entry_of(source, document, folder_, file_name(sender_, progressive), xml);
    file = records_.enter(file, number, xml);
    last_ = number;
    files_.write(path_of(file), xml);
    file.state = state_when_written(document);
    file.created = today;
    records_.save_state(file.id, file.state, today);
    return {std::move(file), number};
}

std::vector<std::string> settle(Records& records, Files& files, const Date& today) {
    std::vector<std::string> words;
    for (const InvoiceFile& file : records.unfinished()) {
        try {
            const std::string xml = records.xml(file.id);
            const std::string path = path_of(file);
            if (!files.exists(path)) {
                files.write(path, xml);
            } else if (files.read(path) != xml) {
                // Whatever it is, it may have been sent.
                refuse_creation("Nella cartella c'è già un altro file " + file.file_name +
                                ": spostarlo o creare di nuovo la fattura elettronica.");
            }
            records.save_state(file.id, state_when_written(read_document(xml)), today);
        } catch (const Failure& failure) {
            // The others are finished all the same; this one is tried again another time.
            words.push_back(failure.description());
        }
    }
    return words;
}

std::string path_of(const InvoiceFile& file) {
    return file.folder + (file.folder.ends_with('/') ? "" : "/") + file.file_name;
}

} // namespace tarvello::e_invoice
