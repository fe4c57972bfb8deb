#include "e_invoice/receipt_import.h"

#include "e_invoice/failures.h"
#include "e_invoice/mail_file.h"
#include "e_invoice/signed_file.h"
#include "e_invoice/xml_reading.h"
#include "e_invoice/zip_file.h"
#include "text/letter_case.h"

namespace tarvello::e_invoice {
namespace {

constexpr std::size_t largest_file = std::size_t{64} << 20;
constexpr int deepest_file = 3; // a mail with an archive with a signed file

/// What the provider of certified mail says of a message, by the header X-Ricevuta (DM of 2 November 2005).
std::string words_of_provider(const std::string& receipt) {
    if (receipt.empty()) return "Nel messaggio non c'è nessuna ricevuta di SdI.";
    const std::string words =
        "È un avviso del gestore della posta certificata (" + receipt + "), non una ricevuta di SdI. ";
    if (receipt.starts_with("accettazione") || receipt.starts_with("avvenuta-consegna") ||
        receipt.starts_with("presa-in-carico")) {
        return words + "Quella di SdI arriva in un altro messaggio, da un indirizzo @pec.fatturapa.it.";
    }
    return words + "Il messaggio non è arrivato a SdI: la fattura non risulta inviata.";
}

class Finder {
public:
    ReceiptImport found;

    /// Looks through a file that the user chose: what cannot be read is said.
    void chosen_file(std::string_view bytes, const std::string& name) {
        try {
            if (bytes.size() > largest_file) {
                throw unreadable("Il file è troppo grande per contenere una ricevuta di SdI.");
            }
            any_file(bytes, name);
        } catch (const Failure& failure) {
            say(name, failure.description()); // the words are the result
        }
    }

private:
    void say(const std::string& name, const std::string& words) {
        found.words.push_back(name + ": " + words);
    }

    void any_file(std::string_view bytes, const std::string& name) {
        if (looks_like_zip(bytes)) {
            archive(bytes, name);
        } else if (!looks_like_xml(bytes) && looks_like_mail(bytes)) {
            mail(bytes, name);
        } else {
            std::string content = signed_content(bytes);
            Receipt receipt = read_receipt(content);
            found.receipts.push_back({std::move(receipt), name, std::move(content)});
        }
    }

    void mail(std::string_view bytes, const std::string& name) {
        const std::size_t before = results();
        const MailSummary summary = read_mail(
            bytes, [&](const std::string& part, std::string_view content) { contained_file(content, part); });
        if (results() == before) say(name, words_of_provider(summary.provider_receipt));
    }

    void archive(std::string_view bytes, const std::string& name) {
        const std::size_t before = results();
        read_zip(bytes,
                 [&](const std::string& part, std::string_view content) { contained_file(content, part); });
        if (results() == before) say(name, "Nell'archivio non c'è nessuna ricevuta di SdI.");
    }

    std::size_t results() const { return found.receipts.size() + found.words.size(); }

    /// A file in a mail or an archive may be anything: only one with the name of a receipt is missed.
    void contained_file(std::string_view content, const std::string& name) {
        if (depth_ >= deepest_file) return;
        ++depth_;
        try {
            any_file(content, name);
        } catch (const Failure& failure) {
            if (has_name_of_receipt(name)) say(name, failure.description());
            // Else it is something else that came along.
        }
        --depth_;
    }

    /// Such as IT01234567890_00001_RC_001.xml.
    static bool has_name_of_receipt(const std::string& name) {
        const std::string lower = lower_case(name);
        for (const char* const kind : {"_rc_", "_ns_", "_mc_", "_ne_", "_dt_", "_at_"}) {
            if (lower.find(kind) != std::string::npos) return true;
        }
        return false;
    }

    int depth_ = 0;
};

} // namespace

ReceiptImport find_receipts(std::string_view bytes, const std::string& name) {
    Finder finder;
    finder.chosen_file(bytes, name);
    return std::move(finder.found);
}

} // namespace tarvello::e_invoice
