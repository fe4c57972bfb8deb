#pragma once

#include "e_invoice/receipt_import.h"
#include "e_invoice/records.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Receipts on their way from files of the user into the archive.
namespace tarvello::e_invoice {

class ReceiptIntake {
public:
    /// Asks the user whether an unclear receipt answers that file.
    using Ask = std::function<bool(const std::string& words, const KnownFile& file)>;

    /// @param issuer  whose files these are, by fiscal code and VAT number
    ReceiptIntake(Records& records, const Issuer& issuer, const Date& today, Ask ask);

    /// Takes every receipt in a file; what it holds besides changes nothing.
    /// @param name  of the file, without folders
    void take(std::string_view bytes, const std::string& name);

    std::size_t taken() const { return taken_; }
    /// What became of each receipt and file, in their order, for the user.
    const std::vector<std::string>& words() const { return words_; }

private:
    void take(const FoundReceipt& found);
    void enter(const FoundReceipt& found, const Assessment& assessment);

    Records& records_;
    Date today_;
    Ask ask_;
    std::vector<std::int64_t> ids_; // of the files that the book knows
    ReceiptBook book_;
    std::size_t taken_ = 0;
    std::vector<std::string> words_;
};

} // namespace tarvello::e_invoice
