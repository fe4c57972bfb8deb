#pragma once

#include "text/dates.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace tarvello {

class Program;

/// The invoice that is to be printed, as the invoice form has it on view.
struct InvoiceOnView {
    std::string id;
    Date date; ///< as its form shows it, which need not be the stored one
};

/// What both ways of printing take from a row of the database: texts as they are stored, by the names of
/// their columns.
class PrintedTexts {
public:
    static constexpr std::size_t lines = 5; ///< service lines of an invoice

    /// @throws Failure if printed_texts.cpp does not list the column
    const std::string& operator[](std::string_view column) const;
    void add(std::string column, std::string text) { texts_[std::move(column)] = std::move(text); }

private:
    std::map<std::string, std::string, std::less<>> texts_;
};

/// Reads the letterhead on which rsIntestazione stands. @throws Failure if one of its columns is null
PrintedTexts read_letterhead(Program& program);

/// Reads the stored row of an invoice, by rsFatture, and closes the shared results. What hangs on Spese or
/// Ritenuta is empty where that flag is.
/// @throws Failure if there is no such row, or one of its columns that nothing guards is null
PrintedTexts read_invoice(Program& program, const std::string& id);

} // namespace tarvello
