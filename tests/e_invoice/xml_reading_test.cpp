#include "e_invoice/xml_reading.h"

#include "failure.h"
#include "store/store_fixture.h"

#include <gtest/gtest.h>

namespace tarvello::testing {
namespace {

using namespace e_invoice;

TEST(XmlReading, UnderstandsTheEncodingsThatFilesComeIn) {
    const std::pair<std::string, std::string> files[] = {
        {"<a>città €</a>", "città €"},
        {"\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><a> città </a>", "città"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>citt\xE0</a>", "città"},
        {"<?xml version='1.0' encoding='windows-1252'?><a>citt\xE0 \x80</a>", "città €"},
        {"<?xml version='1.0' encoding='iso-8859-15'?><a>citt\xE0 \xA4</a>", "città €"},
        {"\xEF\xBB\xBF<?xml version='1.0' encoding='windows-1252'?><a>città</a>", "città"},
        {"<a>citt\xE0, non dichiarato</a>", "città, non dichiarato"},
        {std::string("\xFF\xFE<\0a\0>\0\xE0\0<\0/\0a\0>\0", 18), "à"},
        {"<a><![CDATA[a & b]]></a>", "a & b"},
        {"<a>a &amp; b &#8364;</a>", "a & b €"},
    };
    for (const auto& [bytes, text] : files) {
        pugi::xml_document document;
        read_xml(document, bytes);
        EXPECT_EQ(text_of_child(document, "a"), text);
    }
}

TEST(XmlReading, RefusesWhatIsNoPlainXml) {
    std::string deep;
    for (int i = 0; i < 31; ++i) deep += "<a>";
    for (int i = 0; i < 31; ++i) deep += "</a>";
    const std::pair<std::string, const char*> files[] = {
        {"", "danneggiato"},
        {"solo testo", "danneggiato"},
        {"<a><b></a>", "danneggiato"},
        {"<a>", "danneggiato"},
        {"<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a/>", "DOCTYPE"},
        {"<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><a>&x;</a>", "DOCTYPE"},
        {deep, "livelli"},
        {std::string(largest_xml + 1, ' '), "5 MB"},
    };
    for (const auto& [bytes, words] : files) {
        pugi::xml_document document;
        EXPECT_NE(failure_of([&, &bytes = bytes] { read_xml(document, bytes); }).find(words),
                  std::string::npos)
            << words;
    }
}

/// What takes many times its size in memory is not built, a long invoice is.
TEST(XmlReading, BoundsTheSizeOfTheTree) {
    const std::pair<const char*, bool> pieces[] = {
        {"<b/>", false},
        {"a<b/>", false},
        {"<b a='' c=''/>", false},
        {"<![CDATA[]]>a", false},
        {"<Natura>N1</Natura>", true},
        {"aaaaaaaaaaaaaaaaaaaaaaaa<b/>", true},
    };
    for (const auto& [piece, taken] : pieces) {
        std::string text = "<r>";
        for (int i = 0; i < 60'000; ++i) text += piece;
        pugi::xml_document document;
        if (taken) {
            EXPECT_NO_THROW(read_xml(document, text + "</r>")) << piece;
        } else {
            EXPECT_NE(failure_of([&] { read_xml(document, text + "</r>"); }).find("troppi elementi"),
                      std::string::npos)
                << piece;
        }
    }
}

TEST(XmlReading, FindsElementsByNamespaceAndLocalName) {
    pugi::xml_document document;
    read_xml(document, "<n:a xmlns:n='urn:n' xmlns='urn:d'><!-- b --><x:b xmlns:x='urn:x'>1</x:b><c/></n:a>");
    const pugi::xml_node root = document.document_element();
    EXPECT_EQ(local_name(root), "a");
    EXPECT_EQ(namespace_of(root), "urn:n");
    EXPECT_EQ(text_of_child(root, "b"), "1");
    EXPECT_EQ(namespace_of(child_named(root, "b")), "urn:x");
    EXPECT_EQ(namespace_of(child_named(root, "c")), "urn:d");
    EXPECT_FALSE(child_named(root, "d"));
    EXPECT_EQ(text_of_child(root, "d"), "");
}

} // namespace
} // namespace tarvello::testing
