#pragma once

#include "e_invoice/document.h"
#include "e_invoice/findings.h"

#include <vector>

/// Whether a document keeps to the types of the structure, so that it is valid by the official schema.
namespace tarvello::e_invoice {

/// Turns every text of people in the document into its alphabet and cuts it to its length.
/// @return a warning for each text that lost letters or was cut, by the field that it comes from
std::vector<Finding> conform(FatturaElettronicaType& document);

/// A refusal (control 00200) for every element that is missing or not of its type.
std::vector<Finding> faults_of_structure(const FatturaElettronicaType& document);

} // namespace tarvello::e_invoice
