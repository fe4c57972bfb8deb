#include "e_invoice/receipt_book.h"

#include "text/ascii.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::e_invoice {
namespace {

/// The issuer's code in a file name, IT<code>_<progressive>; empty if the name is of another form.
std::string issuer_code(std::string_view file_name) {
    const std::string name = upper_case(file_name);
    const auto underscore = name.find('_');
    constexpr std::size_t country = 2;
    if (underscore == std::string::npos || underscore <= country) return {};
    const std::string code = name.substr(country, underscore - country);
    const bool alphanumeric = std::all_of(code.begin(), code.end(), ascii::is_letter_or_digit);
    return alphanumeric ? code : std::string();
}

/// True if the file that SdI got is certainly not the one that is known.
bool other_content(const Receipt& receipt, const KnownFile& file) {
    return !receipt.hash.empty() && !file.hash.empty() && equal_ignoring_case(receipt.file_name, file.name) &&
           !equal_ignoring_case(receipt.hash, file.hash);
}

std::string concerns_file(const Receipt& receipt) {
    return "La ricevuta riguarda il file " + receipt.file_name;
}

} // namespace

std::string file_key(std::string_view file_name) {
    const auto separator = file_name.find_last_of("/\\");
    std::string key = fold_case(file_name.substr(separator == std::string_view::npos ? 0 : separator + 1));
    while (key.ends_with(".xml") || key.ends_with(".p7m") || key.ends_with(".zip"))
        key.resize(key.size() - 4);
    return key;
}

ReceiptBook::ReceiptBook(std::vector<KnownFile> files, std::vector<std::string> own_codes)
    : files_(std::move(files)), own_codes_(std::move(own_codes)) {
    for (std::string& code : own_codes_) code = upper_case(code);
    for (std::size_t i = 0; i < files_.size(); ++i) by_key_.emplace(file_key(files_[i].name), i);
}

bool ReceiptBook::is_foreign(const Receipt& receipt) const {
    const std::string code = issuer_code(receipt.file_name);
    return !code.empty() && !own_codes_.empty() &&
           std::find(own_codes_.begin(), own_codes_.end(), code) == own_codes_.end();
}

Assessment ReceiptBook::take(const Receipt& receipt) {
    std::vector<std::size_t> candidates;
    for (const std::string& name : {receipt.file_name, receipt.archive_name}) {
        const auto [first, last] = by_key_.equal_range(file_key(name));
        std::for_each(first, last, [&](const auto& entry) { candidates.push_back(entry.second); });
        if (!candidates.empty()) break;
    }
    const bool named = !candidates.empty();
    if (!named && is_foreign(receipt)) {
        return {Assessment::Outcome::foreign,
                {},
                {},
                {},
                concerns_file(receipt) + ", di un altro emittente: non è stata registrata."};
    }
    for (std::size_t i = 0; i < files_.size() && !named && receipt.invoice; ++i) {
        if (files_[i].invoice_year == receipt.invoice->year &&
            equal_ignoring_case(files_[i].invoice_number, receipt.invoice->number)) {
            candidates.push_back(i);
        }
    }
    std::sort(candidates.begin(), candidates.end());

    std::vector<std::size_t> possible;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(possible),
                 [&](std::size_t file) { return !other_content(receipt, files_[file]); });
    const bool own = named || !issuer_code(receipt.file_name).empty();
    if (possible.size() == 1 && own && !(own_codes_.empty() && !named))
        return take_for(receipt, possible.front());
    return unclear(receipt, std::move(candidates));
}

Assessment ReceiptBook::unclear(const Receipt& receipt, std::vector<std::size_t> candidates) const {
    std::string words = concerns_file(receipt);
    if (candidates.empty()) {
        words += ", che qui non risulta creato per nessuna fattura: scegliere la fattura a cui si riferisce.";
    } else if (std::all_of(candidates.begin(), candidates.end(),
                           [&](std::size_t file) { return other_content(receipt, files_[file]); })) {
        words +=
            ", ma SdI ne ha ricevuto uno con lo stesso nome e un contenuto diverso da quello creato qui: "
            "controllare, prima di registrarla, se la fattura è questa.";
    } else {
        words += ": scegliere la fattura a cui si riferisce.";
    }
    return {Assessment::Outcome::unclear, {}, std::move(candidates), {}, std::move(words)};
}

Assessment ReceiptBook::take_for(const Receipt& receipt, std::size_t file) {
    KnownFile& known = files_.at(file);
    const std::string identity = receipt_identity(receipt);
    const std::string invoice = "Fattura " + known.invoice_number + ": ";
    if (std::find(known.receipts.begin(), known.receipts.end(), identity) != known.receipts.end()) {
        return {Assessment::Outcome::doubled,
                file,
                {},
                known.state,
                invoice + "questa ricevuta era già registrata, non cambia nulla."};
    }
    const DeliveryState before = known.state;
    known.state = state_after(before, receipt.kind);
    known.receipts.push_back(identity);
    std::string words = invoice + std::string(state_text(known.state)) + ".";
    if (known.state == before)
        words = invoice + "ricevuta registrata, resta " + std::string(state_text(before)) + ".";
    return {Assessment::Outcome::taken, file, {}, known.state, std::move(words)};
}

} // namespace tarvello::e_invoice
