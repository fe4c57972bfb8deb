#pragma once

#include "e_invoice/records.h"
#include "lists/table.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The invoices of a year with the state of their electronic invoices, as the list shows them.
namespace tarvello::e_invoice {

/// An invoice in the list.
struct YearEntry {
    int invoice = 0;
    InvoiceFile file; ///< the one that counts; without a name there is none yet
    DeliveryState state = DeliveryState::to_create;
    std::vector<std::string> cells; ///< as shown, see YearList::columns
};

class YearList {
public:
    /// The columns of the list.
    static const std::vector<lists::Column>& columns();
    /// From the year of the newest invoices down to that of the oldest.
    static std::vector<std::string> years(Connection& connection);

    /// @param year  as the column Anno has it
    YearList(Connection& connection, Records& records, const std::string& year, const Date& today,
             const RegionalSettings& regional);

    const std::vector<YearEntry>& entries() const { return entries_; }
    /// A view of the list, for sorting, narrowing and export; it lasts as long as the list.
    lists::Table table() const;

private:
    std::vector<YearEntry> entries_;
};

} // namespace tarvello::e_invoice
