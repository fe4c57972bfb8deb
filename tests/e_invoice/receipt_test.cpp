#include "e_invoice/receipt.h"
#include "e_invoice/receipt_errors.h"
#include "e_invoice/receipt_support.h"
#include "e_invoice/sdi_time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvello::testing {
namespace {

using namespace e_invoice;
using ::testing::HasSubstr;
using namespace std::chrono_literals;

DateTime time_of(Date day, std::chrono::seconds time) { return std::chrono::local_days(day) + time; }

TEST(Receipt, OfPrivateCustomers) {
    const Receipt delivered = read_receipt(fatturapa_file("receipts/ITDNGNCL75E14F205Y_00001_RC_001.xml"));
    EXPECT_EQ(delivered.kind, ReceiptKind::delivered);
    EXPECT_EQ(delivered.sdi_number, "14512345001");
    EXPECT_EQ(delivered.file_name, "ITDNGNCL75E14F205Y_00001.xml");
    EXPECT_EQ(delivered.hash, "36f3c66f413321dd5ad401f57be255a7e812d570454b3dd253df5e6b635b0171");
    EXPECT_EQ(delivered.received, time_of(make_date(2026, 3, 10), 9h + 12min + 41s));
    EXPECT_EQ(delivered.delivered, time_of(make_date(2026, 3, 10), 9h + 15min + 2s));
    EXPECT_EQ(delivered.addressee_code, "ABC1234");
    EXPECT_EQ(delivered.addressee, "Canale di prova");
    EXPECT_EQ(delivered.message_id, "1269788243");
    EXPECT_EQ(delivered.note, "");

    const Receipt rejected = read_receipt(fatturapa_file("receipts/ITDNGNCL75E14F205Y_00003_NS_001.xml"));
    EXPECT_EQ(rejected.kind, ReceiptKind::rejected);
    ASSERT_EQ(rejected.errors.size(), 2u);
    EXPECT_EQ(rejected.errors[1].code, "00305");
    EXPECT_EQ(rejected.errors[1].description, "1.4.1.1.2 IdCodice non valido : 05432100963");
    EXPECT_EQ(rejected.errors[1].suggestion,
              "Verificare che il campo IdFiscaleIVA/IdCodice del \"CessionarioCommittente\" sia valido");

    const Receipt available = read_receipt(fatturapa_file("receipts/ITDNGNCL75E14F205Y_00004_MC_001.xml"));
    EXPECT_EQ(available.kind, ReceiptKind::made_available);
    EXPECT_EQ(available.available, make_date(2026, 3, 14));
    EXPECT_THAT(available.description, HasSubstr("nell'area riservata"));
}

TEST(Receipt, OfThePublicAdministration) {
    const Receipt lapsed = read_receipt(fatturapa_file("receipts/ITDNGNCL75E14F205Y_00008_DT_001.xml"));
    EXPECT_EQ(lapsed.kind, ReceiptKind::lapsed);
    EXPECT_EQ(lapsed.file_name, "ITDNGNCL75E14F205Y_00008.xml.p7m");
    ASSERT_TRUE(lapsed.invoice);
    EXPECT_EQ(lapsed.invoice->number, "8/2026");
    EXPECT_EQ(lapsed.invoice->year, 2026);

    const Receipt refused = read_receipt(fatturapa_file("receipts/IT02468010158_00019_NE_001.xml"));
    EXPECT_EQ(refused.kind, ReceiptKind::refused);
    EXPECT_EQ(refused.description, "CIG errato: rifiuto ai sensi del DM 132/2020");
    EXPECT_EQ(refused.message_id, "1305");
    EXPECT_FALSE(refused.invoice);

    const struct {
        const char* root;
        const char* fields;
        ReceiptKind kind;
    } cases[] = {
        {"RicevutaConsegna", "", ReceiptKind::delivered},
        {"NotificaScarto", "", ReceiptKind::rejected},
        {"NotificaMancataConsegna", "", ReceiptKind::not_delivered},
        {"AttestazioneTrasmissioneFattura", "<HashFileOriginale>ab</HashFileOriginale>",
         ReceiptKind::attested},
        {"NotificaEsito", "<EsitoCommittente><Esito>EC01</Esito></EsitoCommittente>", ReceiptKind::accepted},
    };
    for (const auto& [root, fields, kind] : cases) {
        const Receipt receipt = read_receipt(
            receipt_text(root, administration_namespace,
                         std::string(fields) +
                             "<Novità><NomeFile>no</NomeFile></Novità><NomeFile> IT1_1.xml\n</NomeFile>"
                             "<RiferimentoArchivio><NomeFile>IT1_2.zip</NomeFile></RiferimentoArchivio>"));
        EXPECT_EQ(receipt.kind, kind) << root;
        EXPECT_EQ(receipt.file_name, "IT1_1.xml") << root;
        EXPECT_EQ(receipt.archive_name, "IT1_2.zip") << root;
        EXPECT_EQ(receipt.hash, kind == ReceiptKind::attested ? "ab" : "") << root;
    }
}

TEST(Receipt, SaysWhatItIsNot) {
    const std::string name = "<NomeFile>IT1_1.xml</NomeFile>";
    const struct {
        std::string xml;
        const char* words;
    } cases[] = {
        {receipt_text("FileMetadati", private_namespace, name), "a chi riceve"},
        {receipt_text("ScartoEsitoCommittente", administration_namespace, name), "al cliente"},
        {receipt_text("FatturaElettronica", "http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fatture/v1.2",
                      ""),
         "È una fattura"},
        {receipt_text("NotificaScarto", private_namespace, name), "non è una ricevuta"},
        {receipt_text("RicevutaConsegna", "urn:x", name), "non è una ricevuta"},
        {receipt_text("RicevutaConsegna", private_namespace, ""), "non dice a quale file"},
        {receipt_text("NotificaEsito", administration_namespace, name), "accettato o rifiutato"},
        {receipt_text("RicevutaConsegna", private_namespace, name).substr(0, 140), "danneggiato"},
    };
    for (const auto& [xml, words] : cases) {
        EXPECT_THAT(failure_of([&text = xml] { read_receipt(text); }), HasSubstr(words))
            << xml.substr(0, 200);
    }
}

TEST(Receipt, IsDoubledOnlyByACopyOfItself) {
    const std::string fields = "<IdentificativoSdI>1</IdentificativoSdI><NomeFile>IT1_1.xml</NomeFile>";
    const auto identity = [&](const char* root, const std::string& more) {
        return receipt_identity(read_receipt(receipt_text(root, administration_namespace, fields + more)));
    };
    const std::string first = identity("NotificaScarto", "<MessageId>5</MessageId>");
    EXPECT_EQ(identity("NotificaScarto", "<Note>x</Note><MessageId>5</MessageId>"), first);
    EXPECT_NE(identity("NotificaScarto", "<MessageId>6</MessageId>"), first);
    EXPECT_NE(identity("NotificaMancataConsegna", "<MessageId>5</MessageId>"), first);
}

TEST(SdiTime, IsThatOfItaly) {
    const struct {
        const char* text;
        Date day;
        std::chrono::seconds time;
    } cases[] = {
        {"2026-03-10T09:12:41.000+01:00", make_date(2026, 3, 10), 9h + 12min + 41s},
        {"2026-07-10T09:12:41+02:00", make_date(2026, 7, 10), 9h + 12min + 41s},
        {"2026-03-31T23:30:00Z", make_date(2026, 4, 1), 1h + 30min},
        {"2026-12-31T23:30:00.5Z", make_date(2027, 1, 1), 30min},
        {"2026-03-29T00:59:59Z", make_date(2026, 3, 29), 1h + 59min + 59s},
        {"2026-03-29T01:00:00Z", make_date(2026, 3, 29), 3h},
        {"2026-10-25T01:00:00Z", make_date(2026, 10, 25), 2h},
        {"2026-01-01T00:00:00-05:30", make_date(2026, 1, 1), 6h + 30min},
        {"2026-07-10T09:12:41", make_date(2026, 7, 10), 9h + 12min + 41s},
    };
    for (const auto& [text, day, time] : cases) EXPECT_EQ(read_sdi_time(text), time_of(day, time)) << text;
    for (const char* text :
         {"", "2026-02-30T00:00:00Z", "2026-01-01", "2026-01-01T1:00:00", "2026-01-01T10:60:00",
          "2026-01-01T25:00:00", "2026-01-01 10:00:00", "-026-01-01T10:00:00", "2026-01-01T10:00"}) {
        EXPECT_FALSE(read_sdi_time(text)) << text;
    }
    EXPECT_EQ(read_sdi_date("2026-03-14+01:00"), make_date(2026, 3, 14));
}

TEST(ReceiptErrors, ComeCausesFirst) {
    std::vector<ReceiptError> errors;
    for (const char* code :
         {"00443", "00305", "00999", "00427", "00404", "00100", "00400", "00201", "00002"}) {
        errors.push_back({code, "", ""});
    }
    std::string order;
    for (const ReceiptError& error : in_helpful_order(errors)) order += error.code + " ";
    EXPECT_EQ(order, "00002 00100 00201 00404 00427 00305 00443 00999 00400 ");

    EXPECT_THAT(error_hint("00107"), HasSubstr("Firmare di nuovo"));
    EXPECT_THAT(error_hint("00421"), HasSubstr("importi"));
    EXPECT_EQ(error_hint("00303"), "");
    EXPECT_EQ(error_hint("00108"), "");
    EXPECT_EQ(error_hint(""), "");
}

} // namespace
} // namespace tarvello::testing
