#include "e_invoice/xml_reading.h"

#include "failure.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace tarvello::e_invoice {
namespace {

constexpr std::ptrdiff_t most_tags = 100'000;
constexpr int deepest = 30;
constexpr std::string_view white = " \t\r\n";

[[noreturn]] void refuse(const std::string& why) {
    throw Failure(failure_number::type_mismatch, "Fattura elettronica", "Il file " + why);
}

/// The encoding that the declaration names, in lower case; empty for none.
std::string declared_encoding(std::string_view bytes) {
    constexpr std::size_t longest_declaration = 200;
    const std::string head = lower_case(bytes.substr(0, std::min(bytes.size(), longest_declaration)));
    const std::size_t end = head.find("?>");
    const std::size_t at = head.find("encoding");
    if (end == std::string::npos || at > end) return {};
    const std::size_t first = head.find_first_of("\"'", at);
    if (first == std::string::npos) return {};
    const std::size_t last = head.find(head[first], first + 1);
    return last == std::string::npos ? std::string() : head.substr(first + 1, last - first - 1);
}

/// What windows-1252 has where ISO-8859-1 has controls; 0 where it has nothing.
constexpr std::array<char32_t, 32> windows_1252{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::string from_windows_1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const bool differs = code >= 0x80 && code < 0xA0;
        const char32_t character = differs ? windows_1252[code - 0x80U] : code;
        if (character != 0) utf8::append(text, character);
    }
    return text;
}

bool is_eight_bit(std::string_view encoding) {
    return encoding == "iso-8859-1" || encoding == "latin1" || encoding == "windows-1252" ||
           encoding == "cp1252";
}

bool has_utf_16_mark(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

void parse(pugi::xml_document& document, std::string_view bytes, pugi::xml_encoding encoding) {
    constexpr unsigned options = pugi::parse_default | pugi::parse_doctype;
    if (!document.load_buffer(bytes.data(), bytes.size(), options, encoding)) {
        refuse("non contiene XML valido: è danneggiato o di un altro tipo.");
    }
}

/// Goes from element to element without recursion, which a deep file would exhaust.
struct DepthMeter : pugi::xml_tree_walker {
    bool too_deep = false;
    bool for_each(pugi::xml_node&) override {
        too_deep = depth() >= deepest;
        return !too_deep;
    }
};

} // namespace

void read_xml(pugi::xml_document& document, std::string_view bytes) {
    if (bytes.size() > largest_xml) refuse("supera i 5 MB: non è una fattura o una ricevuta.");
    if (std::count(bytes.begin(), bytes.end(), '<') > most_tags) refuse("contiene troppi elementi.");
    if (has_utf_16_mark(bytes)) {
        parse(document, bytes, pugi::encoding_auto);
    } else if (is_eight_bit(declared_encoding(bytes)) || !utf8::valid(bytes)) {
        parse(document, from_windows_1252(bytes), pugi::encoding_utf8);
    } else {
        parse(document, bytes, pugi::encoding_utf8);
    }
    for (const pugi::xml_node& node : document.children()) {
        if (node.type() == pugi::node_doctype) {
            refuse(
                "contiene una dichiarazione DOCTYPE, che in una fattura o in una ricevuta non può esserci.");
        }
    }
    if (!document.document_element()) refuse("non contiene XML valido: è danneggiato o di un altro tipo.");
    DepthMeter meter;
    document.traverse(meter);
    if (meter.too_deep) refuse("ha troppi livelli.");
}

std::string_view local_name(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string_view namespace_of(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    const std::string declaration =
        colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    for (pugi::xml_node above = node; above; above = above.parent()) {
        if (const pugi::xml_attribute found = above.attribute(declaration.c_str())) return found.value();
    }
    return {};
}

pugi::xml_node child_named(const pugi::xml_node& parent, std::string_view name) {
    for (const pugi::xml_node& child : parent.children()) {
        if (child.type() == pugi::node_element && local_name(child) == name) return child;
    }
    return {};
}

std::string text_of_child(const pugi::xml_node& parent, std::string_view name) {
    const std::string_view text = child_named(parent, name).text().get();
    const std::size_t first = text.find_first_not_of(white);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(white) - first + 1));
}

} // namespace tarvello::e_invoice
