#pragma once

#include "e_invoice/document.h"

#include <string>

namespace tarvello::e_invoice {

/// The document as the file that the exchange system takes: UTF-8 without a mark, its elements without a
/// namespace. The texts must be in their alphabets already (conformity.h).
std::string to_xml(const FatturaElettronicaType& document);

} // namespace tarvello::e_invoice
