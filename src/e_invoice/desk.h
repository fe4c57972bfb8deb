#pragma once

#include "e_invoice/creation.h"
#include "e_invoice/records.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {
class Program;
}

/// What the windows of electronic invoices work with: the records of the open archive, the stored invoices,
/// and what is remembered outside of the archive.
namespace tarvello::e_invoice {

class Desk {
public:
    explicit Desk(Program& program);

    Records& records() { return records_; }
    const RegionalSettings& regional() const;
    Date today() const;

    /// The row of that key; nothing if it is gone.
    std::optional<StoredInvoice> invoice(int id);
    /// What its electronic invoice is made of, with the decisions that were kept, or else proposed ones.
    /// @param last  answers that are proposed where nothing else tells one; only where the user sees them
    Source source(const StoredInvoice& invoice, const Decisions& last = {});
    /// The file says what the invoice, the customer and the issuer say today.
    bool is_up_to_date(const InvoiceFile& file);

    /// The folder that files were last written to; empty for none.
    std::string folder() const;
    /// Lets the user choose it, unless there is one. @return empty if the user gave up
    std::string need_folder();
    /// @return empty if the user gave up
    std::string choose_folder();

    /// Who creates files in that folder; it knows what numbers were used, whatever archive is open.
    FileCreator creator(const std::string& folder, const Issuer& issuer);
    /// Creates one and remembers its number. @throws Failure as FileCreator::create
    InvoiceFile create(FileCreator& creator, const Source& source);

    /// Finishes what a kill has interrupted; tells the user what it cannot.
    void settle();

private:
    std::string setting(const std::string& key) const;
    void remember(const std::string& key, const std::string& value) const;

    Program& program_;
    Records records_;
};

/// Runs an act whose failure the user is told and the window outlives: an archive that may not be written, a
/// folder that is gone.
void telling_failures(Program& program, const std::function<void()>& act);

/// Asks before an invoice is changed or deleted whose electronic invoice is on its way or has arrived.
/// @param deed  "Modificare" or "Eliminare"
/// @return false if the user leaves it as it is; true at once if there is nothing to ask
bool may_touch(Program& program, int invoice, const std::string& deed);

} // namespace tarvello::e_invoice
