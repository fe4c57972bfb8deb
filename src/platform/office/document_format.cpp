#include "platform/office/document_format.h"

#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::office {
namespace {

bool is_control(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f';
}

} // namespace

std::string document_format(std::string_view content) {
    const auto starts = [&](std::string_view mark) { return content.substr(0, mark.size()) == mark; };
    if (starts("{\\rtf")) return "rtf";
    // The container of the older office formats; its directory names the streams in 16-bit characters.
    if (starts("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) return "doc";
    if (starts("PK\x03\x04")) {
        const std::string_view head = content.substr(0, 4096);
        if (head.find("application/vnd.oasis.opendocument.text") != std::string_view::npos) return "odt";
        if (head.find("[Content_Types].xml") != std::string_view::npos ||
            head.find("word/") != std::string_view::npos) {
            return "docx";
        }
        return {};
    }
    if (std::any_of(content.begin(), content.end(), is_control)) return {};
    const std::string head = lower_case(trim(content.substr(0, 512)));
    if (head.starts_with("<!doctype html") || head.starts_with("<html")) return "html";
    return "txt";
}

} // namespace tarvello::office
