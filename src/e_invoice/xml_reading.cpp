#include "e_invoice/xml_reading.h"

#include "e_invoice/charset.h"
#include "failure.h"
#include "text/letter_case.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tarvello::e_invoice {
namespace {

constexpr int deepest = 30;
constexpr std::string_view white = " \t\r\n";
constexpr std::string_view utf_8_mark = "\xEF\xBB\xBF";
constexpr const char* no_xml = "non contiene XML valido: è danneggiato o di un altro tipo.";

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

/// What the tree will take at most, in bytes, by the marks that make a node or an attribute.
std::size_t size_of_tree(std::string_view text) {
    constexpr std::size_t node = 64;
    constexpr std::size_t attribute = 40;
    std::size_t size = 0;
    bool begins = false; // the tag begins an element: the text behind it is kept in the element's own node
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const char next = text[i + 1];
        if (text[i] == '<') {
            begins = next != '/' && next != '!' && next != '?';
            if (next != '/') size += node;
        } else if (text[i] == '>') {
            begins = begins && text[i - 1] != '/';
            if (!begins && next != '<' && next != '\r' && next != '\n') size += node;
        } else if (text[i] == '=') {
            size += attribute;
        }
    }
    return size;
}

bool has_utf_16_mark(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

/// The text in UTF-8: a mark wins over the declaration, and what is not as declared is taken for
/// windows-1252.
std::string in_utf8(std::string bytes) {
    if (has_utf_16_mark(bytes)) return *to_utf8(std::move(bytes), "utf-16");
    const std::string encoding = bytes.starts_with(utf_8_mark) ? std::string() : declared_encoding(bytes);
    if (std::optional<std::string> text = to_utf8(bytes, encoding)) return *std::move(text);
    return *to_utf8(std::move(bytes), "windows-1252");
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
    constexpr std::size_t small = 4096;
    const std::string text = in_utf8(std::string(bytes));
    if (size_of_tree(text) > 5 * bytes.size() + small) refuse("contiene troppi elementi.");
    constexpr unsigned options = pugi::parse_default | pugi::parse_doctype | pugi::parse_embed_pcdata;
    if (!document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8)) refuse(no_xml);
    for (const pugi::xml_node& node : document.children()) {
        if (node.type() == pugi::node_doctype) {
            refuse(
                "contiene una dichiarazione DOCTYPE, che in una fattura o in una ricevuta non può esserci.");
        }
    }
    if (!document.document_element()) refuse(no_xml);
    DepthMeter meter;
    document.traverse(meter);
    if (meter.too_deep) refuse("ha troppi livelli.");
}

bool looks_like_xml(std::string_view bytes) {
    if (has_utf_16_mark(bytes)) return true;
    if (bytes.starts_with(utf_8_mark)) bytes.remove_prefix(utf_8_mark.size());
    return bytes.substr(std::min(bytes.find_first_not_of(white), bytes.size())).starts_with('<');
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
