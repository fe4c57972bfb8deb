#pragma once

#include "e_invoice/source.h"
#include "text/regional_settings.h"

#include <string>
#include <vector>

/// What the program proposes for an electronic invoice before the user decides.
namespace tarvello::e_invoice {

/// Kind, natures as far as they follow from regime and article, stamp duty as the tax office counts it, and
/// the sentences that go with all that. A nature that must be asked stays empty.
/// @param decided  what stands already: kind, natures and description are kept
/// @param last     the natures that were chosen last, proposed where nothing else tells one
Decisions propose(const StoredInvoice& invoice, const Issuer& issuer, const Customer& customer,
                  Decisions decided, const RegionalSettings& regional, const Decisions& last = {});

/// The sentences for Causale that the law or custom wants with what was decided: regime, reverse charge,
/// reduced base of the withholding, stamp duty.
std::vector<std::string> proposed_reasons(const StoredInvoice& invoice, const Issuer& issuer,
                                          const Customer& customer, const Decisions& decisions,
                                          const RegionalSettings& regional);

} // namespace tarvello::e_invoice
