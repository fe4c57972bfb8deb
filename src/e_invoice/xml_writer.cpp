#include "e_invoice/xml_writer.h"

#include "e_invoice/structure.h"
#include "text/dates.h"

#include <pugixml.hpp>

namespace tarvello::e_invoice {
namespace {

class Writer : public Walk<Writer> {
public:
    explicit Writer(pugi::xml_node root) : here_(root) {}

    void enter(const char* name) { here_ = here_.append_child(name); }
    void leave() { here_ = here_.parent(); }

    void text(const char* name, const std::string& text, const TextType&) {
        here_.append_child(name).text().set(text.c_str());
    }
    void optional_text(const char* name, const std::string& value, const TextType& type) {
        if (!value.empty()) text(name, value, type);
    }
    void texts(const char* name, const std::vector<std::string>& values, const TextType& type) {
        for (const std::string& value : values) optional_text(name, value, type);
    }
    void amount(const char* name, Cents amount) { put(name, amount_text(amount)); }
    void amount(const char* name, const std::optional<Cents>& amount) {
        if (amount) put(name, amount_text(*amount));
    }
    void rate(const char* name, Rate rate) { put(name, rate_text(rate)); }
    void date(const char* name, const Date& date) { put(name, iso_date(date)); }
    void date(const char* name, const std::optional<Date>& date) {
        if (date) put(name, iso_date(*date));
    }
    void number(const char* name, int number) { put(name, std::to_string(number)); }

private:
    void put(const char* name, const std::string& text) { here_.append_child(name).text().set(text.c_str()); }

    pugi::xml_node here_;
};

struct StringWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

} // namespace

std::string to_xml(const FatturaElettronicaType& document) {
    pugi::xml_document xml;
    pugi::xml_node declaration = xml.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    // The prefix keeps the elements inside free of the namespace: with a default one they would all be in it,
    // and the file would be rejected.
    pugi::xml_node root = xml.append_child("p:FatturaElettronica");
    root.append_attribute("xmlns:p") = invoice_namespace;
    root.append_attribute("versione") = document.versione.c_str();
    Writer writer(root);
    describe(writer, document);
    StringWriter out;
    xml.save(out, "  ", pugi::format_indent, pugi::encoding_utf8);
    return out.text;
}

} // namespace tarvello::e_invoice
