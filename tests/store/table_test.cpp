#include "store/table.h"

#include "failure.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvello::store {
namespace {

const RegionalSettings italian;

double number(const std::string& text, bool quoted = true, const RegionalSettings& regional = italian) {
    const Column column{"Importo", ColumnType::number};
    return std::get<double>(convert_literal({text, quoted}, column, regional));
}

TEST(Literal, ANumberIsPlainOrAsTheCountryWritesIt) {
    EXPECT_EQ(number("12.5"), 12.5);
    EXPECT_EQ(number("12,5"), 12.5);
    EXPECT_EQ(number(",5"), 0.5);
    EXPECT_EQ(number("7."), 7);
    EXPECT_EQ(number(" 1.234,56 "), 1234.56);
    EXPECT_EQ(number("1.234.567"), 1234567);
    EXPECT_EQ(number("€ 1.234,56"), 1234.56);
    EXPECT_EQ(number("-€ 3,00"), -3);
    EXPECT_EQ(number("€ -3,00"), -3);
    EXPECT_EQ(number("3,00- €"), -3);
    EXPECT_EQ(number("-1.5E3", false), -1500);
    EXPECT_EQ(number("1e-400", false), 0);
    for (const char* text :
         {"", " ", "€", "-", "--1", "1,2,3", "1.2.3,4", "12.34,5", ".123,4", "1 000", "1e5", "0x10", "inf"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(number(text), Failure);
    }
    EXPECT_THROW(number("1e400", false), Failure);
    EXPECT_THROW(number(std::string(400, '9')), Failure);

    RegionalSettings american;
    american.currency_symbol = "$";
    american.decimal_separator = ".";
    american.thousands_separator = ",";
    EXPECT_EQ(number("$ 1,234.56", true, american), 1234.56);
    EXPECT_THROW(number("1.234,56", true, american), Failure);
}

TEST(Literal, IsComparedAsTheNumberThatItIs) {
    const Column key{"ID", ColumnType::integer};
    EXPECT_EQ(convert_comparand({"12", false}, key, italian), Value(std::int64_t{12}));
    EXPECT_EQ(convert_comparand({"12.5", false}, key, italian), Value(12.5));
    EXPECT_EQ(convert_comparand({"40000000000", false}, key, italian), Value(std::int64_t{40'000'000'000}));
    EXPECT_EQ(convert_comparand({"2006", true}, key, italian), Value(std::int64_t{2006}));
    EXPECT_THROW(convert_comparand({"MMVI", true}, key, italian), Failure);
}

TEST(ValueText, IsWhatTheFormsSee) {
    EXPECT_EQ(value_text(ValueView(1234.5), italian), "1234,5")
        << "read back as an amount it must be the same";
    EXPECT_EQ(value_text(ValueView(-3.0), italian), "-3");
    EXPECT_EQ(value_text(ValueView(std::int64_t{40000}), italian), "40000");
    EXPECT_EQ(value_text(ValueView(make_date(2006, 3, 5)), italian), "05/03/2006");
    EXPECT_EQ(value_text(ValueView(std::string_view("€ 1,00")), italian), "€ 1,00");
    EXPECT_EQ(value_text(ValueView(), italian), "");
}

} // namespace
} // namespace tarvello::store
