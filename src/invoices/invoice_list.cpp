#include "invoices/invoice_list.h"

#include "failure.h"
#include "text/numbers.h"

namespace tarvello {

const std::array<InvoiceListColumn, invoice_list_columns> invoice_list{{
    {"n° fattura", "Numero_Fattura"},
    {"Anno", "Anno"},
    {"Data", "Data_Fattura"},
    {"Cognome / Rag. Sociale", "Cognome_Ragione_Sociale"},
    {"Nome", "Nome"},
    {"C.F.", "Codice_Fiscale"},
    {"P.I.", "Partita_IVA"},
    {"Prestazione 1", "Prestazione1"},
    {"Importo 1", "Importo1", true},
    {"Prestazione 2", "Prestazione2"},
    {"Importo 2", "Importo2", true},
    {"Prestazione 3", "Prestazione3"},
    {"Importo 3", "Importo3", true},
    {"Prestazione 4", "Prestazione4"},
    {"Importo 4", "Importo4", true},
    {"Prestazione 5", "Prestazione5"},
    {"Importo 5", "Importo5", true},
    {"% Rivalsa", "Percentuale_Rivalsa", true},
    {"Rivalsa", "Importo_Rivalsa", true},
    {"Imponibile", "Imponibile", true},
    {"% IVA", "Aliquota_IVA", true},
    {"Imposta IVA", "Imposta_IVA", true},
    {"Spese Anticipate", "Importo_Spese", true},
    {"Totale", "Totale_Fattura", true},
    {"% Dedotta R.A.", "Percentuale_Ritenuta", true},
    {"Dedotta R.A.", "Importo_Ritenuta", true},
    {"Importo Netto", "Importo_Netto", true},
}};

namespace {

std::optional<std::size_t> find_column(const Recordset& rows, std::string_view name) {
    try {
        return rows.column(name);
    } catch (const Failure&) {
        return std::nullopt; // a guard that is no column guards its percentage for good
    }
}

} // namespace

InvoiceRowWriter::InvoiceRowWriter(const Recordset& rows, const PercentageGuards& guards,
                                   MissingColumns missing)
    : rows_(rows), rivalsa_guard_(find_column(rows, guards.rivalsa)),
      ritenuta_guard_(find_column(rows, guards.ritenuta)) {
    for (std::size_t i = 0; i < invoice_list_columns; ++i) {
        const std::string_view source = invoice_list[i].source;
        columns_[i] = missing == MissingColumns::fail ? rows.column(source) : find_column(rows, source);
    }
}

void InvoiceRowWriter::add(ListRows& list) const {
    const bool has_rivalsa = rivalsa_guard_ && !is_empty(*rivalsa_guard_);
    const bool has_ritenuta = ritenuta_guard_ && !is_empty(*ritenuta_guard_);
    list.begin_row();
    for (std::size_t i = 0; i < invoice_list_columns; ++i) {
        const bool left_out = (i == invoice_list_column::rivalsa_percentage && !has_rivalsa) ||
                              (i == invoice_list_column::ritenuta_percentage && !has_ritenuta);
        const store::ValueView value =
            left_out || !columns_[i] ? store::ValueView() : rows_.value(*columns_[i]);
        if (const auto* text = std::get_if<std::string_view>(&value)) {
            list.add_cell(*text); // the usual case, without a copy
        } else if (std::holds_alternative<std::monostate>(value)) {
            list.add_cell({});
        } else {
            list.add_cell(store::value_text(value, rows_.regional()));
        }
    }
}

bool InvoiceRowWriter::is_empty(std::size_t column) const {
    const store::ValueView value = rows_.value(column);
    const auto* text = std::get_if<std::string_view>(&value);
    return std::holds_alternative<std::monostate>(value) || (text && text->empty());
}

bool number_equals(const store::ValueView& value, double number) {
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*integer) == number;
    if (const auto* real = std::get_if<double>(&value)) return *real == number;
    if (const auto* text = std::get_if<std::string_view>(&value)) return leading_number(*text) == number;
    return false;
}

} // namespace tarvello
