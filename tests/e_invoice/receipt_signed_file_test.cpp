#include "e_invoice/file_hash.h"
#include "e_invoice/receipt_support.h"
#include "e_invoice/signed_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvello::testing {
namespace {

using namespace e_invoice;
using ::testing::HasSubstr;
using namespace std::string_literals;

std::string p7m(const std::string& shape) { return fatturapa_file("p7m/" + shape + ".p7m"); }

/// The invoice in the three samples, by sha256sum of what "openssl cms -verify" takes out of them.
constexpr const char* hash_of_invoice = "31192d4560bb79ff5bf2fac8fd0a414ca6bac2ef096163edc493d5b6f0c5b473";

TEST(SignedFile, GivesWhatWasSigned) {
    for (const char* shape : {"der", "ber-indefinite", "base64"}) {
        EXPECT_EQ(file_hash(signed_content(p7m("ITDNGNCL75E14F205Y_00008."s + shape + ".xml"))),
                  hash_of_invoice)
            << shape;
    }
    std::string lines = p7m("ITDNGNCL75E14F205Y_00008.base64.xml");
    for (std::size_t at = 0; (at = lines.find('\n', at)) != std::string::npos; at += 2)
        lines.insert(at, 1, '\r');
    EXPECT_EQ(file_hash(signed_content(lines)), hash_of_invoice);
    EXPECT_EQ(signed_content(p7m("due-firme-windows-1252.pem")),
              "<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<caff\xE8>10 \x80</caff\xE8>");
    EXPECT_EQ(signed_content("\xEF\xBB\xBF\n<a/>"), "\xEF\xBB\xBF\n<a/>");
}

TEST(SignedFile, SaysWhyThereIsNoContent) {
    EXPECT_THAT(failure_of([] { signed_content(p7m("firma-staccata")); }), HasSubstr("solo la firma"));
    EXPECT_THAT(failure_of([] { signed_content(p7m("cifrato")); }), HasSubstr("cifrato"));
    // {OID 1.2.3}; text; base64 of text; nothing; a file of another kind
    for (const std::string& bytes : {"\x30\x04\x06\x02\x2A\x03"s, "ciao!"s, "Y2lhbw=="s, ""s, "%PDF-1.7"s}) {
        EXPECT_THAT(failure_of([&] { signed_content(bytes); }), HasSubstr("non è un file firmato")) << bytes;
    }
}

/// However short the rest is: never a part of the content.
TEST(SignedFile, CutOffIsDamaged) {
    for (const char* shape : {"der", "ber-indefinite"}) {
        const std::string whole = p7m("ITDNGNCL75E14F205Y_00008."s + shape + ".xml");
        for (std::size_t size = 1; size < whole.size(); ++size) {
            EXPECT_THAT(failure_of([&] { signed_content(whole.substr(0, size)); }), HasSubstr("danneggiato"))
                << shape << size;
        }
    }
}

TEST(SignedFile, KeepsItsBounds) {
    const std::string begin =
        "\x30\x80\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x07\x02\xA0\x80\x30\x80\x02\x01\x01\x31\x00"
        "\x30\x80\x06\x01\x2A\xA0\x80"s;
    const std::string end(10, '\0');
    const auto nested = [&](int levels) {
        std::string content = begin;
        for (int i = 0; i < levels; ++i) content += "\x24\x80";
        content += "\x04\x04<a/>";
        return content + std::string(static_cast<std::size_t>(levels) * 2, '\0') + end;
    };
    EXPECT_EQ(signed_content(nested(0)), "<a/>");
    EXPECT_EQ(signed_content(nested(24)), "<a/>"); // five elements around, one inside
    const std::string faults[] = {
        nested(25),
        begin + "\x04\x85\0\0\0\0\x04<a/>"s + end, // a length of five bytes
        begin + "\x04\x84\xFF\xFF\xFF\xFF<a/>"s + end,
        begin + "\x04\x80<a/>\0\0"s + end,     // an end mark where there are no elements
        begin + "\x24\x06\x02\x04<a/>"s + end, // a piece that is no octet string
        begin + "\x24\x05\x04\x04<a/>"s + end, // a piece that reaches out of the whole
        begin + "\x1F\x04<a/>"s + end,         // a tag of two bytes
    };
    for (const std::string& fault : faults) {
        EXPECT_THAT(failure_of([&] { signed_content(fault); }), HasSubstr("danneggiato")) << &fault - faults;
    }
    EXPECT_EQ(signed_content(begin + "\x04\x84\0\0\0\x04<a/>"s + end), "<a/>");
}

} // namespace
} // namespace tarvello::testing
