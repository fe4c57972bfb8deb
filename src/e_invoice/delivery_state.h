#pragma once

#include "e_invoice/receipt.h"
#include "text/dates.h"

#include <optional>
#include <span>
#include <string_view>

namespace tarvello::e_invoice {

/// How far a file has come on its way to the customer. From `rejected` on the state is the highest that any
/// receipt of the file gives, in whatever order they come.
enum class DeliveryState {
    to_create, ///< there is no file yet
    to_sign,   ///< the public administration takes signed files only
    created,
    sent,
    rejected,      ///< the invoice counts as never issued
    not_delivered, ///< SdI goes on trying
    attested,
    made_available,
    delivered,
    lapsed,
    accepted,
    refused,
};

/// What the user does with a file.
enum class DeliveryAct {
    create,         ///< write the file
    create_to_sign, ///< write one that must be signed
    sign,           ///< choose the signed file
    send,           ///< say that it was sent
    take_back,      ///< say that it was not sent after all
};

/// @return nothing if the act is not possible now: a file that SdI has, and has not rejected, is never
/// created
///         again. After a rejection or a refusal it is, under a new name, with number and date of the
///         invoice.
std::optional<DeliveryState> state_after(DeliveryState now, DeliveryAct act);

/// The state once a receipt has come; the same if it tells less than what is known. A rejection after a
/// delivery is that of a second transmission of the same file and changes nothing.
DeliveryState state_after(DeliveryState now, ReceiptKind receipt);

/// The state of an invoice for which several files were made.
/// @param files  their states, the oldest first
/// @return that of a file that SdI has taken, if there is one, else that of the newest
DeliveryState invoice_state(std::span<const DeliveryState> files);

/// True if SdI has the file and has not rejected it.
bool is_issued(DeliveryState state);

/// Days left to send an invoice; negative if it is late. Nothing once it is sent.
///
/// Twelve days from its date (DPR 633/72 art. 21 c. 4), five after a rejection (circ. 13/E of 2018).
/// @param rejected_on  the day of the last rejection, if there was one. Receipts do not tell the day on which
/// they
///                     came; the day on which SdI got the file is never later.
std::optional<int> days_left(DeliveryState state, const Date& invoice_date,
                             const std::optional<Date>& rejected_on, const Date& today);

/// The state as the list shows it: "consegnata".
std::string_view state_text(DeliveryState state);

/// What the state means and what is to be done, in a sentence or two.
std::string_view state_advice(DeliveryState state);

} // namespace tarvello::e_invoice
