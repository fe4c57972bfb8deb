#pragma once

#include "e_invoice/findings.h"
#include "e_invoice/records.h"
#include "e_invoice/source.h"
#include "platform/files.h"

#include <cstdint>
#include <string>
#include <vector>

/// From the stored invoice to a file in the user's folder and its entry in the archive. The entry comes
/// first, with the content and the name, which is thereby used for ever; the file after it. What is
/// interrupted in between is finished by settle().
namespace tarvello::e_invoice {

/// What one electronic invoice is made of.
struct Source {
    StoredInvoice invoice;
    Issuer issuer;
    Customer customer;
    Decisions decisions;
};

/// How the file would be, and what is wrong or doubtful with it.
struct Preview {
    std::string xml;
    std::vector<Finding> findings;
};
Preview preview(Records& records, const Source& source, const Date& today, const RegionalSettings& regional);

struct Creation {
    InvoiceFile file;
    std::int32_t counter = 0; ///< the number that its name used, to be remembered outside of the archive too
};

/// Creates files, one or many, of one issuer in one folder.
class FileCreator {
public:
    /// Looks at the names that are in the folder.
    /// @param sender          the issuer's code, see sender_code
    /// @param used_elsewhere  the last number known to be used by what lies outside of the archive: a
    /// restored archive
    ///                        knows less
    FileCreator(Records& records, Files& files, std::string folder, std::string sender,
                std::int32_t used_elsewhere);

    /// @throws Failure if a check refuses it, if the exchange system has a file of this invoice already, or
    /// if the
    ///         archive or the file cannot be written; in the last case settle() tries again
    Creation create(const Source& source, const Date& today, const RegionalSettings& regional);

private:
    Records& records_;
    Files& files_;
    std::string folder_;
    std::string sender_;
    std::int32_t last_; // the highest number that is known to be used
};

/// Finishes what was interrupted between archive and file. @return what it could not, in words for the user
std::vector<std::string> settle(Records& records, Files& files, const Date& today);

/// The full name of a created file.
std::string path_of(const InvoiceFile& file);

} // namespace tarvello::e_invoice
