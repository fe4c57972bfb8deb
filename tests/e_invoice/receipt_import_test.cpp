#include "e_invoice/base64.h"
#include "e_invoice/mail_file.h"
#include "e_invoice/mail_headers.h"
#include "e_invoice/receipt_import.h"
#include "e_invoice/receipt_support.h"
#include "e_invoice/zip_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvello::testing {
namespace {

using namespace e_invoice;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A receipt of delivery for IT1_1.xml.
constexpr const char* receipt_in_base64 =
    "PGE6UmljZXZ1dGFDb25zZWduYSB4bWxuczphPSJodHRwOi8vaXZhc2Vydml6aS5hZ2VuemlhZW50\r\n"
    "cmF0ZS5nb3YuaXQvZG9jcy94c2QvZmF0dHVyYS9tZXNzYWdnaS92MS4wIj48SWRlbnRpZmljYXRp\r\n"
    "dm9TZEk+NzwvSWRlbnRpZmljYXRpdm9TZEk+PE5vbWVGaWxlPklUMV8xLnhtbDwvTm9tZUZpbGU+\r\n"
    "PC9hOlJpY2V2dXRhQ29uc2VnbmE+";

/// IT1_1.xml, an invoice, stored, and that receipt, deflated; by Python's zipfile.
constexpr const char* zip_in_base64 =
    "UEsDBBQAAAAAAGQNdl3xmuUQFQAAABUAAAAJAAAASVQxXzEueG1sPEZhdHR1cmFFbGV0dHJvbmlj"
    "YS8+UEsDBBQAAAAIAGQNdl2oU1wfigAAAMAAAAAQAAAASVQxXzFfUkNfMDAxLnhtbGXOsQrCMBCA"
    "4VeRPkDOTEKJWQShi4O6y5Fc40GblN41lD69nVy6fvDD77B9cqC6KN5KFkoZT+s4ZGnx2nxVpxaA"
    "KwrNlTc2mChvjJR1RiWTSjWsEEsQWCVCj6rLjDCSCKbEUK05N951cS+454DKtbxi5y8OjugeZaQ7"
    "D+S7t/1Ys484+JuD46v/AVBLAQIUAxQAAAAAAGQNdl3xmuUQFQAAABUAAAAJAAAAAAAAAAAAAACA"
    "AQAAAABJVDFfMS54bWxQSwECFAMUAAAACABkDXZdqFNcH4oAAADAAAAAEAAAAAAAAAAAAAAAgAE8"
    "AAAASVQxXzFfUkNfMDAxLnhtbFBLBQYAAAAAAgACAHUAAAD0AAAAAAA=";

std::string zip() { return *decode_base64(zip_in_base64); }

/// A mail with these parts, each its headers and its body.
std::string mail(const std::string& headers, const std::vector<std::string>& parts) {
    std::string text = headers + "Content-Type: multipart/mixed;\r\n\tboundary=\"=_b 1\"\r\n\r\nprologo\r\n";
    for (const std::string& part : parts) text += "--=_b 1\r\n" + part + "\r\n";
    return text + "--=_b 1--\r\nepilogo";
}

const std::string attached_receipt = "Content-Type: application/octet-stream; name=\"IT1_1_RC_001.xml\"\r\n"
                                     "Content-Transfer-Encoding: base64\r\nContent-Disposition: attachment; "
                                     "filename=\"IT1_1_RC_001.xml\"\r\n\r\n" +
                                     std::string(receipt_in_base64);

const std::string mail_of_sdi = mail("From: sdi01@pec.fatturapa.it\r\nSubject: Invio notifica\r\n",
                                     {"Content-Type: text/plain\r\n\r\nIn allegato.", attached_receipt});

/// What a mailbox of certified mail gets: the provider's text and data, and the mail inside of it.
std::string certified(const std::string& inner_headers, const std::string& inner) {
    const std::string content = mail(
        "",
        {"Content-Type: text/plain\r\n\r\nMessaggio di posta certificata",
         "Content-Type: application/xml; name=daticert.xml\r\n\r\n<postacert tipo=\"posta-certificata\"/>",
         inner_headers + "\r\n" + inner});
    return "X-Trasporto: posta-certificata\r\nSubject: POSTA CERTIFICATA: Invio notifica\r\nMIME-Version: "
           "1.0\r\n"
           "Content-Type: multipart/signed; boundary=firma\r\n\r\n--firma\r\n" +
           content +
           "\r\n--firma\r\nContent-Type: application/pkcs7-signature; "
           "name=smime.p7s\r\n\r\nMIIB\r\n--firma--";
}

std::vector<std::string> names_in(const std::string& bytes) {
    std::vector<std::string> names;
    for (const FoundReceipt& found : find_receipts(bytes, "file").receipts) {
        names.push_back(found.name);
        EXPECT_EQ(found.receipt.file_name, "IT1_1.xml");
        EXPECT_EQ(found.xml, *decode_base64(receipt_in_base64));
    }
    return names;
}

std::string words_for(const std::string& bytes, const std::string& name = "file") {
    const ReceiptImport import = find_receipts(bytes, name);
    EXPECT_THAT(import.receipts, IsEmpty());
    EXPECT_EQ(import.words.size(), 1u);
    return import.words.empty() ? "" : import.words.front();
}

TEST(ReceiptImport, FindsReceiptsInWhateverTheyCome) {
    std::string with_line_feeds = mail_of_sdi;
    std::erase(with_line_feeds, '\r');
    const std::string in_message = "Content-Type: message/rfc822; name=\"postacert.eml\"\r\n";
    const std::string in_octets = "Content-Type: application/octet-stream; name=\"postacert.eml\"\r\n";
    for (const std::string& bytes :
         {mail_of_sdi, "From - Mon Mar 10\r\n" + mail_of_sdi, with_line_feeds,
          certified(in_message, mail_of_sdi), certified(in_octets, mail_of_sdi),
          mail("Subject: Fwd\r\n", {in_message + "\r\n" + certified(in_message, mail_of_sdi)})}) {
        EXPECT_THAT(names_in(bytes), ElementsAre("IT1_1_RC_001.xml")) << bytes.substr(0, 80);
    }
    EXPECT_THAT(names_in(zip()), ElementsAre("IT1_1_RC_001.xml"));
    EXPECT_THAT(names_in(*decode_base64(receipt_in_base64)), ElementsAre("file"));
    EXPECT_THAT(names_in(mail("Subject: due\r\n",
                              {attached_receipt, "Content-Transfer-Encoding: base64\r\nContent-Type: "
                                                 "application/zip\r\n\r\n" +
                                                     std::string(zip_in_base64)})),
                ElementsAre("IT1_1_RC_001.xml", "IT1_1_RC_001.xml"));
}

TEST(ReceiptImport, SaysWhyThereIsNone) {
    EXPECT_EQ(words_for(mail("Subject: Saluti\r\n", {"\r\nCiao"})),
              "file: Nel messaggio non c'è nessuna ricevuta di SdI.");
    EXPECT_THAT(
        words_for(mail("Subject: ACCETTAZIONE: x\r\nX-Ricevuta: accettazione\r\n", {"\r\nCiao"}), "a.eml"),
        ::testing::AllOf(HasSubstr("a.eml: È un avviso del gestore della posta certificata (accettazione)"),
                         HasSubstr("@pec.fatturapa.it")));
    EXPECT_THAT(words_for("X-Ricevuta: errore-consegna\r\nContent-Type: text/plain\r\n\r\n"),
                HasSubstr("non risulta inviata"));
    EXPECT_THAT(words_for(zip().substr(0, 80)), HasSubstr("L'archivio zip è danneggiato"));
    EXPECT_THAT(words_for("<FatturaElettronica/>", "IT1_1.xml"),
                HasSubstr("IT1_1.xml: È una fattura elettronica"));
    EXPECT_THAT(words_for("ciao"), HasSubstr("non è un file firmato"));
    // What came along in a mail is passed over, but not what has the name of a receipt.
    EXPECT_THAT(
        words_for(mail("Subject: x\r\n", {"Content-Type: text/xml; name=IT1_1_NS_001.xml\r\n\r\n<Ricevuta",
                                          "Content-Type: text/xml; name=altro.xml\r\n\r\n<a"})),
        HasSubstr("IT1_1_NS_001.xml: Il file non contiene XML valido"));
}

TEST(ReceiptImport, KeepsItsBounds) {
    std::string deep = mail_of_sdi;
    for (int i = 0; i < 30; ++i) deep = "Content-Type: message/rfc822\r\n\r\n" + deep;
    EXPECT_THAT(names_in(deep), IsEmpty());
    const std::string many = mail("", std::vector<std::string>(5000, attached_receipt));
    EXPECT_LE(find_receipts(many, "file").receipts.size(), 1000u);
    EXPECT_THAT(words_for(std::string((std::size_t{64} << 20) + 1, '<')), HasSubstr("troppo grande"));

    // The size that the archive tells of the receipt: one byte less, one more, and more than ten times the
    // packed.
    for (const std::uint8_t size : {0xBF, 0xC1}) {
        std::string wrong = zip();
        wrong[wrong.rfind("PK\x01\x02") + 24] = static_cast<char>(size);
        EXPECT_THAT(failure_of([&] { read_zip(wrong, [](auto&, auto) {}); }), HasSubstr("danneggiato"));
    }
    std::string bomb = zip();
    bomb[bomb.rfind("PK\x01\x02") + 26] = 0x02; // 128 KB
    EXPECT_THAT(names_in(bomb), IsEmpty());
}

TEST(MailHeaders, AreDecoded) {
    const struct {
        const char* header;
        const char* name;
    } cases[] = {
        {"attachment; filename=a.xml", "a.xml"},
        {"attachment; FileName = \"a \\\"b\\\"; c.xml\"; size=1", "a \"b\"; c.xml"},
        {"attachment; filename*=utf-8'it'citt%C3%A0.xml; filename=x", "città.xml"},
        {"attachment; filename*0*=iso-8859-1''citt%E0; filename*1=\"_1\"; filename*2*=%2Exml", "città_1.xml"},
        {"attachment; filename*0=IT; filename*1=1_1.xml", "IT1_1.xml"},
        {"attachment; filename=\"=?UTF-8?B?Y2l0dMOg?= =?iso-8859-1?q?_=E8.xml?=\"", "città è.xml"},
        {"attachment; filename=\"=?utf-8*it?Q?a=3Db?=.xml\"", "a=b.xml"},
        {"attachment; filename=\"=?x-y?Q?a?=\"", "=?x-y?Q?a?="},
        {"attachment; filename", ""},
    };
    for (const auto& [header, name] : cases) {
        const std::string text = "Content-Disposition: " + std::string(header) + "\r\nX: y\r\n\r\ncorpo";
        std::string_view rest = text;
        const MailHeaders headers(rest);
        EXPECT_EQ(headers.parameter("content-disposition", "filename"), name) << header;
        EXPECT_EQ(rest, "corpo") << header;
    }
}

TEST(MailFile, DecodesQuotedPrintable) {
    std::string content;
    read_mail("Content-Type: text/xml; name=a.xml\r\nContent-Transfer-Encoding: Quoted-Printable\r\n\r\n"
              "<a b=3D\"=C3=A8\">uno=  \r\ndue \r\n=3g=",
              [&](const std::string&, std::string_view part) { content = part; });
    EXPECT_EQ(content, "<a b=\"è\">unodue\r\n=3g");
}

} // namespace
} // namespace tarvello::testing
