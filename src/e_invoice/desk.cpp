#include "e_invoice/desk.h"

#include "e_invoice/file_name.h"
#include "e_invoice/from_row.h"
#include "e_invoice/parties.h"
#include "e_invoice/proposals.h"
#include "e_invoice/xml_writer.h"
#include "failure.h"
#include "program/program.h"
#include "program/version.h"
#include "text/numbers.h"

#include <algorithm>
#include <limits>

namespace tarvello::e_invoice {
namespace {

const std::string settings_section = "FatturaElettronica";
const std::string folder_key = "cartella";

std::string counter_key(const std::string& sender) { return "progressivo_" + sender; }

} // namespace

Desk::Desk(Program& program) : program_(program), records_(program.database().dbConnection) {}

const RegionalSettings& Desk::regional() const { return program_.regional(); }

Date Desk::today() const { return program_.platform().clock.today(); }

std::string Desk::setting(const std::string& key) const {
    return program_.platform().settings.read(application_name, settings_section, key).value_or("");
}

void Desk::remember(const std::string& key, const std::string& value) const {
    program_.platform().settings.write(application_name, settings_section, key, value);
}

std::optional<StoredInvoice> Desk::invoice(int id) {
    Recordset row;
    row.open("SELECT * FROM Fatture WHERE ID=?", program_.database().dbConnection, {std::int64_t{id}});
    if (row.eof()) return {};
    return read_stored_invoice(row);
}

Source Desk::source(const StoredInvoice& invoice, const Decisions& last_answers) {
    Source source;
    source.invoice = invoice;
    source.issuer = records_.issuer();
    source.customer = records_.customer(invoice.Numero_Cliente);
    if (const auto last = records_.newest(invoice.ID)) {
        source.decisions = last->decisions;
    } else {
        source.decisions = propose(invoice, source.issuer, source.customer, {}, regional(), last_answers);
    }
    return source;
}

bool Desk::is_up_to_date(const InvoiceFile& file) {
    const auto stored = invoice(file.invoice);
    if (!stored) return false;
    const Source now = source(*stored);
    const auto number = progressive_in(file.file_name, sender_code(now.issuer));
    if (!number) return false;
    const Draft draft = from_row(now.invoice, now.issuer, now.customer, file.decisions,
                                 progressive_text(*number), regional());
    return to_xml(draft.document) == records_.xml(file.id);
}

std::string Desk::folder() const { return setting(folder_key); }

std::string Desk::need_folder() {
    const std::string known = folder();
    return !known.empty() && program_.platform().files.folder_exists(known) ? known : choose_folder();
}

std::string Desk::choose_folder() {
    const auto chosen =
        program_.platform().dialogs.open_file({"Cartella delle fatture elettroniche", {}, false, true});
    if (!chosen) return {};
    remember(folder_key, *chosen);
    return *chosen;
}

FileCreator Desk::creator(const std::string& folder, const Issuer& issuer) {
    const std::string sender = sender_code(issuer);
    const double used = leading_number(setting(counter_key(sender)));
    return {
        records_, program_.platform().files, folder, sender,
        static_cast<std::int32_t>(std::clamp(used, 0.0, double(std::numeric_limits<std::int32_t>::max())))};
}

InvoiceFile Desk::create(FileCreator& creator, const Source& source) {
    const Creation creation = creator.create(source, today(), regional());
    remember(counter_key(sender_code(source.issuer)), std::to_string(creation.counter));
    return creation.file;
}

void Desk::settle() {
    for (const std::string& words : e_invoice::settle(records_, program_.platform().files, today())) {
        program_.message(words, BoxIcon::exclamation);
    }
}

void telling_failures(Program& program, const std::function<void()>& act) {
    try {
        act();
    } catch (const Failure& failure) {
        program.message(failure.description(), BoxIcon::exclamation);
    }
}

bool may_touch(Program& program, int invoice, const std::string& deed) {
    std::vector<InvoiceFile> files;
    // Where the records cannot be read, the deed itself says why.
    skip_failures([&] { files = Records(program.database().dbConnection).files_of(invoice); });
    std::vector<DeliveryState> states;
    for (const InvoiceFile& file : files) states.push_back(file.state);
    const DeliveryState state = invoice_state(states);
    if (state != DeliveryState::sent && !is_issued(state)) return true;
    return program.confirm(
        "La fattura elettronica di questa fattura risulta " + std::string(state_text(state)) +
        ".\nIl documento che ha SdI non cambia: per correggerlo serve una nota di credito, "
        "o una nuova fattura se SdI l'ha scartata.\n\n" +
        deed + " comunque i dati in archivio?");
}

} // namespace tarvello::e_invoice
