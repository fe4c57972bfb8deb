#include "e_invoice/record_tables.h"

namespace tarvello::e_invoice {
namespace {

// Kept as numbers in archives.
static_assert(static_cast<int>(DeliveryState::to_create) == 0 &&
              static_cast<int>(DeliveryState::created) == 2 &&
              static_cast<int>(DeliveryState::rejected) == 4 &&
              static_cast<int>(DeliveryState::refused) == 11);

/// The columns of a record between the key and what else the table has. Long contents come last, so that the
/// others are read without them.
template <typename Record>
std::vector<store::ColumnDeclaration> columns_of(std::vector<store::ColumnDeclaration> before,
                                                 const std::vector<store::ColumnDeclaration>& behind = {}) {
    ColumnList list;
    list.columns = std::move(before);
    Record record;
    columns(list, record);
    list.columns.insert(list.columns.end(), behind.begin(), behind.end());
    return std::move(list.columns);
}

} // namespace

const std::vector<store::TableDeclaration>& record_tables() {
    using store::ColumnKind;
    static const std::vector<store::TableDeclaration> tables{
        {issuer_table,
         columns_of<Issuer>({{"ID", ColumnKind::whole}},
                            {{"Progressivo", ColumnKind::whole}, {"Completo", ColumnKind::yes_no}}),
         {"ID"},
         {}},
        {customer_table,
         columns_of<Customer>({{"Numero_Cliente", ColumnKind::whole}}),
         {"Numero_Cliente"},
         {}},
        {file_table,
         columns_of<InvoiceFile>({{"ID", ColumnKind::autonumber}}, {{"Contenuto", ColumnKind::memo}}),
         {"ID"},
         {{"FE_Fatture_Fattura", {"Fattura"}},
          {"FE_Fatture_Numero", {"Numero"}},
          {"FE_Fatture_NomeFile", {"NomeFile"}, true}}},
        {receipt_table,
         columns_of<StoredReceipt>({{"ID", ColumnKind::autonumber}}),
         {"ID"},
         {{"FE_Ricevute_Documento", {"Documento"}}}}};
    return tables;
}

} // namespace tarvello::e_invoice
