#include "e_invoice/receipts_view.h"

#include "e_invoice/delivery_state.h"
#include "e_invoice/readable_view.h"
#include "e_invoice/receipt_errors.h"
#include "failure.h"

namespace tarvello::e_invoice {
namespace {

std::string errors_html(const Receipt& receipt) {
    std::string html;
    for (const ReceiptError& error : in_helpful_order(receipt.errors)) {
        html += "<li><b>" + html_text(error.code) + "</b> " + html_text(error.description);
        if (!error.suggestion.empty()) html += "<br>" + html_text(error.suggestion);
        if (const auto hint = error_hint(error.code); !hint.empty())
            html += "<br><i>" + std::string(hint) + "</i>";
        html += "</li>";
    }
    return html.empty() ? html : "<ul>" + html + "</ul>";
}

} // namespace

std::string receipts_html(const std::vector<StoredReceipt>& receipts, const RegionalSettings& regional) {
    std::string html;
    for (const StoredReceipt& stored : receipts) {
        html += "<p>";
        try {
            const Receipt receipt = read_receipt(stored.xml);
            html += "<b>" + std::string(state_text(state_after(DeliveryState::to_create, receipt.kind))) +
                    "</b>, " + html_text(stored.name);
            if (stored.taken) html += ", letta il " + short_date_text(*stored.taken, regional);
            if (!receipt.description.empty()) html += "<br>" + html_text(receipt.description);
            if (!receipt.note.empty()) html += "<br>" + html_text(receipt.note);
            html += "</p>" + errors_html(receipt);
        } catch (const Failure&) {
            // It was read when it came; what is kept of it can no longer be.
            html += html_text(stored.name) + ": non si legge più.</p>";
        }
    }
    return html;
}

} // namespace tarvello::e_invoice
