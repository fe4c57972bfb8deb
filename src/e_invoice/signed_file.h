#pragma once

#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// What was signed, out of a file signed by CAdES (.p7m; RFC 5652, SignedData). The signature itself is not
/// verified: whoever shows the content says so.
///
/// Read as they occur: DER, BER with indefinite lengths and the content in pieces, the whole in base64 or
/// PEM, signed twice. A file that is XML, also one signed by XAdES, is given back as it is.
/// @throws Failure if there is no XML text inside
std::string signed_content(std::string_view bytes);

} // namespace tarvello::e_invoice
