#pragma once

#include "platform/controls.h"
#include "platform/lists.h"
#include "platform/twips.h"
#include "store/database.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tarvello {

/// A column of the lists of invoices.
struct InvoiceListColumn {
    std::string_view header;
    std::string_view source; ///< column of Fatture
    bool right_aligned = false;
    int width = twips_per_inch;
};

inline constexpr std::size_t invoice_list_columns = 27;
extern const std::array<InvoiceListColumn, invoice_list_columns> invoice_list;

/// The columns, from 0, that the code has to tell from the others.
namespace invoice_list_column {
inline constexpr std::size_t number = 0;
inline constexpr std::size_t year = 1;
inline constexpr std::size_t rivalsa_percentage = 17;
inline constexpr std::size_t rivalsa = 18;
inline constexpr std::size_t ritenuta_percentage = 24;
} // namespace invoice_list_column

/// The columns whose emptiness leaves a percentage out of the list. The search and the list by year spell
/// them each in its own way.
struct PercentageGuards {
    std::string_view rivalsa;
    std::string_view ritenuta;
};

/// What becomes of a list whose result lacks one of its columns.
enum class MissingColumns { fail, left_empty };

/// Writes rows of Fatture into a list: every value as it stands, a null as the empty text. The columns are
/// looked up once, so that a hundred thousand rows fill fast.
class InvoiceRowWriter {
public:
    /// @param rows  an open result with the columns of Fatture. A guard that is no column of it leaves its
    ///              percentage out of every row.
    /// @throws Failure if a column of the list is missing, and that is to fail
    InvoiceRowWriter(const Recordset& rows, const PercentageGuards& guards, MissingColumns missing);

    /// Adds the current row at the end of the list.
    /// @throws Failure if there is none
    void add(ListRows& list) const;

private:
    bool is_empty(std::size_t column) const;

    const Recordset& rows_;
    std::array<std::optional<std::size_t>, invoice_list_columns> columns_;
    std::optional<std::size_t> rivalsa_guard_;
    std::optional<std::size_t> ritenuta_guard_;
};

/// True if the value is this number, or a text whose leading number it is. A null equals nothing.
bool number_equals(const store::ValueView& value, double number);

} // namespace tarvello
