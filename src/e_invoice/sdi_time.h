#pragma once

#include "text/dates.h"

#include <optional>
#include <string_view>

namespace tarvello::e_invoice {

/// A time as receipts write it (xsd:dateTime, such as 2026-03-10T09:12:41.000+01:00), by the clock in Italy
/// whatever the offset it is written with. Without an offset it is taken to be Italian.
/// @return nothing if the text is no time
std::optional<DateTime> read_sdi_time(std::string_view text);

/// A day as receipts write it (xsd:date, such as 2026-03-14); an offset behind it changes nothing.
/// @return nothing if the text is no day
std::optional<Date> read_sdi_date(std::string_view text);

} // namespace tarvello::e_invoice
