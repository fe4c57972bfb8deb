#pragma once

#include "e_invoice/document.h"

#include <string_view>

namespace tarvello::e_invoice {

/// Reads an invoice that this program wrote, or another program made of it by signing. Elements that it never
/// writes are passed over, and one that is missing stays empty.
/// @throws Failure, in Italian, if it is no invoice (see read_xml for the bounds), or an amount, a percentage
/// or
///         a date in it is none
FatturaElettronicaType read_document(std::string_view xml);

} // namespace tarvello::e_invoice
