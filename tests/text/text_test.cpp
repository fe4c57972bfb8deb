#include "failure.h"
#include "text/currency.h"
#include "text/dates.h"
#include "text/letter_case.h"
#include "text/numbers.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarvello {
namespace {

const RegionalSettings italian;

TEST(CurrencyText, RoundsTheDecimalFormHalfAwayFromZero) {
    EXPECT_EQ(currency_text(1234.5, italian), "€ 1.234,50");
    EXPECT_EQ(currency_text(2.005, italian), "€ 2,01");
    EXPECT_EQ(currency_text(2.675, italian), "€ 2,68");
    EXPECT_EQ(currency_text(1.005, italian), "€ 1,01");
    EXPECT_EQ(currency_text(-2.005, italian), "-€ 2,01");
    EXPECT_EQ(currency_text(0.125, italian), "€ 0,13");
    EXPECT_EQ(currency_text(0.004999999, italian), "€ 0,00");
    EXPECT_EQ(currency_text(0.005, italian), "€ 0,01");
    EXPECT_EQ(currency_text(0.995, italian), "€ 1,00");
    EXPECT_EQ(currency_text(-0.001, italian), "€ 0,00");
    EXPECT_EQ(currency_text(0.0, italian), "€ 0,00");
    EXPECT_EQ(currency_text(999999999999.995, italian), "€ 1.000.000.000.000,00");
    EXPECT_EQ(currency_text(123456789.0, italian), "€ 123.456.789,00");
    EXPECT_THROW(currency_text(std::numeric_limits<double>::infinity(), italian), Failure);
    EXPECT_THROW(currency_text(std::nan(""), italian), Failure);
}

TEST(CurrencyText, OfTypedTexts) {
    EXPECT_EQ(currency_text("1.234,56", italian), "€ 1.234,56");
    EXPECT_EQ(currency_text("€ 1.234,56", italian), "€ 1.234,56");
    EXPECT_EQ(currency_text("10,125", italian), "€ 10,13");
    EXPECT_EQ(currency_text("12.50", italian), "€ 1.250,00");
    EXPECT_EQ(currency_text("-3", italian), "-€ 3,00");
    EXPECT_EQ(currency_text("-€ 3,00", italian), "-€ 3,00");
    EXPECT_EQ(currency_text("3,5 €", italian), "€ 3,50");
    EXPECT_EQ(currency_text("7-", italian), "-€ 7,00");
    EXPECT_EQ(currency_text(",5", italian), "€ 0,50");
    EXPECT_EQ(currency_text("1.2.3,4", italian), "€ 123,40");
    EXPECT_EQ(currency_text("999999999999999", italian), "€ 999.999.999.999.999,00");
    EXPECT_EQ(currency_text("0,0049999999999999999", italian), "€ 0,01")
        << "15 significant digits come first";
    EXPECT_EQ(currency_text("\u00A012,3", italian), "€ 12,30");
    for (const char* text : {"abc", "1e5", "1,2,3", "", " ", "€", "-", "--3", "1 €2", "1-2", "€€1", "12a"}) {
        EXPECT_THROW(currency_text(text, italian), Failure) << text;
        EXPECT_THROW(read_amount(text, italian), Failure) << text;
    }
}

TEST(ReadAmount, YieldsWholeCents) {
    EXPECT_EQ(read_amount("12,345", italian), 12.35);
    EXPECT_EQ(read_amount("12.50", italian), 1250);
    EXPECT_EQ(read_amount("-€ 2,01", italian), -2.01);
    EXPECT_EQ(read_amount("€ 1.234,56", italian), 1234.56);
    EXPECT_FALSE(std::signbit(read_amount("-0,001", italian)));
    EXPECT_THROW(read_amount(std::string(400, '9'), italian), Failure);
    // The text of every amount reads back as that amount.
    for (int cents = -10'000; cents <= 10'000; ++cents) {
        const double amount = cents / 100.0;
        EXPECT_EQ(read_amount(currency_text(amount, italian), italian), amount);
    }
}

TEST(ReadAmount, FollowsOtherSettings) {
    RegionalSettings american;
    american.currency_symbol = "$";
    american.blank_beside_symbol = false;
    american.decimal_separator = ".";
    american.thousands_separator = ",";
    EXPECT_EQ(currency_text(1234.5, american), "$1,234.50");
    EXPECT_EQ(read_amount("$1,234.50", american), 1234.5);
    RegionalSettings german;
    german.symbol_before = false;
    EXPECT_EQ(currency_text(-1234.5, german), "-1.234,50 €");
    EXPECT_EQ(read_amount("-1.234,50 €", german), -1234.5);
    EXPECT_EQ(read_amount("\u22121,50", german), -1.5) << "the minus sign of typography";
    american.negative_before = "(";
    american.negative_behind = ")";
    for (const char* text : {"($1,234.50)", "-$1,234.50", "$ (1234.50)", "(1234.50)$"}) {
        EXPECT_EQ(read_amount(text, american), -1234.5) << text;
    }
    for (const char* text : {"(1", "1)", "()1", "1(2)", "(-1)", "-(1)", "((1))", "(1)2"}) {
        EXPECT_THROW(read_amount(text, american), Failure) << text;
        EXPECT_THROW(read_amount(text, german), Failure) << text;
    }
}

TEST(LeadingNumber, TakesDigitsAndOnePoint) {
    EXPECT_EQ(leading_number("20"), 20);
    EXPECT_EQ(leading_number("19.5"), 19.5);
    EXPECT_EQ(leading_number("19,5"), 19);
    EXPECT_EQ(leading_number("1 000"), 1000);
    EXPECT_EQ(leading_number(" \t\n7x8"), 7);
    EXPECT_EQ(leading_number("20% (su 75% imp.)"), 20);
    EXPECT_EQ(leading_number("12 - 2006"), 12);
    EXPECT_EQ(leading_number("1.2.3"), 1.2);
    EXPECT_EQ(leading_number(".5"), 0.5);
    EXPECT_EQ(leading_number("0." + std::string(400, '0') + "1"), 0);
    for (const char* text : {"", ".", "abc", "-3", "Esente"}) EXPECT_EQ(leading_number(text), 0) << text;
}

TEST(Int16, RoundsHalfToEvenAndFailsPastTheRange) {
    EXPECT_EQ(to_int16(0.5), 0);
    EXPECT_EQ(to_int16(1.5), 2);
    EXPECT_EQ(to_int16(2.5), 2);
    EXPECT_EQ(to_int16(32767.4), 32767);
    EXPECT_THROW(to_int16(32767.5), Failure);
    EXPECT_THROW(to_int16(32768), Failure);
    EXPECT_EQ(to_int16(-32768), -32768);
    EXPECT_THROW(to_int16(-32769), Failure);
    EXPECT_THROW(leading_int16(std::string(400, '9')), Failure);
}

TEST(PlainNumber, HasOnlyTheDigitsItNeeds) {
    EXPECT_EQ(plain_number(12), "12");
    EXPECT_EQ(plain_number(12.5), "12.5");
    EXPECT_EQ(plain_number(100000000), "100000000");
}

TEST(LetterCase, IsUnicode) {
    EXPECT_EQ(upper_case("rossi è più"), "ROSSI È PIÙ");
    EXPECT_EQ(lower_case("ÀÉÎ ΑΒΓ"), "àéî αβγ");
    EXPECT_EQ(upper_case("straße"), "STRAßE") << "one character stays one character";
    EXPECT_TRUE(equal_ignoring_case("Città", "CITTÀ"));
    EXPECT_TRUE(equal_ignoring_case("Роза", "РОЗА"));
    EXPECT_FALSE(equal_ignoring_case("Citta", "Città"));
    EXPECT_TRUE(equal_ignoring_case("\u017F", "S")) << "the long s";
}

TEST(ProperCase, RaisesTheFirstLetterOfEveryWord) {
    EXPECT_EQ(proper_case("VIA DELL'ORSO 5"), "Via Dell'orso 5");
    EXPECT_EQ(proper_case("REGGIO NELL'EMILIA"), "Reggio Nell'emilia");
    EXPECT_EQ(proper_case("è una-prova\vdi\tTABULATO"), "È Una-prova\vDi\tTabulato");
    EXPECT_EQ(proper_case("uno\vdue", invoice_separators), "Uno\vdue");
    EXPECT_EQ(proper_case("McDONALD"), "Mcdonald");
    EXPECT_EQ(proper_case(""), "");
}

TEST(Utf8, CountsCharacters) {
    EXPECT_EQ(utf8::length("perché €"), 8U);
    EXPECT_EQ(utf8::left("perché no", 6), "perché");
    EXPECT_EQ(utf8::mid("àèì", 1, 1), "è");
    EXPECT_EQ(utf8::mid("àèì", 5), "");
    EXPECT_EQ(utf8::length("a\xFFz"), 3U);
    EXPECT_FALSE(utf8::valid("a\xFF"));
    EXPECT_EQ(utf8::encode(utf8::decode("😀 è")), "😀 è");
}

TEST(Trim, CutsBlanksOnly) {
    EXPECT_EQ(trim("  a b "), "a b");
    EXPECT_EQ(trim("   "), "");
    EXPECT_EQ(trim("\ta\n"), "\ta\n");
    EXPECT_EQ(double_apostrophes("D'Orso''"), "D''Orso''''");
}

TEST(LetterCase, OneLineOutOfSeveral) {
    EXPECT_EQ(one_line("\r\n1234,56\n"), "1234,56");
    EXPECT_EQ(one_line("Via Roma\r\n\n 5\rint. 2"), "Via Roma  5 int. 2") << "blanks stay as they are";
    EXPECT_EQ(one_line("\n"), "");
}

TEST(Dates, ReadAndWritten) {
    EXPECT_EQ(short_date_text(make_date(2006, 3, 5), italian), "05/03/2006");
    EXPECT_EQ(long_date_text(make_date(2006, 3, 5), italian), "domenica 5 marzo 2006");
    EXPECT_EQ(read_date("05/03/2006", italian), make_date(2006, 3, 5));
    EXPECT_EQ(read_date("5-3-06", italian), make_date(2006, 3, 5));
    EXPECT_EQ(read_date("2006-03-05", italian), make_date(2006, 3, 5));
    EXPECT_EQ(read_date("29/02/2008", italian), make_date(2008, 2, 29));
    EXPECT_EQ(read_date("1.1.1930", italian), make_date(1930, 1, 1));
    for (const char* text : {"", "29/02/2007", "31/04/2006", "5/13/2006", "abc", "5/3", "1/1/1/1",
                             "5 marzo 2006", "0/1/2006", "00000000001/1/2006"}) {
        EXPECT_FALSE(read_date(text, italian)) << text;
    }
    for (const char* text :
         {"1/2/80", "01/02/1980", "01021980", "010280", "1.2.1980", "1-2-80", "1980-02-01"}) {
        EXPECT_EQ(read_typed_date(text, italian), make_date(1980, 2, 1)) << text;
    }
    EXPECT_EQ(read_typed_date("20/12/29", italian), make_date(2029, 12, 20));
    EXPECT_EQ(read_typed_date("20/12/30", italian), make_date(1930, 12, 20));
    RegionalSettings american;
    american.short_date = "M/d/yyyy";
    EXPECT_EQ(read_typed_date("12311980", american), make_date(1980, 12, 31));
    EXPECT_EQ(read_typed_date("29021981", italian), make_date(1981, 2, 29)) << "named, though it is none";
    for (const char* text :
         {"", "1/2", "1/2/8", "1/2/980", "05/12103/2006", "0102198", "1/2/80x", "1/2/3/80"}) {
        EXPECT_FALSE(read_typed_date(text, italian)) << text;
    }
    EXPECT_EQ(days_between(make_date(2006, 3, 5), make_date(2006, 2, 28)), -5);
    EXPECT_EQ(with_year(make_date(2008, 2, 29), 2007), make_date(2007, 2, 28));
    EXPECT_EQ(long_time_text(DateTime(std::chrono::hours(14) + std::chrono::minutes(5)), italian),
              "14:05:00");
}

} // namespace
} // namespace tarvello
