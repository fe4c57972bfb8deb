#pragma once

#include "text/dates.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello::e_invoice {

/// What SdI tells the sender of an invoice. The letters are those in the names of the files.
enum class ReceiptKind {
    delivered,      ///< RC: the customer has it
    rejected,       ///< NS: it counts as never issued
    made_available, ///< MC of private customers: issued, it lies in the customer's area
    not_delivered,  ///< MC of the public administration: SdI goes on trying for ten days
    attested,       ///< AT: SdI has given up; issued, the attestation proves it
    lapsed,         ///< DT: the administration has not answered within fifteen days
    accepted,       ///< NE, EC01
    refused,        ///< NE, EC02
};

/// Why a file was rejected, in SdI's words.
struct ReceiptError {
    std::string code;
    std::string description;
    std::string suggestion; ///< empty for the public administration
};

/// An invoice inside of a file.
struct InvoiceReference {
    std::string number; ///< as the document has it
    int year = 0;
};

/// A receipt as it was read. Texts are empty where it says nothing: real receipts lack even what their
/// schemas demand.
struct Receipt {
    ReceiptKind kind = ReceiptKind::delivered;
    std::string sdi_number;   ///< SdI's own number of the file
    std::string file_name;    ///< the file as it was sent
    std::string archive_name; ///< the archive that the file was sent in
    std::optional<InvoiceReference> invoice;
    std::string hash; ///< SHA-256 of the file that SdI got, in hexadecimal digits
    std::optional<DateTime> received;
    std::optional<DateTime> delivered;
    std::optional<Date> available;
    std::string addressee_code;
    std::string addressee;
    std::vector<ReceiptError> errors; ///< as they stand; see receipt_errors.h for an order that helps
    std::string description;          ///< of a refusal: the customer's reason
    std::string note;
    std::string message_id;
};

/// Reads a receipt of either family, for private customers and for the public administration (schemas
/// MessaggiFatturaTypes 1.0 and MessaggiTypes 1.1 of the Agenzia delle Entrate). It is known by namespace and
/// name of the root, its fields by their names; what is not known is passed over. The signature is not
/// verified.
/// @param xml  the file; see read_xml for the bounds
/// @throws Failure if it is damaged or no such receipt: its words say what it is instead, where that is known
Receipt read_receipt(std::string_view xml);

/// The letters of a kind: "RC".
std::string_view receipt_letters(ReceiptKind kind);

/// What two copies of one receipt have in common, and two receipts never.
std::string receipt_identity(const Receipt& receipt);

} // namespace tarvello::e_invoice
