#include "e_invoice/signed_file.h"

#include "e_invoice/base64.h"
#include "e_invoice/ber.h"
#include "e_invoice/failures.h"
#include "e_invoice/xml_reading.h"

#include <algorithm>
#include <optional>

namespace tarvello::e_invoice {
namespace {

// OpenSSL reads these shapes too. But it makes objects of all certificates and names, twenty times the size
// of a file that was made to do harm, and refuses a file for a fault in a part that is not needed here.

using namespace std::string_view_literals;

constexpr auto signed_data = "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x02"sv;    // 1.2.840.113549.1.7.2
constexpr auto enveloped_data = "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x03"sv; // 1.2.840.113549.1.7.3

Failure not_signed() {
    return unreadable("Il file non è XML e non è un file firmato (.p7m) che si possa leggere.");
}

/// ContentInfo { OID, [0] SignedData { version, digestAlgorithms, { OID, [0] OCTET STRING }, ... } }
std::string content_of(std::string_view bytes) {
    BerReader reader(bytes);
    const auto content_info = reader.enter(reader.whole(), ber_tag::sequence);
    const std::string_view kind = reader.content(reader.enter(content_info, ber_tag::object_identifier));
    if (kind == enveloped_data) {
        throw unreadable("Il file è cifrato: solo il destinatario, con la sua chiave, può aprirlo.");
    }
    if (kind != signed_data) throw not_signed();
    const auto wrapper = reader.enter(content_info, ber_tag::context_0);
    const auto data = reader.enter(wrapper, ber_tag::sequence);
    reader.leave(reader.enter(data)); // version
    reader.leave(reader.enter(data)); // digestAlgorithms
    const auto signed_part = reader.enter(data, ber_tag::sequence);
    reader.leave(reader.enter(signed_part, ber_tag::object_identifier));

    std::string content;
    content.reserve(bytes.size());
    if (reader.more(signed_part)) {
        const auto explicit_tag = reader.enter(signed_part, ber_tag::context_0);
        reader.append_octets(reader.enter(explicit_tag), content);
        reader.leave(explicit_tag);
    }
    if (content.empty()) {
        throw unreadable("Il file contiene solo la firma, staccata dal documento: aprire il file XML che è "
                         "stato firmato.");
    }
    // To the end: a file that was cut off shows here.
    for (const auto& element : {signed_part, data, wrapper, content_info}) reader.leave(element);
    return content;
}

/// The text between the first and the last line of PEM, or all of it.
std::string_view without_pem_lines(std::string_view text) {
    const auto first = text.find("-----BEGIN ");
    if (first == std::string_view::npos) return text;
    text.remove_prefix(std::min(text.find('\n', first), text.size()));
    return text.substr(0, text.find("-----END "));
}

std::string unwrapped(std::string_view bytes) {
    if (bytes.starts_with(static_cast<char>(ber_tag::sequence))) {
        // In base64 the first character of such a file is M; 0 would be another tag.
        return content_of(bytes);
    }
    std::optional<std::string> decoded = decode_base64(without_pem_lines(bytes));
    if (!decoded || !decoded->starts_with(static_cast<char>(ber_tag::sequence))) throw not_signed();
    return *std::move(decoded);
}

} // namespace

std::string signed_content(std::string_view bytes) {
    std::string content;
    constexpr int most_wrappings = 8; // two signatures in base64 are four
    for (int i = 0; i < most_wrappings; ++i) {
        if (looks_like_xml(bytes)) return content.empty() ? std::string(bytes) : content;
        content = unwrapped(bytes);
        bytes = content;
    }
    throw not_signed();
}

} // namespace tarvello::e_invoice
