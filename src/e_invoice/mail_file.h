#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// What a saved mail says of itself.
struct MailSummary {
    std::string subject;
    /// The kind of receipt of the provider of certified mail, such as "accettazione"; empty for any other
    /// mail.
    std::string provider_receipt;
};

/// Gets one file that a mail brings. The content lasts as long as the call.
using OnAttachment = std::function<void(const std::string& name, std::string_view content)>;

/// True if the bytes start with the headers of a mail.
bool looks_like_mail(std::string_view bytes);

/// Reads a saved mail (.eml; RFC 5322, MIME) and gives every file in it to `on_attachment`: also those inside
/// of mails inside of it, as certified mail wraps what it carries, whatever their type is said to be. Texts
/// without a name, pictures and detached signatures are left out. Read within bounds: 20 levels, 1,000 parts.
MailSummary read_mail(std::string_view bytes, const OnAttachment& on_attachment);

} // namespace tarvello::e_invoice
