#include "e_invoice/records.h"

#include "e_invoice/record_tables.h"
#include "failure.h"

#include <map>

namespace tarvello::e_invoice {
namespace {

template <typename Record>
ColumnValues values_of(const Record& record) {
    ColumnValues values;
    columns(values, record);
    return values;
}

template <typename Record>
void read(Record& record, const Recordset& row) {
    ColumnReader reader(row);
    columns(reader, record);
}

InvoiceFile file_on(const Recordset& row) {
    InvoiceFile file;
    read(file, row);
    file.id = row.whole("ID");
    return file;
}

constexpr std::int64_t the_issuer = 1; // the key of the one row
const std::string of_the_issuer = "SELECT * FROM " + issuer_table + " WHERE ID=1";

} // namespace

bool Records::has(const std::string& table) {
    try {
        connection_.execute("SELECT TOP 1 * FROM " + table);
        return true;
    } catch (const Failure& failure) {
        // Nothing was kept yet; any other failure is one.
        if (failure.number() != failure_number::no_such_element) throw;
        return false;
    }
}

void Records::need_tables() {
    for (const store::TableDeclaration& table : record_tables()) connection_.need_table(table);
    Recordset row;
    row.open(of_the_issuer, connection_);
    if (row.eof()) {
        connection_.execute("INSERT INTO " + issuer_table + " (ID,Progressivo) VALUES (?,?)",
                            {the_issuer, std::int64_t{0}});
    }
}

Issuer Records::issuer() {
    Issuer issuer;
    if (has(issuer_table)) {
        Recordset row;
        row.open(of_the_issuer, connection_);
        if (!row.eof()) read(issuer, row);
    }
    Recordset letterhead;
    letterhead.open(select_letterhead, connection_);
    if (letterhead.eof()) return issuer;
    issuer.Nome_Azienda = letterhead.text_or_empty("Nome_Azienda");
    issuer.Indirizzo = letterhead.text_or_empty("Indirizzo");
    issuer.Telefono = letterhead.text_or_empty("Telefono");
    issuer.Fax = letterhead.text_or_empty("Fax");
    issuer.Codice_Fiscale = letterhead.text_or_empty("Codice_Fiscale");
    issuer.Partita_IVA = letterhead.text_or_empty("Partita_IVA");
    issuer.email = letterhead.text_or_empty("email");
    issuer.Banca = letterhead.text_or_empty("Banca");
    issuer.ABI = letterhead.text_or_empty("ABI");
    issuer.CAB = letterhead.text_or_empty("CAB");
    issuer.CC = letterhead.text_or_empty("CC");
    return issuer;
}

bool Records::is_issuer_known() {
    if (!has(issuer_table)) return false;
    Recordset row;
    row.open(of_the_issuer, connection_);
    return !row.eof() && row.yes("Completo");
}

void Records::save_issuer(const Issuer& issuer) {
    need_tables();
    ColumnValues values = values_of(issuer);
    values.yes("Completo", true);
    values.update(connection_, issuer_table, "ID=?", the_issuer);
}

Customer Records::customer(int number) {
    Customer customer;
    if (!is_customer_known(number)) return customer;
    Recordset row;
    row.open("SELECT * FROM " + customer_table + " WHERE Numero_Cliente=?", connection_,
             {std::int64_t{number}});
    read(customer, row);
    return customer;
}

bool Records::is_customer_known(int number) {
    if (!has(customer_table)) return false;
    Recordset row;
    row.open("SELECT * FROM " + customer_table + " WHERE Numero_Cliente=?", connection_,
             {std::int64_t{number}});
    return !row.eof();
}

void Records::save_customer(int number, const Customer& customer) {
    need_tables();
    ColumnValues values = values_of(customer);
    if (is_customer_known(number)) {
        values.update(connection_, customer_table, "Numero_Cliente=?", std::int64_t{number});
    } else {
        values.whole("Numero_Cliente", number);
        values.insert(connection_, customer_table);
    }
}

std::vector<InvoiceFile> Records::files_where(const std::string& condition, const Parameters& values) {
    std::vector<InvoiceFile> files;
    if (!has(file_table)) return files;
    Recordset rows;
    rows.open("SELECT * FROM " + file_table + condition + " ORDER BY ID", connection_, values);
    for (; !rows.eof(); rows.move_next()) files.push_back(file_on(rows));
    return files;
}

std::vector<InvoiceFile> Records::files_of(int invoice) {
    return files_where(" WHERE Fattura=?", {std::int64_t{invoice}});
}

std::vector<InvoiceFile> Records::files() { return files_where("", {}); }

std::vector<InvoiceFile> Records::unfinished() {
    constexpr auto begun = static_cast<std::int64_t>(DeliveryState::to_create);
    std::vector<InvoiceFile> files = files_where(" WHERE Stato=?", {begun});
    std::erase_if(files, [](const InvoiceFile& file) { return file.file_name.empty(); });
    return files;
}

std::optional<InvoiceFile> Records::newest(int invoice) {
    std::vector<InvoiceFile> files = files_of(invoice);
    if (files.empty()) return {};
    return std::move(files.back());
}

Decisions Records::last_answers() {
    Decisions answers;
    if (!has(file_table)) return answers;
    const auto newest_with = [this](const std::string& column) {
        Recordset row;
        row.open("SELECT TOP 1 * FROM " + file_table + " WHERE " + column + ">'' ORDER BY ID DESC",
                 connection_);
        return row.eof() ? Decisions() : file_on(row).decisions;
    };
    const Decisions last = newest_with("Natura");
    answers.Natura = last.Natura;
    answers.RiferimentoNormativo = last.RiferimentoNormativo;
    answers.NaturaSpese = newest_with("NaturaSpese").NaturaSpese;
    return answers;
}

void Records::save_decisions(int invoice, const Decisions& decisions) {
    need_tables();
    const std::optional<InvoiceFile> last = newest(invoice);
    if (last && last->state == DeliveryState::to_create) {
        values_of(decisions).update(connection_, file_table, "ID=?", last->id);
        return;
    }
    InvoiceFile attempt;
    attempt.invoice = invoice;
    attempt.decisions = decisions;
    values_of(attempt).insert(connection_, file_table);
}

std::string Records::xml(std::int64_t file) {
    Recordset row;
    row.open("SELECT * FROM " + file_table + " WHERE ID=?", connection_, {file});
    return row.text_or_empty("Contenuto");
}

void Records::save_state(std::int64_t file, DeliveryState state, const Date& day) {
    ColumnValues values;
    values.whole("Stato", state);
    if (state == DeliveryState::created || state == DeliveryState::to_sign) values.date("Creata", day);
    if (state == DeliveryState::sent) values.date("Inviata", day);
    if (state == DeliveryState::rejected) values.date("Scartata", day);
    values.update(connection_, file_table, "ID=?", file);
}

void Records::mark_signed(std::int64_t file) {
    ColumnValues values;
    values.whole("Stato", DeliveryState::created);
    values.text("Impronta", "", 0);
    values.update(connection_, file_table, "ID=?", file);
}

Circumstances Records::circumstances(int invoice, const FatturaElettronicaType& document, const Date& today) {
    Circumstances circumstances{.today = today};
    if (!has(file_table)) return circumstances;
    const DatiGeneraliDocumentoType& general =
        document.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento;
    Recordset rows;
    for (rows.open("SELECT * FROM " + file_table + " WHERE Numero=? AND AnnoDocumento=? AND Fattura<>?",
                   connection_, {general.Numero, std::int64_t{year_of(general.Data)}, std::int64_t{invoice}});
         !rows.eof(); rows.move_next()) {
        const InvoiceFile other = file_on(rows);
        const bool both_credit_notes =
            (other.decisions.TipoDocumento == "TD04") == (general.TipoDocumento == "TD04");
        if (!both_credit_notes || other.file_name.empty()) continue;
        circumstances.number_created = circumstances.number_created || other.state != DeliveryState::rejected;
        circumstances.number_sent =
            circumstances.number_sent || other.state == DeliveryState::sent || is_issued(other.state);
    }
    return circumstances;
}

std::int32_t Records::counter() {
    if (!has(issuer_table)) return 0;
    Recordset row;
    row.open(of_the_issuer, connection_);
    return row.eof() || row.is_null("Progressivo") ? 0 : static_cast<std::int32_t>(row.whole("Progressivo"));
}

InvoiceFile Records::enter(const InvoiceFile& file, std::int32_t counter, const std::string& xml) {
    need_tables();
    InvoiceFile entered = file;
    const std::optional<InvoiceFile> last = newest(file.invoice);
    ColumnValues values = values_of(file);
    values.memo("Contenuto", xml);
    Transaction transaction(connection_);
    connection_.execute("UPDATE " + issuer_table + " SET Progressivo=? WHERE ID=1", {std::int64_t{counter}});
    if (last && last->state == DeliveryState::to_create) {
        entered.id = last->id;
        values.update(connection_, file_table, "ID=?", last->id);
    } else {
        values.insert(connection_, file_table);
        entered.id = connection_.inserted_key();
    }
    transaction.commit();
    return entered;
}

void Records::add_receipt(const StoredReceipt& receipt, DeliveryState state, const std::string& sdi_number) {
    need_tables();
    ColumnValues values;
    values.whole("Stato", state);
    if (!sdi_number.empty()) values.text("IdentificativoSdI", sdi_number, 0);
    if (state == DeliveryState::rejected) values.date("Scartata", receipt.taken);
    Transaction transaction(connection_);
    values_of(receipt).insert(connection_, receipt_table);
    values.update(connection_, file_table, "ID=?", receipt.file);
    transaction.commit();
}

std::vector<StoredReceipt> Records::receipts_of(std::int64_t file) {
    std::vector<StoredReceipt> receipts;
    if (!has(receipt_table)) return receipts;
    Recordset rows;
    for (rows.open("SELECT * FROM " + receipt_table + " WHERE Documento=? ORDER BY ID", connection_, {file});
         !rows.eof(); rows.move_next()) {
        read(receipts.emplace_back(), rows);
    }
    return receipts;
}

std::pair<std::vector<KnownFile>, std::vector<std::int64_t>> Records::known_files() {
    std::vector<KnownFile> known;
    std::vector<std::int64_t> ids;
    std::map<std::int64_t, std::size_t> places;
    for (const InvoiceFile& file : files()) {
        if (file.file_name.empty()) continue;
        places[file.id] = known.size();
        ids.push_back(file.id);
        known.push_back({file.file_name, file.number, file.year, file.hash, file.state, {}});
    }
    if (!known.empty() && has(receipt_table)) {
        Recordset rows;
        for (rows.open("SELECT * FROM " + receipt_table + " ORDER BY ID", connection_); !rows.eof();
             rows.move_next()) {
            const auto place = places.find(rows.whole("Documento"));
            if (place != places.end())
                known[place->second].receipts.push_back(rows.text_or_empty("Identita"));
        }
    }
    return {std::move(known), std::move(ids)};
}

} // namespace tarvello::e_invoice
