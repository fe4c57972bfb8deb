#include "e_invoice/alphabet.h"
#include "e_invoice/amounts.h"
#include "e_invoice/check_digits.h"
#include "e_invoice/code_lists.h"
#include "e_invoice/file_name.h"
#include "e_invoice/structure.h"

#include "failure.h"
#include "text/dates.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

namespace tarvello::e_invoice {
namespace {

TEST(EInvoiceAmounts, ReadAndWritten) {
    const RegionalSettings italian;
    const std::pair<const char*, std::optional<Cents>> texts[] = {
        {"€ 1.234,56", 123456},       {"-€ 0,05", -5}, {"0", 0}, {"€ 99.999.999.999,99", 9'999'999'999'999},
        {"€ 100.000.000.000,00", {}}, {"dodici", {}},  {"", {}},
    };
    for (const auto& [text, cents] : texts) EXPECT_EQ(read_cents(text, italian), cents) << text;
    const std::pair<const char*, std::optional<Rate>> rates[] = {
        {"20", 2000},   {"4.5", 450},   {"19,5", 1900}, {"20% (su 75% imp.)", 2000}, {"Esente", 0}, {"", 0},
        {"22.125", {}}, {"100", 10000}, {"100.01", {}},
    };
    for (const auto& [text, rate] : rates) EXPECT_EQ(read_rate(text), rate) << text;
    EXPECT_EQ(percent_of(125925, 2000), 25185);
    EXPECT_EQ(percent_of(25, 1000), 3) << "half away from zero";
    EXPECT_EQ(percent_of(-25, 1000), -3);
    EXPECT_EQ(percent_of(24, 1000), 2);
    for (const auto& [cents, text] :
         {std::pair<Cents, std::string>{123456, "1234.56"}, {-5, "-0.05"}, {0, "0.00"}}) {
        EXPECT_EQ(amount_text(cents), text);
        EXPECT_EQ(amount_of(text), cents);
    }
    EXPECT_EQ(amount_of("12.5000"), 1250);
    for (const char* text :
         {"12.505", "12,50", "12.5", "12", ".50", "--1.00", "+1.00", "1.2.3", "123456789012.00"}) {
        EXPECT_FALSE(amount_of(text)) << text;
    }
    EXPECT_EQ(rate_of("100.00"), 10000);
    EXPECT_FALSE(rate_of("100.01"));
    EXPECT_FALSE(rate_of("-1.00"));
    EXPECT_EQ(shown_amount(-123456), "-€ 1.234,56");
    EXPECT_EQ(shown_rate(2200), "22%");
    EXPECT_EQ(shown_rate(450), "4,5%");
}

TEST(EInvoiceDates, Iso) {
    EXPECT_EQ(iso_date(make_date(2026, 3, 5)), "2026-03-05");
    EXPECT_EQ(read_iso_date("2026-03-05T10:11:12"), make_date(2026, 3, 5));
    for (const char* text : {"2026-3-5", "05/03/2026", "2026-02-30", "2026/03/05", ""})
        EXPECT_FALSE(read_iso_date(text));
}

TEST(EInvoiceNumbers, PartitaIva) {
    for (const char* number : {"01234560157", "05432100963", "80012340040"})
        EXPECT_TRUE(partita_iva_valid(number));
    for (const char* number : {"01234560158", "0123456015", "00000000000", "0123456015A", "10234560157", ""})
        EXPECT_FALSE(partita_iva_valid(number)) << number;
    EXPECT_EQ(plain_partita_iva(" it 012.345 601-57"), "01234560157");
    EXPECT_TRUE(partita_iva_office_known("01234561007"));
    EXPECT_FALSE(partita_iva_office_known("01234560007"));
    EXPECT_FALSE(partita_iva_office_known("01234561015"));
    for (const char* number : {"00000001200", "00000001210", "00000008880", "00000009990"})
        EXPECT_TRUE(partita_iva_office_known(number));
}

TEST(EInvoiceNumbers, CodiceFiscale) {
    // The last two say one person with letters in the places of digits.
    for (const char* code : {"DNGNCL75E14F205Y", "PREGLI85P52L219S", "RSSMRA80A01H501U", "80012340040",
                             "RSSMRA80A01H50MM", "RSSMRAU0A01H501R"})
        EXPECT_TRUE(codice_fiscale_valid(code)) << code;
    for (const char* code : {"DNGNCL75E14F205X", "RSSMRA80F01H501G", "RSSMRA80A00H501V", "RSSMRA80A32H501C",
                             "RSSMRA80A72H501G", "rssmra80a01h501u", "RSSMRA80A01H501", "80012340041", ""})
        EXPECT_FALSE(codice_fiscale_valid(code)) << code;
}

TEST(EInvoiceNumbers, Iban) {
    // Published by banks and standards, with the parts they are made of.
    const std::array<const char*, 4> accounts[] = {
        {"05428", "11101", "123456", "IT60X0542811101000000123456"},
        {"5428", "10808", "63057", "IT17O0542810808000000063057"},
        {"03599", "01800", "159114", "IT55M0359901800000000159114"},
        {"3493", "11600", "300200018", "IT42F0349311600000300200018"},
        {"01234", "12345", "753xyz", "IT60Q0123412345000000753XYZ"},
        {"1", "1000", "4567X", "IT09S000010100000000004567X"},
    };
    for (const auto& [abi, cab, account, iban] : accounts) {
        EXPECT_EQ(iban_of_account(abi, cab, account), iban);
        EXPECT_TRUE(iban_valid(iban));
    }
    EXPECT_EQ(iban_of_account("", "11101", "1"), "");
    EXPECT_EQ(iban_of_account("05428", "1110A", "1"), "");
    EXPECT_EQ(iban_of_account("054281", "11101", "1"), "");
    EXPECT_EQ(iban_of_account("05428", "11101", "1234567890123"), "");
    for (const char* iban :
         {"DE89370400440532013000", "IT27G0800003200000080032017", "IT38R0760103000000000900050"})
        EXPECT_TRUE(iban_valid(iban)) << iban;
    for (const char* iban :
         {"IT40S0542811101000000123456", "IT60X0542811101000000123457", "DE89370400440532013001",
          "IT60X0542811101", "IT60 X054 2811 1010 0000 0123 456", "", "ITXXX0542811101000000123456"})
        EXPECT_FALSE(iban_valid(iban)) << iban;
}

TEST(EInvoiceAlphabet, KeepsWhatItCanAndReplacesTheRest) {
    struct Text {
        const char* text;
        const char* latin;
        const char* ascii;
        bool lost = false;
    };
    const Text texts[] = {
        {"Perché è così: 1ª fase, n° 3 §2 «x» ½", "Perché è così: 1ª fase, n° 3 §2 «x» ½",
         "Perche e cosi: 1a fase, n? 3 ?2 ?x? 1/2"},
        {"“Casa dell’arco” – 12 € …", "\"Casa dell'arco\" - 12 EUR ...", "\"Casa dell'arco\" - 12 EUR ..."},
        {"‘a’ ‚b‛ „c‟ ′″ — ‒ ‐ ‑ − •", "'a' 'b' \"c\" '\" - - - - - -", "'a' 'b' \"c\" '\" - - - - - -"},
        {"Gießerei Łódź, Dvořák, ősz, đ ı œ ﬁ ℓ ™ №", "Gießerei Lódz, Dvorák, osz, d i oe fi l (TM) N.",
         "Gie?erei Lodz, Dvorak, osz, d i oe fi l (TM) N."},
        {"Αθήνα", "?????", "?????", true},
        {"Москва 5", "?????? 5", "?????? 5", true},
        {"Łódź 😀❤️👨‍👩‍👧", "Lódz ?????", "Lodz ?????", true},
        {"a\tb\r\nc\u00A0d\u2009e", "a b c d e", "a b c d e"},
        {"  a   b  ", "a b", "a b"},
        {" \u00A0\t ", "", ""},
        {"x\u0001\u0007\u001F\u007F\u0080\u009Fy", "xy", "xy"},
        {"zero\u200Bwidth\u00ADsoft\uFEFF", "zerowidthsoft", "zerowidthsoft"},
        {"e\u0301 o\u0300 x\u0302", "é ò x", "e o x"},
        {"]]> <&>'\"", "]]> <&>'\"", "]]> <&>'\""},
        {"中文 ㎏ ２", "?? kg 2", "?? kg 2", true},
    };
    for (const Text& text : texts) {
        const Converted latin = to_alphabet(text.text, Alphabet::latin, 100);
        EXPECT_EQ(latin.text, text.latin);
        EXPECT_EQ(latin.lost, text.lost) << text.text;
        EXPECT_EQ(to_alphabet(text.text, Alphabet::ascii, 100).text, text.ascii);
    }
    const Converted broken = to_alphabet("citt\xE0 \xED\xA0\x80!", Alphabet::latin, 100);
    EXPECT_EQ(broken.text, "citt !") << "bytes that are no text";
    EXPECT_TRUE(broken.lost);
    EXPECT_EQ(to_alphabet(std::string("a\0b", 3), Alphabet::latin, 100).text, "ab");
}

TEST(EInvoiceAlphabet, CutsAtTheEnd) {
    const Converted cut = to_alphabet("€ € èèèè", Alphabet::latin, 7);
    EXPECT_EQ(cut.text, "EUR EUR") << "the replacement counts, and no blank is left at the end";
    EXPECT_TRUE(cut.cut);
    EXPECT_FALSE(to_alphabet("èèè", Alphabet::latin, 3).cut) << "characters, not bytes";
    EXPECT_EQ(to_alphabet(std::string(2000, 'x'), Alphabet::latin, 1000).text.size(), 1000u);
    EXPECT_EQ(in_pieces("uno due tre", 7), (std::vector<std::string>{"uno due", "tre"}));
    EXPECT_EQ(in_pieces("èèèèè", 2), (std::vector<std::string>{"èè", "èè", "è"}));
    EXPECT_TRUE(in_pieces("", 2).empty());
}

TEST(EInvoiceCodes, HoldOnTheirDays) {
    EXPECT_TRUE(holds(natures(), "N2", make_date(2020, 12, 31)));
    EXPECT_FALSE(holds(natures(), "N2", make_date(2021, 1, 1)));
    EXPECT_TRUE(holds(natures(), "N2.2", make_date(2026, 1, 1)));
    EXPECT_FALSE(holds(natures(), "N2.2", make_date(2020, 9, 30)));
    EXPECT_FALSE(holds(natures(), "N8", make_date(2026, 1, 1)));
    EXPECT_EQ(in_words(document_kinds(), "TD06"), "parcella (TD06)");
    EXPECT_EQ(in_words(funds(), "TC99"), "TC99");
    EXPECT_TRUE(in_european_union("EL"));
    EXPECT_FALSE(in_european_union("GB"));
    EXPECT_FALSE(find_code(countries(), "OO"));
}

/// Codes of ours are never longer than their elements and pass their own type; each comes once.
TEST(EInvoiceCodes, AreOfTheirTypes) {
    const auto check = [](const auto& list, const TextType& type) {
        for (const auto& entry : list) {
            EXPECT_GE(entry.code.size(), type.least) << entry.code;
            EXPECT_LE(entry.code.size(), type.most) << entry.code;
            EXPECT_TRUE(type.fits(entry.code)) << entry.code;
            EXPECT_EQ(find_code(list, entry.code), &entry) << entry.code << " comes twice";
        }
    };
    check(document_kinds(), types::document_kind);
    check(tax_regimes(), types::regime);
    check(withholding_kinds(), types::withholding_kind);
    check(withholding_reasons(), types::withholding_reason);
    check(payment_terms(), types::payment_term);
    check(payment_ways(), types::payment_way);
    check(vat_due(), types::due);
    check(natures(), types::nature);
    check(funds(), types::fund);
    check(countries(), types::country);
    EXPECT_EQ(countries().size(), 251u);
}

TEST(EInvoiceFileName, IsNeverUsedTwice) {
    EXPECT_EQ(progressive_text(1), "00001");
    EXPECT_EQ(progressive_text(36 * 36 + 35), "0010Z");
    EXPECT_EQ(progressive_text(last_progressive), "ZZZZZ");
    EXPECT_THROW(progressive_text(0), Failure);
    EXPECT_THROW(progressive_text(last_progressive + 1), Failure);
    EXPECT_EQ(file_name("DNGNCL75E14F205Y", "0000A"), "ITDNGNCL75E14F205Y_0000A.xml");

    const char* const code = "DNGNCL75E14F205Y";
    EXPECT_EQ(last_progressive_in({}, code), 0);
    EXPECT_EQ(last_progressive_in({"itdngncl75e14f205y_0000b.XML.P7M", "ITDNGNCL75E14F205Y_0000C_RC_001.xml",
                                   "ITDNGNCL75E14F205Y_00003.xml", "ITPREGLI85P52L219S_0000Z.xml",
                                   "ITDNGNCL75E14F205Y_123456.xml", "ITDNGNCL75E14F205Y_00-01.xml",
                                   "ITDNGNCL75E14F205Y_.xml", "note.txt"},
                                  code),
              12);
}

} // namespace
} // namespace tarvello::e_invoice
