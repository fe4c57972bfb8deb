#include "e_invoice/xml_reader.h"

#include "e_invoice/structure.h"
#include "e_invoice/xml_reading.h"
#include "failure.h"
#include "text/dates.h"

#include <charconv>

namespace tarvello::e_invoice {
namespace {

class Reader {
public:
    explicit Reader(pugi::xml_node here) : here_(here) {}

    template <typename Part>
    void element(const char* name, Part& part) {
        Reader inside(child_named(here_, name));
        describe(inside, part);
    }
    template <typename Part>
    void element(const char* name, std::optional<Part>& part) {
        if (child_named(here_, name)) element(name, part.emplace());
    }
    template <typename Part>
    void element(const char* name, std::vector<Part>& parts) {
        for (const pugi::xml_node& child : here_.children()) {
            if (local_name(child) != name) continue;
            Reader inside(child);
            describe(inside, parts.emplace_back());
        }
    }

    void text(const char* name, std::string& text, const TextType&) { text = text_of_child(here_, name); }
    void optional_text(const char* name, std::string& value, const TextType& type) {
        text(name, value, type);
    }
    void texts(const char* name, std::vector<std::string>& values, const TextType&) {
        for (const pugi::xml_node& child : here_.children()) {
            if (local_name(child) == name) values.emplace_back(child.text().get());
        }
    }
    void amount(const char* name, Cents& amount) { read(name, amount, amount_of); }
    void amount(const char* name, std::optional<Cents>& amount) {
        if (child_named(here_, name)) read(name, amount.emplace(), amount_of);
    }
    void rate(const char* name, Rate& rate) { read(name, rate, rate_of); }
    void date(const char* name, Date& date) { read(name, date, read_iso_date); }
    void date(const char* name, std::optional<Date>& date) {
        if (child_named(here_, name)) read(name, date.emplace(), read_iso_date);
    }
    void number(const char* name, int& number) {
        const std::string text = text_of_child(here_, name);
        std::from_chars(text.data(), text.data() + text.size(), number);
    }

private:
    template <typename Value>
    void read(const char* name, Value& value, std::optional<Value> (*reading)(std::string_view)) {
        const std::string text = text_of_child(here_, name);
        if (text.empty()) return;
        const std::optional<Value> read = reading(text);
        if (!read) {
            throw Failure(failure_number::type_mismatch, "Fattura elettronica",
                          "Il file non è una fattura leggibile: \"" + text + "\" in " + name + ".");
        }
        value = *read;
    }

    pugi::xml_node here_;
};

} // namespace

FatturaElettronicaType read_document(std::string_view xml) {
    pugi::xml_document parsed;
    read_xml(parsed, xml);
    const pugi::xml_node root = parsed.document_element();
    if (local_name(root) != "FatturaElettronica") {
        throw Failure(failure_number::type_mismatch, "Fattura elettronica",
                      "Il file non è una fattura elettronica.");
    }
    FatturaElettronicaType document;
    document.versione = root.attribute("versione").value();
    Reader reader(root);
    describe(reader, document);
    return document;
}

} // namespace tarvello::e_invoice
