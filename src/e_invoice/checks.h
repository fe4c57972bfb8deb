#pragma once

#include "e_invoice/findings.h"
#include "e_invoice/from_row.h"
#include "text/dates.h"

#include <vector>

/// Everything that the exchange system would reject, found before the file is written; and what is doubtful.
///
/// What only its registers know cannot be found here: whether a number or a recipient code exists (00300 to
/// 00306 beyond the check digits, 00311, 00312, 00320 to 00326, 00398, 00399), and the signature of a file.
namespace tarvello::e_invoice {

/// What the archive and the calendar know.
struct Circumstances {
    Date today{};
    /// Another invoice of the year has the same number, and its electronic invoice
    bool number_sent = false;    ///< was sent and not rejected
    bool number_created = false; ///< was created
};

/// All findings on a draft, those of the draft itself first. The file may be written if none is a refusal.
std::vector<Finding> check(const Draft& draft, const Circumstances& circumstances);

} // namespace tarvello::e_invoice
