#include "e_invoice/year_list.h"

#include "e_invoice/delivery_state.h"
#include "text/numbers.h"

#include <algorithm>
#include <unordered_map>

namespace tarvello::e_invoice {
namespace {

using FilesOfInvoices = std::unordered_map<int, std::vector<InvoiceFile>>;

FilesOfInvoices by_invoice(Records& records) {
    FilesOfInvoices files;
    for (InvoiceFile& file : records.files()) files[file.invoice].push_back(std::move(file));
    return files;
}

/// State and file of an invoice by all its attempts.
void put_state(YearEntry& entry, const std::vector<InvoiceFile>& files) {
    std::vector<DeliveryState> states;
    for (const InvoiceFile& file : files) states.push_back(file.state);
    entry.state = invoice_state(states);
    const auto which = std::find_if(files.rbegin(), files.rend(),
                                    [&](const InvoiceFile& file) { return file.state == entry.state; });
    if (which != files.rend()) entry.file = *which;
}

std::optional<Date> last_rejection(const std::vector<InvoiceFile>& files) {
    std::optional<Date> day;
    for (const InvoiceFile& file : files) {
        if (file.rejected) day = file.rejected;
    }
    return day;
}

} // namespace

const std::vector<lists::Column>& YearList::columns() {
    using lists::ColumnKind;
    static const std::vector<lists::Column> columns{
        {"Numero", ColumnKind::number}, {"Data", ColumnKind::date},         {"Cliente", ColumnKind::text},
        {"Totale", ColumnKind::amount}, {"Stato", ColumnKind::text},        {"Giorni", ColumnKind::number},
        {"File", ColumnKind::text},     {"Creata", ColumnKind::date},       {"Inviata", ColumnKind::date},
        {"Scartata", ColumnKind::date}, {"Numero di SdI", ColumnKind::text}};
    return columns;
}

std::vector<std::string> YearList::years(Connection& connection) {
    const auto end = [&](const char* order) {
        Recordset row;
        row.open(std::string("SELECT TOP 1 * FROM Fatture WHERE Anno>0 ORDER BY Anno ") + order, connection);
        return row.eof() ? 0 : static_cast<int>(leading_number(row.text_or_empty("Anno")));
    };
    std::vector<std::string> years;
    const int first = end("ASC");
    for (int year = end("DESC"); year >= first && year > 0; --year) years.push_back(std::to_string(year));
    return years;
}

YearList::YearList(Connection& connection, Records& records, const std::string& year, const Date& today,
                   const RegionalSettings& regional) {
    const FilesOfInvoices files = by_invoice(records);
    static const std::vector<InvoiceFile> none;
    const auto shown = [&](const std::optional<Date>& day) {
        return day ? short_date_text(*day, regional) : std::string();
    };
    Recordset rows;
    for (rows.open("SELECT * FROM Fatture WHERE Anno=? ORDER BY ID", connection, {year}); !rows.eof();
         rows.move_next()) {
        YearEntry& entry = entries_.emplace_back();
        entry.invoice = static_cast<int>(leading_number(rows.text("ID")));
        const auto found = files.find(entry.invoice);
        const std::vector<InvoiceFile>& attempts = found == files.end() ? none : found->second;
        put_state(entry, attempts);
        std::optional<Date> date;
        if (!rows.is_null("Data_Fattura")) date = rows.date("Data_Fattura");
        std::optional<int> left;
        if (date) left = days_left(entry.state, *date, last_rejection(attempts), today);
        const std::string first_name = rows.text_or_empty("Nome");
        entry.cells = {rows.text_or_empty("Numero_Fattura"),
                       shown(date),
                       rows.text_or_empty("Cognome_Ragione_Sociale") +
                           (first_name.empty() ? "" : " " + first_name),
                       rows.text_or_empty("Totale_Fattura"),
                       std::string(state_text(entry.state)),
                       left ? std::to_string(*left) : std::string(),
                       entry.file.file_name,
                       shown(entry.file.created),
                       shown(entry.file.sent),
                       shown(entry.file.rejected),
                       entry.file.sdi_number};
    }
}

lists::Table YearList::table() const {
    return {columns(), entries_.size(), [this](std::size_t row, std::size_t column) -> std::string_view {
                return entries_[row].cells[column];
            }};
}

} // namespace tarvello::e_invoice
