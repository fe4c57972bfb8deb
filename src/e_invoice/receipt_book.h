#pragma once

#include "e_invoice/delivery_state.h"
#include "e_invoice/receipt.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvello::e_invoice {

/// A file that was made for an invoice. An invoice that was rejected has several, one for each time.
struct KnownFile {
    std::string name;
    std::string invoice_number; ///< as the document has it, such as "8/2026"
    int invoice_year = 0;       ///< of the document's date
    std::string hash;           ///< see file_hash; empty if what was sent may be other bytes
    DeliveryState state = DeliveryState::created;
    std::vector<std::string> receipts; ///< identities of those that came, see receipt_identity
};

/// What becomes of a receipt.
struct Assessment {
    enum class Outcome {
        taken,   ///< belongs to `file`, whose state is now `state`
        doubled, ///< has come before: changes nothing
        foreign, ///< answers the file of another issuer: changes nothing
        unclear, ///< which file it answers is for the user to say
    };
    Outcome outcome = Outcome::unclear;
    std::optional<std::size_t> file;     ///< taken or doubled: its place in files()
    std::vector<std::size_t> candidates; ///< unclear: the files that come into question, if any
    DeliveryState state = DeliveryState::to_create;
    std::string words; ///< for the user
};

/// Finds the file that a receipt answers: by its name, letter case and endings aside; else by number and year
/// of the invoice, if the file's name has the issuer's code. It never guesses.
class ReceiptBook {
public:
    /// @param own_codes  fiscal code and VAT number of the issuer: file names begin with one of them behind
    /// IT
    ReceiptBook(std::vector<KnownFile> files, std::vector<std::string> own_codes);

    /// Enters a receipt, if it is clear where.
    Assessment take(const Receipt& receipt);
    /// Enters a receipt where the user says.
    Assessment take_for(const Receipt& receipt, std::size_t file);

    const std::vector<KnownFile>& files() const { return files_; }

private:
    bool is_foreign(const Receipt& receipt) const;
    Assessment unclear(const Receipt& receipt, std::vector<std::size_t> candidates) const;

    std::vector<KnownFile> files_;
    std::vector<std::string> own_codes_;
    std::unordered_multimap<std::string, std::size_t> by_key_;
};

/// What names of one file have in common, signed or not, alone or in an archive: without .xml, .p7m and .zip,
/// in one letter case.
std::string file_key(std::string_view file_name);

} // namespace tarvello::e_invoice
