#include "lists/cell_value.h"
#include "lists/csv_file.h"
#include "lists/letters.h"
#include "lists/narrowing.h"
#include "lists/row_order.h"
#include "lists/xlsx_file.h"

#include "failure.h"
#include "places.h"
#include "store/store_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace tarvello::testing {
namespace {

using namespace lists;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const RegionalSettings regional;

/// A list of one column, or of several.
struct List {
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> cells;

    Table table() const {
        return {columns, cells.size(),
                [this](std::size_t row, std::size_t column) { return std::string_view(cells[row][column]); }};
    }
};

List column_of(ColumnKind kind, const std::vector<std::string>& texts) {
    List list{{{"colonna", kind}}, {}};
    for (const std::string& text : texts) list.cells.push_back({text});
    return list;
}

std::vector<std::string> sorted(const List& list, bool descending = false) {
    std::vector<std::string> texts;
    for (const std::size_t row : sorted_rows(list.table(), {0, descending}, regional))
        texts.push_back(list.cells[row][0]);
    return texts;
}

/// Sorts the texts when they come in any order.
void expect_order(ColumnKind kind, std::vector<std::string> in_order) {
    std::vector<std::string> mixed = in_order;
    for (int turn = 0; turn < 5; ++turn) {
        std::rotate(mixed.begin(), mixed.begin() + 1, mixed.end());
        if (turn == 3) std::reverse(mixed.begin(), mixed.end());
        EXPECT_EQ(sorted(column_of(kind, mixed)), in_order);
    }
}

TEST(RowOrder, OfTextsIsItalian) {
    expect_order(ColumnKind::text,
                 {"_nota", "-", "'A", "€ 5", "10", "9", "a", "A", "à", "aa", "B", "Z", "Ω", "Я"});
    expect_order(ColumnKind::text,
                 {"D'Orso", "D’Orso", "Dante", "de Rossi", "De Rossi", "De' Rossi", "Deluca"});
    expect_order(ColumnKind::text, {"perche", "perché", "Perché", "PERCHÉ", "perchè", "perche no", "però"});
    expect_order(ColumnKind::text, {"Lodi", "Lodz", "Łódź", "Straße\t", "Strasse 1", "Straße 2", "Strata"});
    EXPECT_EQ(sorted(column_of(ColumnKind::text, {"", "b", "  ", "a"})),
              (std::vector<std::string>{"a", "b", "", "  "}));
}

TEST(RowOrder, OfNumbersAndDatesIsThatOfTheirValues) {
    expect_order(ColumnKind::number, {"-12,5", "-3", "0", "0,07", "7", "22%", "100", "1.000", "abc", "b"});
    expect_order(ColumnKind::amount, {"-€ 10,00", "€ 0,00", "€ 9,99", "€ 10,00", "€ 1.234,56", "gratis"});
    expect_order(ColumnKind::date,
                 {"31/12/1969", "28/02/2026", "01/03/2026", "30/02/2026"}); // the last is none
}

TEST(RowOrder, LeavesEqualRowsAsTheyCame) {
    const List list{{{"a", ColumnKind::number}},
                    {{"2", "p"}, {"", "q"}, {"1", "r"}, {"2,0", "s"}, {"", "t"}, {"01", "u"}}};
    SortOrder order;
    const auto shown = [&] {
        std::string rows;
        for (const std::size_t row : sorted_rows(list.table(), order, regional)) rows += list.cells[row][1];
        return rows;
    };
    EXPECT_EQ(shown(), "pqrstu");
    order.click(0);
    EXPECT_EQ(shown(), "rupsqt");
    order.click(0);
    EXPECT_EQ(shown(), "psruqt");
    order.click(0);
    EXPECT_EQ(shown(), "pqrstu");
    order.click(0);
    order.click(1);
    EXPECT_EQ(order.column, 1u);
    EXPECT_FALSE(order.descending);
}

TEST(Narrowing, FindsEveryWordAnywhere) {
    const List list{{{"nome", ColumnKind::text}, {"città", ColumnKind::text}},
                    {{"Niccolò D’Angelo", "Milano"}, {"Rossi", "Città di Castello"}, {"Straße AG", "Łódź"}}};
    const Narrowing narrowing(list.table());
    EXPECT_THAT(narrowing.rows(""), ElementsAre(0u, 1u, 2u));
    EXPECT_THAT(narrowing.rows("niccolo  MIL "), ElementsAre(0u));
    EXPECT_THAT(narrowing.rows("d'angelo"), ElementsAre(0u));
    EXPECT_THAT(narrowing.rows("CITTÀ ross"), ElementsAre(1u));
    EXPECT_THAT(narrowing.rows("strasse lodz"), ElementsAre(2u));
    EXPECT_THAT(narrowing.rows("rossi milano"), IsEmpty());
    EXPECT_THAT(narrowing.rows("angelomilano"), IsEmpty());
}

TEST(ShownNumber, IsReadWithItsSymbols) {
    const std::pair<const char*, double> numbers[] = {
        {"€ 1.234,56", 1234.56}, {"-€ 1,00", -1}, {"€ 1,00-", -1}, {"22%", 22}, {",5", 0.5},
        {"1\u00A0000", 1000}};
    for (const auto& [text, number] : numbers) EXPECT_EQ(shown_number(text, regional), number) << text;
    for (const char* text : {"", "€", "1,2,3", "%", "5%5", "--1", "1e5", "7/2026",
                             "123456789012345678901234567890123456789012"}) {
        EXPECT_FALSE(shown_number(text, regional)) << text;
    }
}

/// What a program that knows the formats only reads out of a file.
std::string read_back(const std::string& bytes, const std::string& ending) {
    const TemporaryFolder folder;
    const std::string path = folder.in("lista" + ending);
    write_bytes(path, bytes);
    FILE* const pipe =
        popen(("python3 '" TARVELLO_TEST_DATA "/lists/read_export.py' '" + path + "' 2>&1").c_str(), "r");
    std::string output;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
    pclose(pipe);
    return output;
}

const List invoices{{{"Numero", ColumnKind::number},
                     {"Data", ColumnKind::date},
                     {"Cliente", ColumnKind::text},
                     {"CAP", ColumnKind::text},
                     {"Totale", ColumnKind::amount}},
                    {{"7", "05/03/2026", "Caffè; \"da Gino\"\nsnc", "00100", "€ 1.234,50"},
                     {"1.000,5", "", " =1+1", "", "-€ 0,07"},
                     {"bis", "31/12/1899", "€ ł 😀", "12100", ""}}};

TEST(Export, ToCsvIsReadAsItalianSpreadsheetsDo) {
    EXPECT_EQ(read_back(csv_file(invoices.table(), regional), ".csv"),
              "Numero|Data|Cliente|CAP|Totale\n"
              "7|05/03/2026|Caffè; \"da Gino\"\nsnc|00100|1234,50\n"
              "1000,5|| =1+1||-0,07\n"
              "bis|31/12/1899|€ ł 😀|12100|\n");
}

/// Days are counted from 30 December 1899.
TEST(Export, ToXlsxKeepsNumbersAndDays) {
    const std::string euro = " \"€\" #,##0.00;-\"€\" #,##0.00\n";
    EXPECT_EQ(read_back(xlsx_file(invoices.table(), "Elenco [2026]: fatture emesse e incassate", regional),
                        ".xlsx"),
              "sheet Elenco 2026 fatture emesse e in\nfrozen A2 filter A1:E4\n"
              "A t Numero|B t Data|C t Cliente|D t CAP|E t Totale\n"
              "A n 7|B n 46086 dd/mm/yyyy|C t Caffè; \"da Gino\"\nsnc|D t 00100|E n 1234.5" +
                  euro + "A n 1000.5|C t  =1+1|E n -0.07" + euro +
                  "A t bis|B t 31/12/1899|C t € ł 😀|D t 12100\n");
}

} // namespace
} // namespace tarvello::testing
