#pragma once

#include "e_invoice/checks.h"
#include "e_invoice/delivery_state.h"
#include "e_invoice/receipt_book.h"
#include "e_invoice/source.h"
#include "store/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the program keeps of electronic invoices, in tables of its own in the archive: data of the issuer,
/// data of customers, the decisions and files of each invoice, receipts. The tables are made when something
/// is first kept; an archive without them, and one that may only be read, is read as one that has nothing
/// yet.
namespace tarvello::e_invoice {

/// An electronic invoice in the archive: what was decided, and its file once it was created. An invoice whose
/// file was rejected has another one for each attempt.
struct InvoiceFile {
    std::int64_t id = 0;
    int invoice = 0; ///< ID of the row in Fatture
    Decisions decisions;
    DeliveryState state = DeliveryState::to_create;
    std::string file_name;       ///< empty until it was created; never used again
    std::string folder;          ///< that it was written to
    std::string number;          ///< of the document, such as 7/2026
    int year = 0;                ///< of its date, by which the exchange system counts numbers
    std::string hash;            ///< SHA-256 of the file
    std::optional<Date> created; ///< days
    std::optional<Date> sent;
    std::optional<Date> rejected;
    std::string sdi_number; ///< the exchange system's own
};

/// A receipt as it came.
struct StoredReceipt {
    std::int64_t file = 0; ///< id of the InvoiceFile that it answers
    std::string kind;      ///< its letters, such as RC
    std::string name;      ///< of the file it came in
    std::string identity;  ///< see receipt_identity
    std::string xml;
    std::optional<Date> taken; ///< the day on which it was read in
};

class Records {
public:
    explicit Records(Connection& connection) : connection_(connection) {}

    /// The letterhead, and what was entered beside it. What was never entered is empty.
    Issuer issuer();
    /// True once save_issuer was called: the set-up was done.
    bool is_issuer_known();
    /// Keeps what the letterhead does not know; the letterhead itself stays.
    void save_issuer(const Issuer& issuer);

    Customer customer(int number);
    bool is_customer_known(int number);
    void save_customer(int number, const Customer& customer);

    /// All attempts for one invoice, or for all of them, the oldest first.
    std::vector<InvoiceFile> files_of(int invoice);
    std::vector<InvoiceFile> files();
    /// Those that have a name and were not written for sure.
    std::vector<InvoiceFile> unfinished();
    /// The newest attempt for an invoice; nothing if there was none.
    std::optional<InvoiceFile> newest(int invoice);
    /// The natures and the law that were chosen last, each as it was for the newest invoice that has one.
    Decisions last_answers();
    /// Keeps the decisions of the attempt that is not created yet; makes one if there is none.
    void save_decisions(int invoice, const Decisions& decisions);
    /// The content of a created file.
    std::string xml(std::int64_t file);
    void save_state(std::int64_t file, DeliveryState state, const Date& day);
    /// What is sent are other bytes than those that were written.
    void mark_signed(std::int64_t file);

    /// Whether another invoice has this number in the year of its date; credit notes are counted apart.
    Circumstances circumstances(int invoice, const FatturaElettronicaType& document, const Date& today);

    /// The last progressive that was given out.
    std::int32_t counter();

    /// Enters a document under its new file name: the counter, the file and its content in one transaction.
    /// An attempt that was begun and not created becomes this one.
    InvoiceFile enter(const InvoiceFile& file, std::int32_t counter, const std::string& xml);

    /// Keeps a receipt, with the state and the number that it gives its file, in one transaction.
    void add_receipt(const StoredReceipt& receipt, DeliveryState state, const std::string& sdi_number);
    std::vector<StoredReceipt> receipts_of(std::int64_t file);
    /// The files that were created, for a ReceiptBook: with the identities of their receipts, and beside each
    /// its id.
    std::pair<std::vector<KnownFile>, std::vector<std::int64_t>> known_files();

private:
    std::vector<InvoiceFile> files_where(const std::string& condition, const Parameters& values);
    bool has(const std::string& table);
    void need_tables();

    Connection& connection_;
};

} // namespace tarvello::e_invoice
