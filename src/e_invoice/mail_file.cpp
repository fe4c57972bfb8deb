#include "e_invoice/mail_file.h"

#include "e_invoice/base64.h"
#include "e_invoice/mail_headers.h"
#include "text/letter_case.h"

#include <algorithm>
#include <optional>

namespace tarvello::e_invoice {
namespace {

constexpr int deepest_part = 20;
constexpr int most_parts = 1000;

/// The name under which a part is to be saved, without any folder.
std::string file_name(const MailHeaders& headers) {
    std::string name = headers.parameter("content-disposition", "filename");
    if (name.empty()) name = headers.parameter("content-type", "name");
    const auto separator = name.find_last_of("/\\");
    return separator == std::string::npos ? name : name.substr(separator + 1);
}

class MailReader {
public:
    explicit MailReader(const OnAttachment& on_attachment) : on_attachment_(on_attachment) {}

    void message(std::string_view text, MailSummary& summary) {
        const MailHeaders headers(text);
        if (summary.subject.empty()) summary.subject = decode_words(headers.value("subject"));
        if (summary.provider_receipt.empty()) summary.provider_receipt = headers.word("x-ricevuta");
        part(headers, text, summary);
    }

private:
    void part(const MailHeaders& headers, std::string_view body, MailSummary& summary) {
        if (depth_ >= deepest_part || ++parts_ > most_parts) return;
        ++depth_;
        const std::string type = headers.word("content-type");
        if (type.starts_with("multipart/")) {
            for_each_part(body, headers.parameter("content-type", "boundary"), summary);
        } else {
            const std::string coding = headers.word("content-transfer-encoding");
            std::optional<std::string> decoded;
            if (coding == "base64") decoded = decode_base64(body);
            if (coding == "quoted-printable") decoded = decode_quoted_printable(body);
            leaf(type, file_name(headers), decoded ? std::string_view(*decoded) : body, summary);
        }
        --depth_;
    }

    void leaf(const std::string& type, const std::string& name, std::string_view content,
              MailSummary& summary) {
        const std::string lower = lower_case(name);
        if (type == "message/rfc822" || (lower.ends_with(".eml") && looks_like_mail(content))) {
            message(content, summary);
            return;
        }
        const bool shown =
            type.empty() || type == "text/plain" || type == "text/html" || type.starts_with("image/");
        if ((shown && name.empty()) || type.starts_with("image/") || lower.ends_with(".p7s")) return;
        on_attachment_(name, content);
    }

    /// The parts of a multipart body: between lines that begin with "--" and the boundary.
    void for_each_part(std::string_view body, const std::string& boundary, MailSummary& summary) {
        if (boundary.empty()) return;
        const std::string line = "\n--" + boundary;
        std::size_t at =
            body.starts_with(std::string_view(line).substr(1)) ? line.size() - 1 : end_of(body, line);
        while (at != std::string_view::npos && !body.substr(at).starts_with("--")) {
            std::string_view rest = body.substr(at);
            rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
            const auto next = end_of(rest, line);
            std::string_view text =
                rest.substr(0, next == std::string_view::npos ? next : next - line.size());
            if (text.ends_with('\r')) text.remove_suffix(1);
            const MailHeaders headers(text);
            part(headers, text, summary);
            if (next == std::string_view::npos || parts_ > most_parts) return;
            body = rest;
            at = next;
        }
    }

    static std::size_t end_of(std::string_view text, const std::string& line) {
        const auto found = text.find(line);
        return found == std::string_view::npos ? found : found + line.size();
    }

    const OnAttachment& on_attachment_;
    int depth_ = 0;
    int parts_ = 0;
};

} // namespace

bool looks_like_mail(std::string_view bytes) {
    const MailHeaders headers(bytes);
    return headers.has("content-type") || (headers.has("from") && headers.has("subject"));
}

MailSummary read_mail(std::string_view bytes, const OnAttachment& on_attachment) {
    MailSummary summary;
    MailReader(on_attachment).message(bytes, summary);
    return summary;
}

} // namespace tarvello::e_invoice
