#include "e_invoice/receipt_intake.h"

#include "e_invoice/check_digits.h"
#include "failure.h"

#include <utility>

namespace tarvello::e_invoice {
namespace {

std::vector<std::string> codes_of(const Issuer& issuer) {
    return {plain_code(issuer.Codice_Fiscale), plain_partita_iva(issuer.Partita_IVA)};
}

} // namespace

ReceiptIntake::ReceiptIntake(Records& records, const Issuer& issuer, const Date& today, Ask ask)
    : records_(records), today_(today), ask_(std::move(ask)), book_({}, {}) {
    auto [files, ids] = records.known_files();
    ids_ = std::move(ids);
    book_ = ReceiptBook(std::move(files), codes_of(issuer));
}

void ReceiptIntake::take(std::string_view bytes, const std::string& name) {
    const ReceiptImport import = find_receipts(bytes, name);
    words_.insert(words_.end(), import.words.begin(), import.words.end());
    for (const FoundReceipt& found : import.receipts) take(found);
}

void ReceiptIntake::take(const FoundReceipt& found) {
    Assessment assessment = book_.take(found.receipt);
    if (assessment.outcome == Assessment::Outcome::unclear) {
        for (const std::size_t candidate : assessment.candidates) {
            if (!ask_(assessment.words, book_.files()[candidate])) continue;
            assessment = book_.take_for(found.receipt, candidate);
            break;
        }
    }
    if (assessment.outcome == Assessment::Outcome::taken) enter(found, assessment);
    words_.push_back(assessment.words);
}

void ReceiptIntake::enter(const FoundReceipt& found, const Assessment& assessment) {
    const Receipt& receipt = found.receipt;
    records_.add_receipt({ids_[assessment.file.value()], std::string(receipt_letters(receipt.kind)),
                          found.name, receipt_identity(receipt), found.xml, today_},
                         assessment.state, receipt.sdi_number);
    ++taken_;
}

} // namespace tarvello::e_invoice
