#pragma once

#include "documents/printed_texts.h"
#include "platform/report.h"

namespace tarvello {

class Program;

/// The two layouts of the printed invoice: the same places, other fonts. All texts that an invoice brings are
/// empty.
Report DataReport1();
Report DataReport2();

/// Shows an invoice, as it is stored, in the print preview.
/// @throws Failure only if the letterhead cannot be looked for; whatever fails after that is shown to the
/// user
void print_invoice(Program& program, const InvoiceOnView& on_view);

} // namespace tarvello
